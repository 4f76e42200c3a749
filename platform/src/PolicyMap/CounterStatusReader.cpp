// The two counter readers: the same questions answered from the state database or from the
// shared-memory counter table.
#include "PolicyMap/CounterStatusReader.h"

namespace PolicyMap {

namespace {

Kel::Ptr<PacketDataStatus const> find(PacketDataMap const& counters, Kel::String const& name) {
   auto const* data = counters.lookup(name);
   return data ? *data : nullptr;
}

template <typename PolicyCounters>
Kel::Ptr<PacketDataStatus const> classData(PolicyCounters const* policy, Kel::String const& name) {
   return policy ? find(policy->classCounter(), name) : nullptr;
}

template <typename PolicyCounters>
Kel::Ptr<PacketDataStatus const> namedData(PolicyCounters const* policy, Kel::String const& name) {
   return policy ? find(policy->namedCounter(), name) : nullptr;
}

template <typename PolicyCounters>
std::uint32_t classCount(PolicyCounters const* policy) {
   return policy ? static_cast<std::uint32_t>(policy->classCounter().size()) : 0;
}

template <typename PolicyCounters>
std::uint32_t namedCount(PolicyCounters const* policy) {
   return policy ? static_cast<std::uint32_t>(policy->namedCounter().size()) : 0;
}

}  // namespace

PolicyMapStatus const* PolicyMapLedgerCounterStatusReader::policy(PolicyMapSmKey const& key) const {
   return lastPolicy_.get(key, typeStatus_ ? &typeStatus_->policyMapStatus() : nullptr,
                          key.policyName);
}

Kel::Ptr<PacketDataStatus const> PolicyMapLedgerCounterStatusReader::classCounterData(
    PolicyMapSmKey const& key, Kel::String const& className) const {
   return classData(policy(key), className);
}

Kel::Ptr<PacketDataStatus const> PolicyMapLedgerCounterStatusReader::namedCounterData(
    PolicyMapSmKey const& key, Kel::String const& counterName) const {
   return namedData(policy(key), counterName);
}

std::uint32_t PolicyMapLedgerCounterStatusReader::numClasses(PolicyMapSmKey const& key) const {
   return classCount(policy(key));
}

std::uint32_t PolicyMapLedgerCounterStatusReader::numNamedCounters(
    PolicyMapSmKey const& key) const {
   return namedCount(policy(key));
}

Kel::TypeInfo const& PolicyMapLedgerCounterStatusReader::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::PolicyMapLedgerCounterStatusReader", nullptr, {});
   return info;
}

Counters::PolicyMapCounters const* PolicyMapPylonCounterStatusReader::policy(
    PolicyMapSmKey const& key) const {
   return lastPolicy_.get(key, typeCounters_ ? &typeCounters_->policyMapCounters() : nullptr, key);
}

Kel::Ptr<PacketDataStatus const> PolicyMapPylonCounterStatusReader::classCounterData(
    PolicyMapSmKey const& key, Kel::String const& className) const {
   return classData(policy(key), className);
}

Kel::Ptr<PacketDataStatus const> PolicyMapPylonCounterStatusReader::namedCounterData(
    PolicyMapSmKey const& key, Kel::String const& counterName) const {
   return namedData(policy(key), counterName);
}

std::uint32_t PolicyMapPylonCounterStatusReader::numClasses(PolicyMapSmKey const& key) const {
   return classCount(policy(key));
}

std::uint32_t PolicyMapPylonCounterStatusReader::numNamedCounters(PolicyMapSmKey const& key) const {
   return namedCount(policy(key));
}

Kel::TypeInfo const& PolicyMapPylonCounterStatusReader::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::PolicyMapPylonCounterStatusReader", nullptr, {});
   return info;
}

}  // namespace PolicyMap
