// Validation of interface names read from outside, and the id's text conversions.
#include "Quoll/IntfId.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "Kel/Value.h"
#include "Strix/Printable.h"

namespace Quoll {

Kel::Expected<IntfId> IntfId::parse(std::string_view text) {
   if (text.empty()) {
      return Kel::Failure{"empty interface name"};
   }
   // Blanks would split the name on a command line; the rest would garble the output.
   if (auto const unusable = Strix::findUnshowable(text, false)) {
      return Kel::Failure{unusable->description + " at position " +
                          std::to_string(unusable->position) + " in interface name"};
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
