// Validation of interface names read from outside, and the id's text conversions.
#include "Quoll/IntfId.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "Kel/Value.h"

namespace Quoll {

namespace {

// Blanks would split the name on a command line; control characters would garble the output.
bool isUnusable(char character) {
   auto const code = static_cast<unsigned char>(character);
   return code <= ' ' || code == 0x7f;
}

std::string describeUnusable(char character) {
   if (character == ' ') {
      return "blank";
   }
   return "control character " + std::to_string(static_cast<unsigned char>(character));
}

}  // namespace

Kel::Expected<IntfId> IntfId::parse(std::string_view text) {
   if (text.empty()) {
      return Kel::Failure{"empty interface name"};
   }
   auto const unusable = std::find_if(text.begin(), text.end(), isUnusable);
   if (unusable != text.end()) {
      auto const position = std::to_string(unusable - text.begin() + 1);
      return Kel::Failure{describeUnusable(*unusable) + " at position " + position +
                          " in interface name"};
   }
   return IntfId(Kel::String(text));
}

std::ostream& operator<<(std::ostream& stream, IntfId const& intf) {
   return stream << intf.name().view();
}

Kel::Value toValue(IntfId const& intf) {
   return Kel::Value(intf.name());
}

}  // namespace Quoll
