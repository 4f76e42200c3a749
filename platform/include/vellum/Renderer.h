// The renderer: one sequence of calls that means indented text in one output format and JSON in
// the other. Text operations do nothing in JSON and JSON operations nothing in text, so show code
// walks its records once and never builds the document in memory.
//
// JSON separators follow one rule: opening an object or a list makes the next item the first
// (no comma); writing a key/value pair or closing an object or list makes the next item a later
// one (comma first). Strings are escaped so that every document is valid JSON: quotes,
// backslashes and control characters are escaped, well-formed UTF-8 is copied as it stands and
// malformed bytes become U+FFFD.
//
// Scopes are best opened with object(), list() and listEntry(), which write the close themselves.
// In debug and sanitizer builds the renderer follows the JSON nesting and asserts at the call that
// breaks it: a close of the wrong kind, a key inside a list, a bare value inside an object, or an
// object or list still open when the renderer ends. The level the renderer starts at is the
// caller's raw document and is not checked. Release builds keep no nesting state.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>

#include "Kel/String.h"
#include "Quoll/IpGenPrefix.h"
#include "Strix/CopyBytes.h"
#include "Strix/JustifyLeft.h"
#include "vellum/JsonKey.h"
#include "vellum/OutputContext.h"
#include "vellum/OutputFormat.h"
#include "vellum/VellumBuffer.h"

namespace vellum {

namespace detail {
// "00" to "99", two characters each.
inline constexpr auto kDigitPairs = [] {
   std::array<char, 200> pairs{};
   for (unsigned value = 0; value < 100; ++value) {
      pairs[2 * value] = static_cast<char>('0' + value / 10);
      pairs[2 * value + 1] = static_cast<char>('0' + value % 10);
   }
   return pairs;
}();
}  // namespace detail

template <typename T>
concept UnsignedNumber = std::unsigned_integral<T> && !std::same_as<T, bool>;

class Renderer {
 public:
   Renderer(OutputContext context, VellumBuffer* buffer) : context_(context), buffer_(*buffer) {}
   Renderer(OutputFormat_t format, VellumBuffer* buffer)
       : Renderer(outputContext(format), buffer) {}
#ifndef NDEBUG
   // Asserts that every scope was closed, unless an exception (an interrupt above all) is ending
   // the output: an interrupted document stays as far as it got.
   ~Renderer() noexcept(false);
#endif

   OutputContext const& context() const noexcept {
      return context_;
   }
   OutputFormat_t format() const noexcept {
      return context_.format;
   }
   bool isText() const noexcept {
      return context_.format == OutputFormat_t::text;
   }
   bool isJson() const noexcept {
      return context_.format == OutputFormat_t::json;
   }
   VellumBuffer& buffer() noexcept {
      return buffer_;
   }

   // ---- Text ----
   void writeString(std::string_view text) {
      if (isText()) {
         buffer_.append(text);
      }
   }
   void writeString(char const* text) {
      writeString(std::string_view(text));
   }
   void writeString(char const* text, std::size_t length) {
      writeString(std::string_view(text, length));
   }
   void writeString(Kel::String const& text) {
      writeString(text.view());
   }
   void writeString(std::string const& text) {
      writeString(std::string_view(text));
   }
   template <UnsignedNumber T>
   void writeString(T number) {
      if (isText()) {
         appendNumber(number);
      }
   }
   template <std::signed_integral T>
   void writeString(T) = delete;
   void writeString(Strix::JustifyLeft<char const*> const& padded) {
      if (isText()) {
         std::string_view const value(padded.value ? padded.value : "");
         buffer_.append(value);
         if (value.size() < padded.width) {
            buffer_.appendFill(padded.fill, padded.width - value.size());
         }
      }
   }
   void writeString(Quoll::IpGenPrefix const& prefix) {
      if (isText()) {
         appendPrefix(prefix);
      }
   }

   // `blanks` blanks and then `text`, the indentation and label that start a line.
   void writeIndented(std::size_t blanks, std::string_view text) {
      if (isText()) {
         buffer_.appendIndented(blanks, text);
      }
   }

   void eol() {
      if (isText()) {
         buffer_.append('\n');
      }
   }

   template <typename Value>
   void _addText(std::string_view label, Value const& value) {
      if (isText()) {
         buffer_.append(label);
         writeString(value);
      }
   }

