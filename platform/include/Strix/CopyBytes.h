// A copy of a few bytes in line. Most pieces of output are a label, a name, a number or an address
// of a few bytes: they are copied as two words (or halves, or bytes) that overlap, instead of
// through a call of the C library's copy, and exactly `size` bytes are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Strix {

// Up to this many bytes are copied in line; longer texts go to the C library.
inline constexpr std::size_t kInlineCopy = 16;

inline void copyBytes(char* out, char const* text, std::size_t size) noexcept {
   auto const overlapping = [&]<typename Word>(Word) {
      Word first;
      Word last;
      std::memcpy(&first, text, sizeof first);
      std::memcpy(&last, text + size - sizeof last, sizeof last);
      std::memcpy(out, &first, sizeof first);
      std::memcpy(out + size - sizeof last, &last, sizeof last);
   };
   if (size > kInlineCopy) {
      std::memcpy(out, text, size);
   } else if (size >= sizeof(std::uint64_t)) {
      overlapping(std::uint64_t{});
   } else if (size >= sizeof(std::uint32_t)) {
      overlapping(std::uint32_t{});
   } else if (size != 0) {
      out[0] = text[0];
      out[size / 2] = text[size / 2];
      out[size - 1] = text[size - 1];
   }
}

}  // namespace Strix
