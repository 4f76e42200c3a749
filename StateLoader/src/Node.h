// A value of the state document with its place, and the typed reads that say what was expected
// when the value is of another type.
#pragma once

#include <simdjson.h>

#include <cstdint>
#include <string_view>

#include "JsonPointer.h"

namespace StateLoader {

struct Node {
   simdjson::dom::element value;
   Where const& where;
};

simdjson::dom::object asObject(Node const& node);
simdjson::dom::array asArray(Node const& node);
std::string_view asString(Node const& node);
bool asBool(Node const& node);
// A whole number from 0 to `largest`.
std::uint64_t asUnsigned(Node const& node, std::uint64_t largest);

// Calls visit(node) for every element of a list.
template <typename Visit>
void forEachElement(Node const& list, Visit&& visit) {
   std::size_t index = 0;
   for (simdjson::dom::element const element : asArray(list)) {
      Where const where = list.where.element(index++);
      visit(Node{element, where});
   }
}

// Calls visit(key, node) for every member of an object whose keys are names.
template <typename Visit>
void forEachMember(Node const& object, Visit&& visit) {
   for (auto const [key, value] : asObject(object)) {
      Where const where = object.where.member(key);
      visit(key, Node{value, where});
   }
}

}  // namespace StateLoader
