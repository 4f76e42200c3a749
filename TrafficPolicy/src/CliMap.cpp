// The label-to-key lookup of labels known only at run time.
#include "TrafficPolicyCli/CliMap.h"

#include "Kel/Assert.h"

namespace TrafficPolicyCli {

std::string_view cliJsonName(std::string_view label) {
   std::string_view const* jsonName = cliMap[label];
   KEL_ASSERT(!!jsonName && "Invalid mapping in cliMap");
   return *jsonName;
}

}  // namespace TrafficPolicyCli
