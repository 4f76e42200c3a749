// JSON keys and the test of which bytes a JSON string cannot hold as they are.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace vellum {

namespace detail {
// Bytes that cannot be copied into a JSON string as they are.
inline constexpr auto kNeedsEscape = [] {
   std::array<bool, 256> table{};
   for (unsigned byte = 0; byte < 256; ++byte) {
      table[byte] = byte < 0x20 || byte == '"' || byte == '\\' || byte >= 0x80;
   }
   return table;
}();

// Whether any byte of `text` must be escaped, eight bytes at a time: keys and names are short and
// almost never need it. A text of up to eight bytes is tested as one word, with no loop and no
// test of its length beyond the choice of how to load it: 4 to 8 bytes as two overlapping halves,
// 1 to 3 bytes as its first, middle and last byte, the rest of the word blanks, which need no
// escaping. The last word of a longer text ends at its last byte.
constexpr bool needsEscape(std::string_view text) noexcept {
   if (std::is_constant_evaluated()) {
      return std::ranges::any_of(
          text, [](char c) { return kNeedsEscape[static_cast<unsigned char>(c)]; });
   }
   constexpr std::uint64_t kOnes = 0x0101010101010101;
   constexpr std::uint64_t kHighs = 0x8080808080808080;
   constexpr std::uint64_t kBlanks = kOnes * ' ';
   // Nonzero when a byte is below `limit` (at most 0x80).
   auto anyBelow = [](std::uint64_t word, unsigned limit) {
      return (word - kOnes * limit) & ~word & kHighs;
   };
   auto anyEqual = [&](std::uint64_t word, unsigned char byte) {
      return anyBelow(word ^ (kOnes * byte), 1);
   };
   auto escaped = [&](std::uint64_t word) {
      return ((word & kHighs) | anyBelow(word, 0x20) | anyEqual(word, '"') |
              anyEqual(word, '\\')) != 0;
   };
   auto const size = text.size();
   char const* const data = text.data();
   auto byteAt = [data](std::size_t at, unsigned shift) {
      return std::uint64_t{static_cast<unsigned char>(data[at])} << shift;
   };
   if (size <= sizeof(std::uint64_t)) {
      std::uint64_t word = kBlanks;
      if (size >= sizeof(std::uint32_t)) {
         std::uint32_t first;
         std::uint32_t last;
         std::memcpy(&first, data, sizeof first);
         std::memcpy(&last, data + size - sizeof last, sizeof last);
         word = first | std::uint64_t{last} << 32;
      } else if (size != 0) {
         word = (kBlanks << 24) | byteAt(0, 0) | byteAt(size / 2, 8) | byteAt(size - 1, 16);
      }
      return escaped(word);
   }
   auto load = [data](std::size_t at) {
      std::uint64_t word;
      std::memcpy(&word, data + at, sizeof word);
      return word;
   };
   for (std::size_t at = 0; at + 8 < size; at += 8) {
      if (escaped(load(at))) {
         return true;
      }
   }
   return escaped(load(size - 8));
}
}  // namespace detail

// A JSON key that knows whether it must be escaped. Keys are nearly all literals of the show code,
// which are checked when the code is compiled, so that a key handed down as a JsonKey through the
// renderers' parameters is copied without a look at its bytes. A key made at run time (a counter's
// name) is checked where it becomes a JsonKey. The empty key stands for a bare value, as an
// element of a list.
class JsonKey {
 public:
   // Neither is explicit: a key is written as the literal or the view it is.
   template <std::size_t N>
   consteval JsonKey(char const (&literal)[N]) : JsonKey(std::string_view(literal, N - 1)) {}
   constexpr JsonKey(std::string_view text) noexcept
       : data_(text.data()), sizeAndPlain_(text.size() << 1 | !detail::needsEscape(text)) {}

   constexpr std::string_view text() const noexcept { return {data_, size()}; }
   constexpr std::size_t size() const noexcept { return sizeAndPlain_ >> 1; }
   constexpr bool empty() const noexcept { return size() == 0; }
   // No byte of the key needs escaping.
   constexpr bool plain() const noexcept { return (sizeAndPlain_ & 1) != 0; }

 private:
   // Two words, as a view is, so that a key passed by value travels in registers.
   char const* data_;
   std::size_t sizeAndPlain_;
};

}  // namespace vellum
