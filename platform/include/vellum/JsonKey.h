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
// almost never need it. Below four bytes each byte is looked up; a string of 4 to 7 bytes is read
// as two overlapping halves of a word, and the last word of a longer one ends at its last byte.
constexpr bool needsEscape(std::string_view text) noexcept {
   if (std::is_constant_evaluated()) {
      return std::ranges::any_of(
          text, [](char c) { return kNeedsEscape[static_cast<unsigned char>(c)]; });
   }
   constexpr std::uint64_t kOnes = 0x0101010101010101;
   constexpr std::uint64_t kHighs = 0x8080808080808080;
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
   if (size < 4) {
      return std::ranges::any_of(
          text, [](char c) { return kNeedsEscape[static_cast<unsigned char>(c)]; });
   }
   // Short strings fill the word's upper half with blanks, which need no escaping.
   auto load = [data](std::size_t at, std::size_t bytes) {
      std::uint64_t word = kOnes * ' ';
      std::memcpy(&word, data + at, bytes);
      return word;
   };
   if (size < 8) {
      return escaped(load(0, 4)) || escaped(load(size - 4, 4));
   }
   for (std::size_t at = 0; at + 8 < size; at += 8) {
      if (escaped(load(at, 8))) {
         return true;
      }
   }
   return escaped(load(size - 8, 8));
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
