// Accessors of the reflection value type.
#include "Kel/Value.h"

#include "Kel/Entity.h"

namespace Kel {

Value::Value(Entries entries) : content_(std::make_shared<Entries const>(std::move(entries))) {}

Value::Value(Ptr<Entity const> const& entity) : content_(Ptr<PtrInterface const>(entity)) {}

std::optional<bool> Value::asBool() const {
   if (auto const* flag = std::get_if<bool>(&content_)) {
      return *flag;
   }
   return std::nullopt;
}

std::optional<std::int64_t> Value::asInteger() const {
   if (auto const* number = std::get_if<std::int64_t>(&content_)) {
      return *number;
   }
   if (auto const* number = std::get_if<std::uint64_t>(&content_);
       number && std::in_range<std::int64_t>(*number)) {
      return static_cast<std::int64_t>(*number);
   }
   return std::nullopt;
}

std::optional<std::uint64_t> Value::asUnsigned() const {
   if (auto const* number = std::get_if<std::uint64_t>(&content_)) {
      return *number;
   }
   if (auto const* number = std::get_if<std::int64_t>(&content_); number && *number >= 0) {
      return static_cast<std::uint64_t>(*number);
   }
   return std::nullopt;
}

String const* Value::asString() const {
   return std::get_if<String>(&content_);
}

Ptr<Entity const> Value::asEntity() const {
   if (auto const* entity = std::get_if<Ptr<PtrInterface const>>(&content_)) {
      return Kel::ptrCast<Entity const>(*entity);
   }
   return nullptr;
}

Value::Entries const* Value::asEntries() const {
   if (auto const* entries = std::get_if<std::shared_ptr<Entries const>>(&content_)) {
      return entries->get();
   }
   return nullptr;
}

bool operator==(Value const& left, Value const& right) {
   if (left.kind() != right.kind()) {
      return false;
   }
   if (auto const* entries = left.asEntries()) {
      return *entries == *right.asEntries();
   }
   return left.content_ == right.content_;
}

}  // namespace Kel
