// A state file read and parsed into simdjson's document, or the first fault of its JSON text with
// its place. The file's bytes are released once parsed: the document keeps its own copies.
#pragma once

#include <simdjson.h>

#include <cstddef>
#include <string>

namespace StateLoader {

// No section of the format nests deeper than a dozen levels; anything much deeper is refused
// before it is walked.
inline constexpr std::size_t kMaxNesting = 32;

// The root value; it lives as long as `parser`. Throws StateError.
simdjson::dom::element parseStateFile(simdjson::dom::parser& parser, std::string const& path);

}  // namespace StateLoader
