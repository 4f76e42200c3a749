// Kel::String is the object model's string: a value type with the standard string's storage (short
// names live inline), comparisons that order by bytes, and cheap views for the renderer.
#pragma once

#include <algorithm>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>

namespace Kel {

namespace detail {

// Byte order of two strings, compared a word at a time in registers. Collections look names up by
// binary search, and for names of a few bytes a call into the C library for every step costs more
// than the comparison itself. A common part of 4 to 16 bytes is read as a first word and a last
// word that overlap: the overlap is equal by then, so the first difference seen is the first one.
template <typename Word>
Word bigEndianWord(char const* at) noexcept {
   Word word;
   std::memcpy(&word, at, sizeof word);
   if constexpr (std::endian::native == std::endian::little) {
      if constexpr (sizeof(Word) == 8) {
         word = __builtin_bswap64(word);
      } else {
         word = __builtin_bswap32(word);
      }
   }
   return word;
}

template <typename Word>
std::strong_ordering compareWords(char const* left, char const* right,
                                  std::size_t common) noexcept {
   constexpr std::size_t kBytes = sizeof(Word);
   for (std::size_t at = 0; at + kBytes < common; at += kBytes) {
      auto const leftWord = bigEndianWord<Word>(left + at);
      auto const rightWord = bigEndianWord<Word>(right + at);
      if (leftWord != rightWord) {
         return leftWord <=> rightWord;
      }
   }
   return bigEndianWord<Word>(left + common - kBytes) <=>
          bigEndianWord<Word>(right + common - kBytes);
}

[[gnu::always_inline]] inline std::strong_ordering compareBytes(std::string_view left,
                                                                std::string_view right) noexcept {
   auto const common = std::min(left.size(), right.size());
   std::strong_ordering order = std::strong_ordering::equal;
   if (common >= sizeof(std::uint64_t)) {
      order = compareWords<std::uint64_t>(left.data(), right.data(), common);
   } else if (common >= sizeof(std::uint32_t)) {
      order = compareWords<std::uint32_t>(left.data(), right.data(), common);
   } else {
      for (std::size_t at = 0; at < common && order == 0; ++at) {
         order = static_cast<unsigned char>(left[at]) <=> static_cast<unsigned char>(right[at]);
      }
   }
   return order != 0 ? order : left.size() <=> right.size();
}

}  // namespace detail

class String {
 public:
   String() = default;
   String(char const* text) : text_(text ? text : "") {}
   String(char const* text, std::size_t length) : text_(text, length) {}
   String(std::string_view text) : text_(text) {}
   String(std::string text) noexcept : text_(std::move(text)) {}

   std::string const& stringValue() const noexcept { return text_; }
   std::string_view view() const noexcept { return text_; }
   operator std::string_view() const noexcept { return text_; }

   char const* data() const noexcept { return text_.data(); }
   char const* c_str() const noexcept { return text_.c_str(); }
   std::size_t size() const noexcept { return text_.size(); }
   bool empty() const noexcept { return text_.empty(); }

   String& operator+=(std::string_view more) {
      text_ += more;
      return *this;
   }
   friend String operator+(String left, std::string_view right) {
      left += right;
      return left;
   }

   friend bool operator==(String const& left, String const& right) noexcept {
      return left.size() == right.size() && detail::compareBytes(left, right) == 0;
   }
   friend std::strong_ordering operator<=>(String const& left, String const& right) noexcept {
      return detail::compareBytes(left, right);
   }
   // Exact overloads for the other string types, so that comparing with them is never ambiguous
   // between converting this string and converting the other one.
   friend bool operator==(String const& left, char const* right) noexcept {
      return left.view() == std::string_view(right ? right : "");
   }
   friend bool operator==(String const& left, std::string_view right) noexcept {
      return left.view() == right;
   }
   friend bool operator==(String const& left, std::string const& right) noexcept {
      return left.stringValue() == right;
   }

 private:
   std::string text_;
};

}  // namespace Kel

template <>
struct std::hash<Kel::String> {
   std::size_t operator()(Kel::String const& text) const noexcept {
      return std::hash<std::string_view>{}(text.view());
   }
};
