// A state file read and parsed into simdjson's document, or the first fault of its JSON text with
// its place. The file's bytes and the parser's index of the text are released once parsed, before
// the entities grow: the document keeps its own copies.
#pragma once

#include <simdjson.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace StateLoader {

// No section of the format nests deeper than a dozen levels; anything much deeper is refused
// before it is walked.
inline constexpr std::size_t kMaxNesting = 32;

// The root value; it lives as long as `document`. Throws StateError.
simdjson::dom::element parseStateFile(simdjson::dom::document& document, std::string const& path);

// The parser's refusal of `text` as a StateError that says where the fault is.
[[noreturn]] void failRefused(std::string_view text, simdjson::error_code error);

}  // namespace StateLoader