   // Separators, colons and brackets that exist only in text.
   void addFrill(std::string_view frill) {
      writeString(frill);
   }

   // ---- JSON ----
   void _startJsonObject(JsonKey key) {
      openKeyed(key, Scope::object);
   }
   void _startJsonList(JsonKey key) {
      openKeyed(key, Scope::list);
   }
   void _startJsonListEntry() {
      if (isJson()) {
         checkBareValue();
         opened(Scope::object);
         char* out = separated(buffer_.reserve(2));
         *out++ = '{';
         buffer_.commitTo(out);
         first_ = true;
      }
   }
   void endJsonDict() {
      close(Scope::object);
   }
   void endJsonList() {
      close(Scope::list);
   }

   // Scopes that close themselves around `body`, which writes their contents (text included: the
   // brackets exist in JSON only). An exception out of `body` leaves the scope open, as an
   // interrupted document is left.
   template <typename Body>
   void object(JsonKey key, Body&& body) {
      _startJsonObject(key);
      body();
      endJsonDict();
   }
   template <typename Body>
   void list(JsonKey key, Body&& body) {
      _startJsonList(key);
      body();
      endJsonList();
   }
   // An object as an element of the enclosing list.
   template <typename Body>
   void listEntry(Body&& body) {
      _startJsonListEntry();
      body();
      endJsonDict();
   }

   void _addJsonKeyValuePair(JsonKey key, std::string_view value) {
      if (!isJson()) {
         return;
      }
      if (value.size() <= kShortValue && !detail::needsEscape(value)) {
         plainShortPair(key, value);
         return;
      }
      startPair(key);
      appendQuoted(value);
   }
   // A word of the show code's own (an option or flag name) as a value: like a literal key, its
   // need of escaping was settled when the library was compiled.
   void _addJsonKeyValuePair(JsonKey key, JsonKey value) {
      if (!value.plain() || value.size() > kShortValue) {
         _addJsonKeyValuePair(key, value.text());
      } else if (isJson()) {
         plainShortPair(key, value.text());
      }
   }
   void _addJsonKeyValuePair(JsonKey key, char const* value) {
      _addJsonKeyValuePair(key, std::string_view(value));
   }
   void _addJsonKeyValuePair(JsonKey key, Kel::String const& value) {
      _addJsonKeyValuePair(key, value.view());
   }
   void _addJsonKeyValuePair(JsonKey key, std::string const& value) {
      _addJsonKeyValuePair(key, std::string_view(value));
   }
   template <UnsignedNumber T>
   void _addJsonKeyValuePair(JsonKey key, T value) {
      if (isJson()) {
         writePair(key, kDigits, [value](char* out) { return decimal(out, value); });
      }
   }
   template <std::signed_integral T>
   void _addJsonKeyValuePair(JsonKey key, T value) = delete;
   void _addJsonKeyValuePair(JsonKey key, bool value) {
      if (isJson()) {
         writePair(key, 5, [value](char* out) {
            // Five bytes either way ("true" with its terminating zero); only the word counts.
            std::memcpy(out, value ? "true" : "false", 5);
            return out + (value ? 4 : 5);
         });
      }
   }
   void _addJsonKeyValuePair(JsonKey key, std::nullptr_t) {
      if (isJson()) {
         writePair(key, 4, [](char* out) {
            std::memcpy(out, "null", 4);
            return out + 4;
         });
      }
   }
   void _addJsonKeyValuePair(JsonKey key, Quoll::IpGenPrefix const& value) {
      if (isJson()) {
         writePair(key, Quoll::IpGenPrefix::kMaxTextLength + 2, [&value](char* out) {
            *out++ = '"';
            out += value.format(out);
            *out++ = '"';
            return out;
         });
      }
   }

