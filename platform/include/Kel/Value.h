// The small value type of reflection: what reading an attribute by name gives. Scalars are held
// directly, entities by counted reference, and collections as a list of key/value entries (the
// key of a set entry is the element and its value is null; an array's key is the index).
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "Kel/Ptr.h"
#include "Kel/String.h"

namespace Kel {

class Entity;

class Value {
 public:
   struct Entry;
   using Entries = std::vector<Entry>;

   enum class Kind { null, boolean, integer, unsignedInteger, string, entity, collection };

   Value() = default;
   explicit Value(bool flag) : content_(flag) {}
   explicit Value(std::int64_t number) : content_(number) {}
   explicit Value(std::uint64_t number) : content_(number) {}
   explicit Value(String text) : content_(std::move(text)) {}
   explicit Value(Ptr<Entity const> const& entity);
   explicit Value(Entries entries);

   Kind kind() const noexcept { return static_cast<Kind>(content_.index()); }
   bool isNull() const noexcept { return kind() == Kind::null; }

   std::optional<bool> asBool() const;
   std::optional<std::int64_t> asInteger() const;
   std::optional<std::uint64_t> asUnsigned() const;
   String const* asString() const;
   Ptr<Entity const> asEntity() const;
   Entries const* asEntries() const;

   friend bool operator==(Value const& left, Value const& right);

 private:
   // Entities are held through their base so that this header need not see Entity whole.
   std::variant<std::monostate, bool, std::int64_t, std::uint64_t, String, Ptr<PtrInterface const>,
                std::shared_ptr<Entries const>>
       content_;
};

struct Value::Entry {
   Value key;
   Value value;
   friend bool operator==(Entry const&, Entry const&) = default;
};

// Conversion of attribute values. Types of other namespaces take part by declaring a toValue of
// their own next to the type (found by argument-dependent lookup).
inline Value toValue(bool flag) {
   return Value(flag);
}
inline Value toValue(String const& text) {
   return Value(text);
}
inline Value toValue(std::string const& text) {
   return Value(String(text));
}
inline Value toValue(char const* text) {
   return Value(String(text));
}

template <std::integral T>
requires(!std::same_as<T, bool>) Value toValue(T number) {
   if constexpr (std::is_signed_v<T>) {
      return Value(static_cast<std::int64_t>(number));
   } else {
      return Value(static_cast<std::uint64_t>(number));
   }
}

template <typename T>
requires std::is_enum_v<T> Value toValue(T value) {
   return toValue(static_cast<std::underlying_type_t<T>>(value));
}

template <typename T>
requires std::derived_from<std::remove_const_t<T>, Entity> Value toValue(Ptr<T> const& entity) {
   return Value(Ptr<Entity const>(entity));
}

// Every collection of the object model: iterable entries of key and value, or keys alone.
template <typename Collection>
requires requires(Collection const& c) {
   c.begin();
   c.end();
   c.size();
} &&(!std::convertible_to<Collection, String>)Value toValue(Collection const& collection) {
   Value::Entries entries;
   entries.reserve(collection.size());
   for (auto const& item : collection) {
      if constexpr (requires { item.first; }) {
         entries.push_back({toValue(item.first), toValue(item.second)});
      } else if constexpr (requires { item.index; }) {
         entries.push_back({toValue(item.index), toValue(item.value)});
      } else {
         entries.push_back({toValue(item), Value()});
      }
   }
   return Value(std::move(entries));
}

// The reverse, for writable scalar attributes: empty when the value does not fit the type.
template <typename T>
std::optional<T> fromValue(Value const& value) {
   if constexpr (std::same_as<T, bool>) {
      return value.asBool();
   } else if constexpr (std::same_as<T, String>) {
      auto const* text = value.asString();
      return text ? std::optional<T>(*text) : std::nullopt;
   } else if constexpr (std::is_enum_v<T>) {
      auto raw = fromValue<std::underlying_type_t<T>>(value);
      return raw ? std::optional<T>(static_cast<T>(*raw)) : std::nullopt;
   } else if constexpr (std::integral<T>) {
      if constexpr (std::is_signed_v<T>) {
         auto number = value.asInteger();
         if (!number || !std::in_range<T>(*number)) {
            return std::nullopt;
         }
         return static_cast<T>(*number);
      } else {
         auto number = value.asUnsigned();
         if (!number || !std::in_range<T>(*number)) {
            return std::nullopt;
         }
         return static_cast<T>(*number);
      }
   } else {
      static_assert(sizeof(T) == 0, "no conversion from Kel::Value to this type");
   }
}

}  // namespace Kel
