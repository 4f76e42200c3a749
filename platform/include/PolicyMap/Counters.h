// The shared-memory counter table: on platforms that publish policy counters there, the live
// counts of every policy, keyed by policy key, with per-rule and per-named-counter records.
#pragma once

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "PolicyMap/PolicyMapStatus.h"
#include "PolicyMap/Types.h"

namespace PolicyMap::Counters {

class PolicyMapCounters : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   PacketDataMap const& classCounter() const noexcept { return classCounter_; }
   PacketDataMap& classCounter() noexcept { return classCounter_; }
   PacketDataMap const& namedCounter() const noexcept { return namedCounter_; }
   PacketDataMap& namedCounter() noexcept { return namedCounter_; }

 private:
   PacketDataMap classCounter_;
   PacketDataMap namedCounter_;
};

class PolicyMapTypeCounters : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   Kel::OrderedMap<PolicyMapSmKey, Kel::Ptr<PolicyMapCounters const>> const& policyMapCounters()
       const noexcept {
      return policyMapCounters_;
   }
   Kel::OrderedMap<PolicyMapSmKey, Kel::Ptr<PolicyMapCounters const>>&
   policyMapCounters() noexcept {
      return policyMapCounters_;
   }

 private:
   Kel::OrderedMap<PolicyMapSmKey, Kel::Ptr<PolicyMapCounters const>> policyMapCounters_;
};

}  // namespace PolicyMap::Counters
