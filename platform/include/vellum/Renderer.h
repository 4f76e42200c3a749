// The renderer: one sequence of calls that means indented text in one output format and JSON in
// the other. Text operations do nothing in JSON and JSON operations nothing in text, so show code
// walks its records once and never builds the document in memory.
//
// JSON separators follow one rule: opening an object or a list makes the next item the first
// (no comma); writing a key/value pair or closing an object or list makes the next item a later
// one (comma first). Strings are escaped so that every document is valid JSON: quotes,
// backslashes and control characters are escaped, well-formed UTF-8 is copied as it stands and
// malformed bytes become U+FFFD.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

#include "Kel/String.h"
#include "Quoll/IpGenPrefix.h"
#include "Strix/JustifyLeft.h"
#include "vellum/OutputFormat.h"
#include "vellum/VellumBuffer.h"

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
}  // namespace detail

template <typename T>
concept UnsignedNumber = std::unsigned_integral<T> && !std::same_as<T, bool>;

class Renderer {
 public:
   Renderer(OutputFormat_t format, VellumBuffer* buffer) : format_(format), buffer_(*buffer) {}

   OutputFormat_t format() const noexcept { return format_; }
   bool isText() const noexcept { return format_ == OutputFormat_t::text; }
   bool isJson() const noexcept { return format_ == OutputFormat_t::json; }
   VellumBuffer& buffer() noexcept { return buffer_; }

   // ---- Text ----
   void writeString(std::string_view text) {
      if (isText()) {
         buffer_.append(text);
      }
   }
   void writeString(char const* text) { writeString(std::string_view(text)); }
   void writeString(char const* text, std::size_t length) {
      writeString(std::string_view(text, length));
   }
   void writeString(Kel::String const& text) { writeString(text.view()); }
   void writeString(std::string const& text) { writeString(std::string_view(text)); }
   template <UnsignedNumber T>
   void writeString(T number) {
      if (isText()) {
         appendNumber(number);
      }
   }
   template <std::signed_integral T>
   void writeString(T) = delete;
   void writeString(Strix::JustifyLeft<char const*> const& padded);
   void writeString(Quoll::IpGenPrefix const& prefix) {
      if (isText()) {
         appendPrefix(prefix);
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
   void addFrill(std::string_view frill) { writeString(frill); }

   // ---- JSON ----
   void _startJsonObject(std::string_view key) { openKeyed(key, '{'); }
   void _startJsonList(std::string_view key) { openKeyed(key, '['); }
   void _startJsonListEntry() {
      if (isJson()) {
         separate();
         buffer_.append('{');
         first_ = true;
      }
   }
   void endJsonDict() { close('}'); }
   void endJsonList() { close(']'); }

   void _addJsonKeyValuePair(std::string_view key, std::string_view value) {
      if (startPair(key)) {
         appendQuoted(value);
      }
   }
   void _addJsonKeyValuePair(std::string_view key, char const* value) {
      _addJsonKeyValuePair(key, std::string_view(value));
   }
   void _addJsonKeyValuePair(std::string_view key, Kel::String const& value) {
      _addJsonKeyValuePair(key, value.view());
   }
   void _addJsonKeyValuePair(std::string_view key, std::string const& value) {
      _addJsonKeyValuePair(key, std::string_view(value));
   }
   template <UnsignedNumber T>
   void _addJsonKeyValuePair(std::string_view key, T value) {
      if (startPair(key)) {
         appendNumber(value);
      }
   }
   template <std::signed_integral T>
   void _addJsonKeyValuePair(std::string_view key, T value) = delete;
   void _addJsonKeyValuePair(std::string_view key, bool value) {
      if (startPair(key)) {
         buffer_.append(value ? std::string_view("true") : std::string_view("false"));
      }
   }
   void _addJsonKeyValuePair(std::string_view key, std::nullptr_t) {
      if (startPair(key)) {
         buffer_.append(std::string_view("null"));
      }
   }
   void _addJsonKeyValuePair(std::string_view key, Quoll::IpGenPrefix const& value) {
      if (startPair(key)) {
         buffer_.append('"');
         appendPrefix(value);
         buffer_.append('"');
      }
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
   void separate() {
      if (!first_) {
         buffer_.append(',');
      }
   }
   void openKeyed(std::string_view key, char bracket) {
      if (isJson()) {
         separate();
         appendQuoted(key);
         buffer_.append(':');
         buffer_.append(bracket);
         first_ = true;
      }
   }
   void close(char bracket) {
      if (isJson()) {
         buffer_.append(bracket);
         first_ = false;
      }
   }
   // Writes the separator and the key; false in text, where the pair writes nothing.
   bool startPair(std::string_view key) {
      if (!isJson()) {
         return false;
      }
      separate();
      first_ = false;
      if (!key.empty()) {
         appendQuoted(key);
         buffer_.append(':');
      }
      return true;
   }

   template <UnsignedNumber T>
   void appendNumber(T number) {
      constexpr std::size_t kDigits = 20;
      char* start = buffer_.reserve(kDigits);
      buffer_.commit(
          static_cast<std::size_t>(std::to_chars(start, start + kDigits, number).ptr - start));
   }
   void appendPrefix(Quoll::IpGenPrefix const& prefix) {
      char* start = buffer_.reserve(Quoll::IpGenPrefix::kMaxTextLength);
      buffer_.commit(prefix.format(start));
   }
   void appendQuoted(std::string_view text) {
      buffer_.append('"');
      appendEscaped(text);
      buffer_.append('"');
   }
   void appendEscaped(std::string_view text) {
      for (std::size_t i = 0; i < text.size(); ++i) {
         if (detail::kNeedsEscape[static_cast<unsigned char>(text[i])]) [[unlikely]] {
            buffer_.append(text.substr(0, i));
            appendEscapedSlow(text.substr(i));
            return;
         }
      }
      buffer_.append(text);
   }
   void appendEscapedSlow(std::string_view text);

   OutputFormat_t format_;
   VellumBuffer& buffer_;
   bool first_ = true;
};

// The renderer the show commands use. It writes through a print buffer only.
class RendererV2 : public Renderer {
 public:
   RendererV2(OutputFormat_t format, VellumBuffer* buffer, bool buffered);
};

}  // namespace vellum
