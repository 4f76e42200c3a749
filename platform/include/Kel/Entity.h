// Object-model entities: reference-counted objects that describe themselves. Each entity type
// has one TypeInfo that lists its attributes (its base type's first, then its own, in declaration
// order); through it any attribute can be read by name as a Kel::Value and scalar attributes can
// be written. This is what the command layer uses to show an object's state generically.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Kel/Ptr.h"
#include "Kel/PtrInterface.h"
#include "Kel/Value.h"

namespace Kel {

class TypeInfo;

enum class WriteResult { done, unknownAttribute, notWritable, wrongType };

class Entity : public PtrInterface {
 public:
   // The entity's type identity, for reflection.
   virtual TypeInfo const& fwkType() const = 0;

   // Empty when the type has no attribute of that name.
   std::optional<Value> attribute(std::string_view name) const;
   WriteResult attributeIs(std::string_view name, Value const& value);

   bool hasNotificationActive() const noexcept { return hasNotificationActive_; }
   void hasNotificationActiveIs(bool active) noexcept { hasNotificationActive_ = active; }

 private:
   bool hasNotificationActive_ = false;
};

class TypeInfo {
 public:
   struct Attribute {
      std::string name;
      std::function<Value(Entity const&)> read;
      // Empty for attributes that are not writable scalars. Returns false for a value of the
      // wrong type.
      std::function<bool(Entity&, Value const&)> write;
   };

   TypeInfo(std::string name, TypeInfo const* base, std::vector<Attribute> attributes);

   std::string const& name() const noexcept { return name_; }
   TypeInfo const* base() const noexcept { return base_; }

   // The base type's attributes first, then this type's.
   std::vector<Attribute const*> attributes() const;
   Attribute const* attribute(std::string_view name) const;

 private:
   std::string name_;
   TypeInfo const* base_;
   std::vector<Attribute> own_;
};

// Builders for attribute descriptors from an entity type's member functions.
template <typename T, typename Result>
TypeInfo::Attribute readOnly(std::string name, Result (T::*getter)() const) {
   return {std::move(name),
           [getter](Entity const& entity) {
              return toValue((static_cast<T const&>(entity).*getter)());
           },
           {}};
}

template <typename T, typename Result, typename Argument, typename SetterResult>
TypeInfo::Attribute scalar(std::string name, Result (T::*getter)() const,
                           SetterResult (T::*setter)(Argument)) {
   using Stored = std::remove_cvref_t<Argument>;
   return {std::move(name),
           [getter](Entity const& entity) {
              return toValue((static_cast<T const&>(entity).*getter)());
           },
           [setter](Entity& entity, Value const& value) {
              auto converted = fromValue<Stored>(value);
              if (!converted) {
                 return false;
              }
              (static_cast<T&>(entity).*setter)(*converted);
              return true;
           }};
}

}  // namespace Kel
