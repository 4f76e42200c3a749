// The show library's factories that tpcli calls, for showing and for clearing counters, as found
// in the loaded library.
#pragma once

#include "TrafficPolicyCli/Factories.h"

namespace tpcli {

struct FactoryTable {
   TrafficPolicyCli::ShowTrafficPolicyInterfaceFactory interface = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyCpuFactory cpu = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyPrefixFieldSetFactory prefixFieldSet = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyL4PortFieldSetFactory l4PortFieldSet = nullptr;
   TrafficPolicyCli::ShowTrafficPolicyVlanFieldSetFactory vlanFieldSet = nullptr;
   TrafficPolicyCli::TrafficPolicyLedgerCounterSnapshotHelperFactory ledgerSnapshotHelper = nullptr;
   TrafficPolicyCli::TrafficPolicyPylonCounterSnapshotHelperFactory pylonSnapshotHelper = nullptr;
};

}  // namespace tpcli
