// Kel::String is the object model's string: a value type with the standard string's storage (short
// names live inline), comparisons that order by bytes, and cheap views for the renderer.
#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace Kel {

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

   friend bool operator==(String const&, String const&) = default;
   friend std::strong_ordering operator<=>(String const&, String const&) = default;
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