   // An object of two numbers, such as the ends of a range: {"low":1,"high":2} under `key`, or as
   // an element of the enclosing list when `key` is empty. Renderers write many of them, so the
   // whole object goes into one piece of the buffer when no key needs escaping, as for literal
   // keys the compiler settles.
   template <UnsignedNumber T>
   [[gnu::always_inline]] void numberPair(JsonKey key, JsonKey firstKey, T first, JsonKey secondKey,
                                          T second) {
      if (!isJson()) {
         return;
      }
      constexpr std::size_t kFrame = 16;  // comma, braces, the keys' quotes and colons, a comma
      std::size_t const size =
          key.size() + firstKey.size() + secondKey.size() + 2 * kDigits + kFrame;
      // Empty inner keys take the general path, where an empty key means a bare value.
      if (size > VellumBuffer::kMaxReserve || firstKey.empty() || secondKey.empty() ||
          !key.plain() || !firstKey.plain() || !secondKey.plain()) {
         numberPairEscaped(key, firstKey, first, secondKey, second);
         return;
      }
      if (key.empty()) {
         checkBareValue();
      } else {
         checkKey();
      }
      char* out = separated(buffer_.reserve(size));
      if (!key.empty()) {
         out = quotedKey(out, key);
      }
      *out++ = '{';
      out = quotedKey(out, firstKey);
      out = decimal(out, first);
      *out++ = ',';
      out = quotedKey(out, secondKey);
      out = decimal(out, second);
      *out++ = '}';
      buffer_.commitTo(out);
      first_ = false;
   }

   // A quoted, escaped string.
   void writeJsonValue(std::string_view text) {
      if (isJson()) {
         appendQuoted(text);
      }
   }
   // The escaped contents of a string, without quotes.
   void writeQuotedString(std::string_view text) {
      if (isJson()) {
         appendEscaped(text);
      }
   }

 private:
   enum class Scope : bool { list, object };

#ifdef NDEBUG
   void opened(Scope) noexcept {}
   void closed(Scope) noexcept {}
   void checkKey() const noexcept {}
   void checkBareValue() const noexcept {}
#else
   void opened(Scope scope);
   void closed(Scope scope);
   void checkKey() const;
   void checkBareValue() const;
   bool inside(Scope scope) const noexcept;
#endif

   // Digits of the longest number.
   static constexpr std::size_t kDigits = 20;
   // The longest string value that shares the piece of the buffer of its key.
   static constexpr std::size_t kShortValue = 64;

   void separate() {
      if (!first_) {
         buffer_.append(',');
      }
   }
   // The separator at `out` unless the item is the first; returns the end.
   char* separated(char* out) const noexcept {
      if (!first_) {
         *out++ = ',';
      }
      return out;
   }
   // The separator, the quoted key and its colon, with room for `valueSize` bytes after them in
   // the same piece of the buffer when the key needs no escaping, as nearly every key does: one
   // test of the buffer's room for a whole pair. Returns where the value goes; the caller ends
   // the piece with commitTo. Inline, so that for the literal keys of the show code the compiler
   // answers the escaping question and sizes the copy.
   [[gnu::always_inline]] char* startKey(JsonKey key, std::size_t valueSize) {
      constexpr std::size_t kFrame = 4;  // comma, two quotes, colon
      if (key.size() + valueSize > VellumBuffer::kMaxReserve - kFrame || !key.plain()) {
         startEscapedKey(key.text());
         return buffer_.reserve(valueSize);
      }
      return quotedKey(separated(buffer_.reserve(key.size() + kFrame + valueSize)), key);
   }
   // `"key":` at `out`, for a key that needs no escaping; returns the end.
   static char* quotedKey(char* out, JsonKey key) noexcept {
      *out++ = '"';
      Strix::copyBytes(out, key.text().data(), key.size());
      out += key.size();
      *out++ = '"';
      *out++ = ':';
      return out;
   }
   // A pair, or a bare value when `key` is empty, whose value `writeValue(out)` writes at `out`
   // in at most `valueSize` bytes (at most kShortValue + 2), returning its end.
   template <typename WriteValue>
   [[gnu::always_inline]] void writePair(JsonKey key, std::size_t valueSize,
                                         WriteValue&& writeValue) {
      char* out;
      if (key.empty()) {
         checkBareValue();
         out = separated(buffer_.reserve(valueSize + 1));
      } else {
         checkKey();
         out = startKey(key, valueSize);
      }
      buffer_.commitTo(writeValue(out));
      first_ = false;
   }
   template <UnsignedNumber T>
   void numberPairEscaped(JsonKey key, JsonKey firstKey, T first, JsonKey secondKey, T second) {
      auto const pairs = [&] {
         _addJsonKeyValuePair(firstKey, first);
         _addJsonKeyValuePair(secondKey, second);
      };
      if (key.empty()) {
         listEntry(pairs);
      } else {
         object(key, pairs);
      }
   }
   static char openBracket(Scope scope) noexcept {
      return scope == Scope::object ? '{' : '[';
   }
   static char closeBracket(Scope scope) noexcept {
      return scope == Scope::object ? '}' : ']';
   }
   void openKeyed(JsonKey key, Scope scope) {
      if (isJson()) {
         checkKey();
         opened(scope);
         char* out = startKey(key, 1);
         *out++ = openBracket(scope);
         buffer_.commitTo(out);
         first_ = true;
      }
   }
   void close(Scope scope) {
      if (isJson()) {
         closed(scope);
         buffer_.append(closeBracket(scope));
         first_ = false;
      }
   }
   // A string value that needs no escaping and is at most kShortValue long: it goes into the
   // key's piece of the buffer.
   void plainShortPair(JsonKey key, std::string_view value) {
      writePair(key, value.size() + 2, [value](char* out) {
         *out++ = '"';
         Strix::copyBytes(out, value.data(), value.size());
         out += value.size();
         *out++ = '"';
         return out;
      });
   }
   // The separator and the key of a pair whose value is written piecewise.
   void startPair(JsonKey key) {
      if (key.empty()) {
         checkBareValue();
         separate();
      } else {
         checkKey();
         buffer_.commitTo(startKey(key, 0));
      }
      first_ = false;
   }

