// The exported factories of the counter snapshot helpers. The front-end tests' stand-in library
// builds this file too, around helpers of its own.
#include "TrafficPolicyCli/Factories.h"

namespace TrafficPolicyCli {

Kel::Ptr<TrafficPolicyLedgerCounterSnapshotHelper> trafficPolicyLedgerCounterSnapshotHelperFactory(
    Handle<PolicyMap::PolicyMapTypeStatus> typeStatus,
    Kel::Ptr<TrafficPolicy::Counter> const& counter) {
   return Kel::make<TrafficPolicyLedgerCounterSnapshotHelper>(typeStatus, counter);
}

Kel::Ptr<TrafficPolicyPylonCounterSnapshotHelper> trafficPolicyPylonCounterSnapshotHelperFactory(
    Handle<PolicyMap::Counters::PolicyMapTypeCounters> typeCounters,
    Kel::Ptr<TrafficPolicy::Counter> const& counter, bool perInterface) {
   return Kel::make<TrafficPolicyPylonCounterSnapshotHelper>(typeCounters, counter, perInterface);
}

}  // namespace TrafficPolicyCli
