// Type checks of document values. Messages name the expected type and what was found, with the
// number itself where a number is out of range.
#include "Node.h"

#include <charconv>
#include <cmath>
#include <string>

#include "StateError.h"

namespace StateLoader {

namespace {

using simdjson::dom::element_type;

std::string found(Node const& node) {
   if (node.unparsed) {
      return "an object";
   }
   auto const& value = node.value;
   switch (value.type()) {
      case element_type::ARRAY:
         return "a list";
      case element_type::OBJECT:
         return "an object";
      case element_type::INT64:
      case element_type::UINT64:
      case element_type::DOUBLE:
         return "a number";
      case element_type::STRING:
         return "a string";
      case element_type::BOOL:
         return value.get_bool().value_unsafe() ? "true" : "false";
      case element_type::NULL_VALUE:
         return "null";
   }
   return "an unknown value";
}

std::string decimalText(double number) {
   char text[32];
   auto const end = std::to_chars(text, text + sizeof text, number).ptr;
   std::string written(text, end);
   if (std::floor(number) == number) {
      written += " written with a fraction or an exponent";
   }
   return written;
}

// What a number that is not a whole number in range was.
std::string numberText(Node const& node) {
   if (node.unparsed) {
      return found(node);
   }
   auto const& value = node.value;
   switch (value.type()) {
      case element_type::INT64:
         return std::to_string(value.get_int64().value_unsafe());
      case element_type::UINT64:
         return std::to_string(value.get_uint64().value_unsafe());
      case element_type::DOUBLE:
         return decimalText(value.get_double().value_unsafe());
      default:
         return found(node);
   }
}

}  // namespace

void failType(Node const& node, std::string_view expected) {
   fail(node.where, "expected " + std::string(expected) + ", found " + found(node));
}

void failUnsigned(Node const& node, std::uint64_t largest) {
   fail(node.where, "expected a whole number from 0 to " + std::to_string(largest) + ", found " +
                        numberText(node));
}

}  // namespace StateLoader
