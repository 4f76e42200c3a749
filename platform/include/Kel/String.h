// Kel::String is the object model's string: an immutable value whose copies share one text (short
// texts live inline), comparisons that order by bytes, and cheap views for the renderer.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

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

// A name is copied into every map that keys by it and every entity that carries it, so a copy
// must cost little: the text lives once, in an immutable counted block shared by all copies, and
// the string itself is one word. Texts of up to kInlineCapacity bytes (the empty text among them)
// need no block: they sit in the word itself, tagged by its lowest bit, which a block's address
// never sets.
class String {
   // Followed in the same allocation by the text and a terminating zero.
   struct Shared {
      std::atomic<std::uint32_t> references;
      std::uint32_t size;
      char* text() noexcept { return reinterpret_cast<char*>(this + 1); }
   };
   static_assert(std::endian::native == std::endian::little,
                 "the inline tag shares its byte with the lowest byte of a block's address");

 public:
   static constexpr std::size_t kInlineCapacity = sizeof(Shared*) - 2;

   String() noexcept = default;
   String(char const* text) : String(std::string_view(text ? text : "")) {}
   String(char const* text, std::size_t length) : String(std::string_view(text, length)) {}
   String(std::string_view text) { assign(text); }
   String(std::string const& text) : String(std::string_view(text)) {}

   String(String const& other) noexcept : word_(other.word_) { retain(); }
   String(String&& other) noexcept : word_(std::exchange(other.word_, kEmpty)) {}
   String& operator=(String const& other) noexcept {
      String(other).swap(*this);
      return *this;
   }
   String& operator=(String&& other) noexcept {
      String(std::move(other)).swap(*this);
      return *this;
   }
   ~String() { release(); }
   void swap(String& other) noexcept { std::swap(word_, other.word_); }

   // A copy, for the few places that keep the text apart from the model (dumps, tests).
   std::string stringValue() const { return std::string(view()); }
   std::string_view view() const noexcept { return {data(), size()}; }
   operator std::string_view() const noexcept { return view(); }

   // The text, followed by a zero byte.
   char const* data() const noexcept {
      return isInline() ? reinterpret_cast<char const*>(&word_) + 1 : shared()->text();
   }
   std::size_t size() const noexcept { return isInline() ? (word_ & 0xff) >> 1 : shared()->size; }
   bool empty() const noexcept { return size() == 0; }

   String& operator+=(std::string_view more) {
      std::string joined(view());
      joined += more;
      return *this = String(std::string_view(joined));
   }
   friend String operator+(String const& left, std::string_view right) {
      String joined(left);
      joined += right;
      return joined;
   }

   friend bool operator==(String const& left, String const& right) noexcept {
      return left.word_ == right.word_ || left.view() == right.view();
   }
   friend std::strong_ordering operator<=>(String const& left, String const& right) noexcept {
      // Copies of one name share its word, and lookups often find the very copy they hold.
      if (left.word_ == right.word_) {
         return std::strong_ordering::equal;
      }
      return detail::compareBytes(left.view(), right.view());
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
      return left.view() == right;
   }
   friend std::strong_ordering operator<=>(String const& left, std::string_view right) noexcept {
      return detail::compareBytes(left.view(), right);
   }

 private:
   bool isInline() const noexcept { return (word_ & 1) != 0; }
   Shared* shared() const noexcept { return reinterpret_cast<Shared*>(word_); }

   void assign(std::string_view text) {
      if (text.empty()) {
         return;
      }
      if (text.size() <= kInlineCapacity) {
         word_ = (text.size() << 1) | 1;
         std::memcpy(reinterpret_cast<char*>(&word_) + 1, text.data(), text.size());
         return;
      }
      if (text.size() > UINT32_MAX) {
         throw std::length_error("Kel::String: text too long");
      }
      auto* block = new (::operator new(sizeof(Shared) + text.size() + 1))
          Shared{1, static_cast<std::uint32_t>(text.size())};
      std::memcpy(block->text(), text.data(), text.size());
      block->text()[text.size()] = '\0';
      word_ = reinterpret_cast<std::uintptr_t>(block);
   }
   void retain() const noexcept {
      if (!isInline()) {
         shared()->references.fetch_add(1, std::memory_order_relaxed);
      }
   }
   void release() noexcept {
      if (!isInline() && shared()->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
         shared()->~Shared();
         ::operator delete(shared());
      }
   }

   static constexpr std::uintptr_t kEmpty = 1;  // inline, of length 0

   std::uintptr_t word_ = kEmpty;
};

}  // namespace Kel

template <>
struct std::hash<Kel::String> {
   std::size_t operator()(Kel::String const& text) const noexcept {
      return std::hash<std::string_view>{}(text.view());
   }
};
