// A value of the state document with its place, and the typed reads that say what was expected
// when the value is of another type.
#pragma once

#include <simdjson.h>

#include <cstdint>
#include <string_view>

#include "JsonPointer.h"
#include "TextPieces.h"

namespace StateLoader {

struct Node {
   simdjson::dom::element value;
   Where const& where;
   // For a value read from the text piece by piece: its place there, so that it can be kept and
   // read again later.
   TextValue const* text = nullptr;
   // An object left to be read member by member; `value` is then unset.
   bool unparsed = false;
};

// Refuses a value of another type than `expected` ("a string"), naming what it is.
[[noreturn]] void failType(Node const& node, std::string_view expected);

// In line: a rule reads some thirty values, and the check is a comparison of the value's type.
inline simdjson::dom::object asObject(Node const& node) {
   if (node.unparsed || !node.value.is_object()) {
      failType(node, "an object");
   }
   return node.value.get_object().value_unsafe();
}

inline simdjson::dom::array asArray(Node const& node) {
   if (node.unparsed || !node.value.is_array()) {
      failType(node, "a list");
   }
   return node.value.get_array().value_unsafe();
}

inline std::string_view asString(Node const& node) {
   if (node.unparsed || !node.value.is_string()) {
      failType(node, "a string");
   }
   return node.value.get_string().value_unsafe();
}

inline bool asBool(Node const& node) {
   if (node.unparsed || !node.value.is_bool()) {
      failType(node, "true or false");
   }
   return node.value.get_bool().value_unsafe();
}

[[noreturn]] void failUnsigned(Node const& node, std::uint64_t largest);

// A whole number from 0 to `largest`; in line, as a rule reads a few.
inline std::uint64_t asUnsigned(Node const& node, std::uint64_t largest) {
   if (!node.unparsed) {
      if (node.value.is_int64()) {
         auto const number = node.value.get_int64().value_unsafe();
         if (number >= 0 && static_cast<std::uint64_t>(number) <= largest) {
            return static_cast<std::uint64_t>(number);
         }
      } else if (node.value.is_uint64()) {
         auto const number = node.value.get_uint64().value_unsafe();
         if (number <= largest) {
            return number;
         }
      }
   }
   failUnsigned(node, largest);
}

// Calls visit(node) for every element of a list.
template <typename Visit>
void forEachElement(Node const& list, Visit&& visit) {
   std::size_t index = 0;
   for (simdjson::dom::element const element : asArray(list)) {
      Where const where = list.where.element(index++);
      visit(Node{element, where});
   }
}

// A reference to a visitor of members, so that the walk over an object's text is not a template.
class MemberVisitor {
 public:
   template <typename Visit>
   MemberVisitor(Visit& visit) noexcept  // NOLINT: stands for the visitor it refers to
       : visit_(const_cast<void*>(static_cast<void const*>(&visit))),
         call_([](void* target, std::string_view key, Node const& node) {
            (*static_cast<Visit*>(target))(key, node);
         }) {}

   void operator()(std::string_view key, Node const& node) const { call_(visit_, key, node); }

 private:
   void* visit_;
   void (*call_)(void*, std::string_view, Node const&);
};

// What becomes of an object's text once its members have been read from it: let go, or kept to
// be read again.
enum class Behind { released, kept };

// Calls visit(key, node) for every member of an object read member by member from the text.
void forEachTextMember(Node const& object, MemberVisitor visit, Behind behind);

// Calls visit(key, node) for every member of an object, in document order.
template <typename Visit>
void forEachMember(Node const& object, Visit&& visit, Behind behind = Behind::released) {
   if (object.unparsed) {
      forEachTextMember(object, MemberVisitor(visit), behind);
      return;
   }
   for (auto const [key, value] : asObject(object)) {
      Where const where = object.where.member(key);
      visit(key, Node{value, where});
   }
}

}  // namespace StateLoader
