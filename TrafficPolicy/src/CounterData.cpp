// Snapshot subtraction and lookups of cached counter records.
#include "TrafficPolicyCli/CounterData.h"

#include <ostream>

#include "TrafficPolicyCli/PolicyStateVariants.h"
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

// live minus the snapshot's count, or 0 (traced) when the counter went backwards. The caller has
// checked that the snapshot belongs to the same instance. `what` names the counter in the trace.
template <typename DescribeCounter>
std::uint64_t sinceSnapshot(std::uint64_t live, std::uint64_t snapshot,
                            Kel::String const& policyName, DescribeCounter&& describe) {
   if (live < snapshot) {
      TP_TRACE(1) << "Counter value for policy " << policyName.view() << ", " << describe
                  << " has moved backwards";
      return 0;
   }
   return live - snapshot;
}

// "KIND NAME" for the trace line, without building a string when tracing is off.
struct CounterDescription {
   char const* kind;
   Kel::String const& name;
   Quoll::IntfId const* intf = nullptr;
   friend std::ostream& operator<<(std::ostream& out, CounterDescription const& counter) {
      out << counter.kind << " " << counter.name.view();
      if (counter.intf) {
         out << ", intf: " << counter.intf->stringValue().view();
      }
      return out;
   }
};

enum class Measure { packets, bytes };

std::uint64_t namedCount(Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                         PolicyMap::PacketDataStatus const& data, Kel::String const& policyName,
                         Measure measure) {
   auto const live = measure == Measure::packets ? data.pkts() : data.bytes();
   // Until counters are first cleared there are no snapshots to build a key for.
   auto const snapshot = counter && !counter->namedSnapshot().empty()
                             ? counter->namedSnapshot({policyName, data.name()})
                             : nullptr;
   if (!snapshot || snapshot->instanceId() != data.instanceId()) {
      return live;
   }
   auto const& total = snapshot->totalCount();
   return sinceSnapshot(live, measure == Measure::packets ? total.packets : total.bytes, policyName,
                        CounterDescription{"counter", data.name()});
}

Kel::Ptr<PolicyMap::PacketDataStatus const> lookup(CounterDataMap const& counters,
                                                   Kel::String const& name) {
   auto const* data = counters.lookup(name);
   return data ? *data : nullptr;
}

// The output half of an interface record; callers ask for it only on interface records.
PolicyStateInterface const& interfaceRecord(PolicyState::PtrConst const& policyState) {
   return static_cast<PolicyStateInterface const&>(*policyState);
}

}  // namespace

std::uint64_t getRulePacketCount(Kel::Ptr<PolicyMap::PacketDataStatus const> const& packetData,
                                 Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                 Kel::String const& policyName) {
   return getRulePacketCount(*packetData, counter, policyName);
}

std::uint64_t getRulePacketCount(PolicyMap::PacketDataStatus const& packetData,
                                 Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                 Kel::String const& policyName) {
   auto const live = packetData.pkts();
   TrafficPolicy::CounterVersion const fresh;
   auto const* found = counter && !counter->snapshot().empty()
                           ? counter->snapshot({policyName, packetData.name()})
                           : nullptr;
   auto const& snapshot = found ? *found : fresh;
   if (snapshot.instanceId != packetData.instanceId()) {
      return live;
   }
   return sinceSnapshot(live, snapshot.pkts, policyName,
                        CounterDescription{"class", packetData.name()});
}

std::uint64_t getNamedPacketCount(Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                  Kel::Ptr<PolicyMap::PacketDataStatus const> const& packetData,
                                  Kel::String const& policyName) {
   return namedCount(counter, *packetData, policyName, Measure::packets);
}

std::uint64_t getNamedByteCount(Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                Kel::Ptr<PolicyMap::PacketDataStatus const> const& packetData,
                                Kel::String const& policyName) {
   return namedCount(counter, *packetData, policyName, Measure::bytes);
}

PolicyMap::PacketAndByte getNamedIntfCount(Kel::Ptr<TrafficPolicy::Counter const> const& counter,
                                           PolicyMap::PacketDataStatus const& packetData,
                                           Kel::String const& policyName, Quoll::IntfId const& intf,
                                           PolicyMap::PacketAndByte const& live) {
   auto const snapshot =
       counter ? counter->namedSnapshot({policyName, packetData.name()}) : nullptr;
   auto const* intfSnapshot = snapshot ? snapshot->perIntfCount().lookup(intf) : nullptr;
   if (!intfSnapshot || (*intfSnapshot)->instanceId() != packetData.instanceId()) {
      return live;
   }
   auto const& saved = (*intfSnapshot)->countData();
   CounterDescription const description{"counter", packetData.name(), &intf};
   return {sinceSnapshot(live.packets, saved.packets, policyName, description),
           sinceSnapshot(live.bytes, saved.bytes, policyName, description)};
}

Kel::Ptr<PolicyMap::PacketDataStatus const> getUnnamedCounterData(
    PolicyState::PtrConst const& policyState, Kel::String const& className, bool isInput) {
   return lookup(isInput ? policyState->inputClassCounters()
                         : interfaceRecord(policyState).outputClassCounters(),
                 className);
}

Kel::Ptr<PolicyMap::PacketDataStatus const> getNamedCounterData(
    PolicyState::PtrConst const& policyState, Kel::String const& counterName, bool isInput) {
   return lookup(isInput ? policyState->inputNamedCounters()
                         : interfaceRecord(policyState).outputNamedCounters(),
                 counterName);
}

PolicyMap::PacketDataStatus const* ShowTrafficPolicyBase::inputRuleCounter(
    PolicyState const& record, std::uint32_t ruleIndex, Kel::String const& ruleName) const {
   if (ruleLookups_.answerFor(record, ruleIndex, ruleName)) {
      return ruleLookups_.inputCounter(ruleIndex);
   }
   auto const* data = record.inputClassCounters().lookup(ruleName);
   return data ? data->get() : nullptr;
}

}  // namespace TrafficPolicyCli
