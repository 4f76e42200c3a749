// Name-based attribute access through an entity's type descriptor.
#include "Kel/Entity.h"

namespace Kel {

TypeInfo::TypeInfo(std::string name, TypeInfo const* base, std::vector<Attribute> attributes)
    : name_(std::move(name)), base_(base), own_(std::move(attributes)) {}

std::vector<TypeInfo::Attribute const*> TypeInfo::attributes() const {
   std::vector<Attribute const*> all =
       base_ ? base_->attributes() : std::vector<Attribute const*>{};
   for (auto const& attribute : own_) {
      all.push_back(&attribute);
   }
   return all;
}

TypeInfo::Attribute const* TypeInfo::attribute(std::string_view name) const {
   for (auto const* type = this; type; type = type->base_) {
      for (auto const& attribute : type->own_) {
         if (attribute.name == name) {
            return &attribute;
         }
      }
   }
   return nullptr;
}

std::optional<Value> Entity::attribute(std::string_view name) const {
   auto const* descriptor = fwkType().attribute(name);
   if (!descriptor) {
      return std::nullopt;
   }
   return descriptor->read(*this);
}

WriteResult Entity::attributeIs(std::string_view name, Value const& value) {
   auto const* descriptor = fwkType().attribute(name);
   if (!descriptor) {
      return WriteResult::unknownAttribute;
   }
   if (!descriptor->write) {
      return WriteResult::notWritable;
   }
   return descriptor->write(*this, value) ? WriteResult::done : WriteResult::wrongType;
}

}  // namespace Kel