   template <UnsignedNumber T>
   void appendNumber(T number) {
      char* start = buffer_.reserve(kDigits);
      buffer_.commit(static_cast<std::size_t>(decimal(start, number) - start));
   }
   // The decimal digits of `number` at `out` (room for kDigits); returns the end. Numbers below
   // 10,000, most of what the show code writes (protocols, DSCP values, ports, the counts of a
   // quiet device), are written in line from a table of digit pairs: the general conversion, which
   // the compiler keeps out of line in renderers that write much, costs a call and a loop.
   template <UnsignedNumber T>
   [[gnu::always_inline]] static char* decimal(char* out, T number) noexcept {
      if (number >= 10000) {
         return std::to_chars(out, out + kDigits, number).ptr;
      }
      auto const value = static_cast<unsigned>(number);
      auto const pair = [](char* at, unsigned twoDigits) {
         std::memcpy(at, &detail::kDigitPairs[2 * twoDigits], 2);
      };
      if (value < 10) {
         *out = static_cast<char>('0' + value);
         return out + 1;
      }
      if (value < 100) {
         pair(out, value);
         return out + 2;
      }
      if (value < 1000) {
         *out = static_cast<char>('0' + value / 100);
         pair(out + 1, value % 100);
         return out + 3;
      }
      pair(out, value / 100);
      pair(out + 2, value % 100);
      return out + 4;
   }
   void appendPrefix(Quoll::IpGenPrefix const& prefix) {
      char* start = buffer_.reserve(Quoll::IpGenPrefix::kMaxTextLength);
      buffer_.commit(prefix.format(start));
   }
   void appendQuoted(std::string_view text) {
      constexpr std::size_t kQuotes = 2;
      if (text.size() > VellumBuffer::kMaxReserve - kQuotes || detail::needsEscape(text)) {
         buffer_.append('"');
         appendEscaped(text);
         buffer_.append('"');
         return;
      }
      char* const out = buffer_.reserve(text.size() + kQuotes);
      out[0] = '"';
      Strix::copyBytes(out + 1, text.data(), text.size());
      out[text.size() + 1] = '"';
      buffer_.commit(text.size() + kQuotes);
   }
   void appendEscaped(std::string_view text) {
      if (detail::needsEscape(text)) [[unlikely]] {
         appendEscapedSlow(text);
      } else {
         buffer_.append(text);
      }
   }
   void appendEscapedSlow(std::string_view text);
   void startEscapedKey(std::string_view key);

   OutputContext context_;
   VellumBuffer& buffer_;
   bool first_ = true;
#ifndef NDEBUG
   // The open scopes, innermost last: bit N is set when the scope at depth N is an object.
   static constexpr std::uint32_t kMaxDepth = 64;
   std::uint64_t objectAt_ = 0;
   std::uint32_t depth_ = 0;
   int uncaughtAtStart_ = std::uncaught_exceptions();
#endif
};

// The renderer the show commands use. It writes through a print buffer only.
class RendererV2 : public Renderer {
 public:
   RendererV2(OutputFormat_t format, VellumBuffer* buffer, bool buffered);
   RendererV2(OutputContext context, VellumBuffer* buffer, bool buffered);
};

}  // namespace vellum
