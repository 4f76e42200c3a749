// Type descriptors of the traffic-policy module's entities and the snapshot store's operations.
#include "Kel/Value.h"
#include "TrafficPolicy/Counter.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"

namespace TrafficPolicy {

Kel::TypeInfo const& TrafficPolicyConfig::fwkType() const {
   static Kel::TypeInfo const info(
       "TrafficPolicy::TrafficPolicyConfig", nullptr,
       {Kel::readOnly("policyMapConfig", &TrafficPolicyConfig::policyMapConfig)});
   return info;
}

Kel::TypeInfo const& Status::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicy::Status",
                                   &PolicyMap::PolicyMapTypeStatus::typeInfo(), {});
   return info;
}

Kel::TypeInfo const& HwStatus::fwkType() const {
   static Kel::TypeInfo const info(
       "TrafficPolicy::HwStatus", nullptr,
       {Kel::readOnly("sharedMemoryCounters", &HwStatus::sharedMemoryCounters)});
   return info;
}

Kel::TypeInfo const& TrafficPolicyIntfParamStatus::fwkType() const {
   static Kel::TypeInfo const info(
       "TrafficPolicy::TrafficPolicyIntfParamStatus", nullptr,
       {Kel::readOnly("ingressCounterGranularity",
                      &TrafficPolicyIntfParamStatus::ingressCounterGranularity),
        Kel::readOnly("egressCounterGranularity",
                      &TrafficPolicyIntfParamStatus::egressCounterGranularity)});
   return info;
}

Kel::TypeInfo const& SetTcAction::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicy::SetTcAction", &PolicyMap::Action::typeInfo(),
                                   {Kel::readOnly("tc", &SetTcAction::tc)});
   return info;
}

Kel::TypeInfo const& IntfCountVersion::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicy::IntfCountVersion", nullptr,
                                   {Kel::readOnly("instanceId", &IntfCountVersion::instanceId)});
   return info;
}

Kel::TypeInfo const& NamedCounterVersion::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicy::NamedCounterVersion", nullptr,
                                   {Kel::readOnly("instanceId", &NamedCounterVersion::instanceId)});
   return info;
}

Kel::Ptr<IntfCountVersion> NamedCounterVersion::perIntfCountIs(Quoll::IntfId const& intf,
                                                               std::uint64_t instanceId) {
   return perIntfCount_.getOrCreate(intf, Kel::make<IntfCountVersion>(instanceId));
}

Kel::TypeInfo const& Counter::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicy::Counter", nullptr,
                                   {Kel::readOnly("timestamp", &Counter::timestamp)});
   return info;
}

Kel::Ptr<NamedCounterVersion const> Counter::namedSnapshot(NamedCounterKey const& key) const {
   auto const* snapshot = namedSnapshot_.lookup(key);
   return snapshot ? *snapshot : nullptr;
}

Kel::Ptr<NamedCounterVersion> Counter::namedSnapshotIs(NamedCounterKey const& key,
                                                       std::uint64_t instanceId) {
   return namedSnapshot_.getOrCreate(key, Kel::make<NamedCounterVersion>(instanceId));
}

}  // namespace TrafficPolicy
