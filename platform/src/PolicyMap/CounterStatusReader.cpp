// Where each counter reader finds a policy's counters: in the state database's type status, or in
// the shared-memory counter table.
#include "PolicyMap/CounterStatusReader.h"

namespace PolicyMap {

PolicyMapStatus const* PolicyMapLedgerCounterStatusReader::policy(PolicyMapSmKey const& key) const {
   return lastPolicy_.get(key, typeStatus_ ? &typeStatus_->policyMapStatus() : nullptr,
                          key.policyName);
}

Kel::TypeInfo const& PolicyMapLedgerCounterStatusReader::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::PolicyMapLedgerCounterStatusReader", nullptr, {});
   return info;
}

Counters::PolicyMapCounters const* PolicyMapPylonCounterStatusReader::policy(
    PolicyMapSmKey const& key) const {
   return lastPolicy_.get(key, typeCounters_ ? &typeCounters_->policyMapCounters() : nullptr, key);
}

Kel::TypeInfo const& PolicyMapPylonCounterStatusReader::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::PolicyMapPylonCounterStatusReader", nullptr, {});
   return info;
}

}  // namespace PolicyMap
