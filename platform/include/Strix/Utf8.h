// The one UTF-8 decoder: the state reader checks input with it, messages escape what it rejects,
// and the renderer replaces what it rejects, so that all three agree on what UTF-8 is.
#pragma once

#include <cstddef>
#include <string_view>

namespace Strix {

// One character of UTF-8 text; `length` is 0 where the bytes are not UTF-8 (a stray byte, an
// overlong form, a surrogate, a sequence cut short, a code point above U+10FFFF).
struct Utf8Character {
   char32_t codePoint = 0;
   std::size_t length = 0;
};
Utf8Character decodeUtf8(std::string_view text, std::size_t at) noexcept;

}  // namespace Strix
