// JSON text written in one pass, as the fuzz targets build their states: scopes that close
// themselves and the separators between values, nothing more. A state is written straight into
// one string rather than built as a document first, which under the address sanitizer cost more
// than loading and rendering the state together.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace fuzz {

class JsonText {
 public:
   template <typename Body>
   void object(Body body) {
      open('{');
      body();
      close('}');
   }

   template <typename Body>
   void list(Body body) {
      open('[');
      body();
      close(']');
   }

   // A member of the object being written, whose value `body` writes.
   template <typename Body>
   void member(std::string_view key, Body body) {
      separate();
      quote(key);
      text_ += ':';
      comma_ = false;
      body();
   }

   template <typename Body>
   void objectMember(std::string_view key, Body body) {
      member(key, [&] { object(body); });
   }
   void stringMember(std::string_view key, std::string_view value) {
      member(key, [&] { string(value); });
   }
   void numberMember(std::string_view key, std::uint64_t value) {
      member(key, [&] { number(value); });
   }
   void boolMember(std::string_view key, bool value) {
      member(key, [&] { boolean(value); });
   }

   void string(std::string_view value) {
      separate();
      quote(value);
   }
   void number(std::uint64_t value) {
      separate();
      text_ += std::to_string(value);
   }
   void boolean(bool value) {
      separate();
      text_ += value ? "true" : "false";
   }
   // A value written by another JsonText.
   void raw(std::string_view json) {
      separate();
      text_ += json;
   }

   std::string take() && { return std::move(text_); }

 private:
   void separate() {
      if (comma_) {
         text_ += ',';
      }
      comma_ = true;
   }
   void open(char bracket) {
      separate();
      text_ += bracket;
      comma_ = false;
   }
   void close(char bracket) {
      text_ += bracket;
      comma_ = true;
   }
   // The states' names and texts hold no control characters: quotes and backslashes are all
   // there is to escape.
   void quote(std::string_view value) {
      text_ += '"';
      for (char const character : value) {
         if (character == '"' || character == '\\') {
            text_ += '\\';
         }
         text_ += character;
      }
      text_ += '"';
   }

   std::string text_;
   bool comma_ = false;
};

}  // namespace fuzz
