// A value or the reason why there is none: what parsers of user and state-file text return, so
// that the caller can name exactly what was wrong.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace Kel {

struct Failure {
   std::string reason;
};

template <typename T>
class Expected {
 public:
   Expected(T value) : content_(std::move(value)) {}
   Expected(Failure failure) : content_(std::move(failure)) {}

   bool ok() const noexcept { return content_.index() == 0; }
   explicit operator bool() const noexcept { return ok(); }

   T const& value() const& { return std::get<0>(content_); }
   T&& value() && { return std::get<0>(std::move(content_)); }
   T const& operator*() const& { return value(); }
   T const* operator->() const { return &value(); }

   std::string const& reason() const { return std::get<1>(content_).reason; }

 private:
   std::variant<T, Failure> content_;
};

}  // namespace Kel
