// The show library's factories that tpcli calls, as found in the loaded library.
#pragma once

#include "TrafficPolicyCli/Factories.h"

namespace tpcli {

struct FactoryTable {
   TrafficPolicyCli::ShowTrafficPolicyInterfaceFactory interface = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyCpuFactory cpu = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyPrefixFieldSetFactory prefixFieldSet = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyL4PortFieldSetFactory l4PortFieldSet = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyVlanFieldSetFactory vlanFieldSet = nullptr;
};

}  // namespace tpcli
