// The traffic-policy module's own entities: configuration and status roots, hardware status,
// interface parameters and the traffic-class action.
#pragma once

#include <cstdint>

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/Actions.h"
#include "PolicyMap/PolicyMapConfig.h"
#include "PolicyMap/PolicyMapStatus.h"

namespace TrafficPolicy {

class TrafficPolicyConfig : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMap::PolicyMapConfig const>> const& policyMapConfig()
       const noexcept {
      return policyMapConfig_;
   }
   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMap::PolicyMapConfig const>>&
   policyMapConfig() noexcept {
      return policyMapConfig_;
   }

 private:
   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMap::PolicyMapConfig const>> policyMapConfig_;
};

// The status of traffic policies of one attachment point and direction.
class Status : public PolicyMap::PolicyMapTypeStatus {
 public:
   Kel::TypeInfo const& fwkType() const override;
};

class HwStatus : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   // Whether this platform publishes policy counters in the shared-memory counter table.
   bool sharedMemoryCounters() const noexcept { return sharedMemoryCounters_; }
   void sharedMemoryCountersIs(bool inTable) noexcept { sharedMemoryCounters_ = inTable; }

 private:
   bool sharedMemoryCounters_ = false;
};

// Where a device's live policy counters are read and snapshotted: in the policy-map status (the
// "ledger") or in the shared-memory counter table (the "pylon"). Showing and clearing counters must
// agree on it, so both ask here. A device without hardware status keeps them in the status.
enum class CounterBackEnd : std::uint8_t { ledger, pylon };
inline CounterBackEnd counterBackEndOf(HwStatus const* hwStatus) noexcept {
   return hwStatus && hwStatus->sharedMemoryCounters() ? CounterBackEnd::pylon
                                                       : CounterBackEnd::ledger;
}

// How finely counters are kept: 0 not enabled, 1 per policy, 2 per interface.
enum CounterGranularity : std::uint8_t {
   counterNotEnabled = 0,
   counterPerPolicy = 1,
   counterPerInterface = 2,
};

class TrafficPolicyIntfParamStatus : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   std::uint8_t ingressCounterGranularity() const noexcept { return ingress_; }
   void ingressCounterGranularityIs(std::uint8_t granularity) noexcept { ingress_ = granularity; }
   std::uint8_t egressCounterGranularity() const noexcept { return egress_; }
   void egressCounterGranularityIs(std::uint8_t granularity) noexcept { egress_ = granularity; }

 private:
   std::uint8_t ingress_ = counterNotEnabled;
   std::uint8_t egress_ = counterNotEnabled;
};

class SetTcAction : public PolicyMap::Action {
 public:
   explicit SetTcAction(std::uint8_t tc) : Action(PolicyMap::ActionType::setTc), tc_(tc) {}
   Kel::TypeInfo const& fwkType() const override;

   std::uint8_t tc() const noexcept { return tc_; }

 private:
   std::uint8_t tc_;
};

}  // namespace TrafficPolicy
