// Counter values as shown: the live count minus the snapshot of the last clear, as long as the
// snapshot belongs to the same life (instance id) of the counter. A count below its snapshot of
// the same life shows 0 and is traced; a snapshot of another life is ignored.
#pragma once

#include <cstdint>

#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/PolicyMapStatus.h"
#include "TrafficPolicy/Counter.h"
#include "TrafficPolicyCli/PolicyState.h"

namespace TrafficPolicyCli {

std::uint64_t getRulePacketCount(Kel::Ptr<PolicyMap::PacketDataStatus const> const& packetData,
                                 Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                 Kel::String const& policyName);
// The same, for a record the caller has in hand without a reference of its own.
std::uint64_t getRulePacketCount(PolicyMap::PacketDataStatus const& packetData,
                                 Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                 Kel::String const& policyName);
std::uint64_t getNamedPacketCount(Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                  Kel::Ptr<PolicyMap::PacketDataStatus const> const& packetData,
                                  Kel::String const& policyName);
std::uint64_t getNamedByteCount(Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                Kel::Ptr<PolicyMap::PacketDataStatus const> const& packetData,
                                Kel::String const& policyName);
// One interface's share of a named counter, each figure less the interface's snapshot when the
// snapshot belongs to the same life of the counter.
PolicyMap::PacketAndByte getNamedIntfCount(Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                           PolicyMap::PacketDataStatus const& packetData,
                                           Kel::String const& policyName, Quoll::IntfId const& intf,
                                           PolicyMap::PacketAndByte const& live);

// The cached live record of a rule or named counter; the output side exists only on interface
// records. Null when there is none.
Kel::Ptr<PolicyMap::PacketDataStatus const> getUnnamedCounterData(
    PolicyState::PtrConst const& policyState, Kel::String const& className, bool isInput);
Kel::Ptr<PolicyMap::PacketDataStatus const> getNamedCounterData(
    PolicyState::PtrConst const& policyState, Kel::String const& counterName, bool isInput);

}  // namespace TrafficPolicyCli
