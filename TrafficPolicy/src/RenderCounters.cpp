// The counters view: per policy and direction, the named counters that its rules count into
// (totals, or per interface with a total) and the packet count of every rule with its own counter.
#include <vector>

#include "Kel/OrderedMap.h"
#include "PolicyMap/PolicyMapConfig.h"
#include "TrafficPolicyCli/CounterData.h"
#include "TrafficPolicyCli/PolicyViews.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

constexpr std::uint32_t kPolicyLineIndent = 3;

// What one direction of one policy counts into, from the rules' count actions: rules with a
// counter of their own (by rule index) and the named counters they use (by name).
struct CounterTables {
   Kel::OrderedMap<std::uint32_t, Kel::String> ruleCounters;
   Kel::OrderedSet<Kel::String> namedCounters;
};

// The rules the direction's status lists as processed, in rule order. Each direction counts its
// own rules: the other direction's status may list more or fewer of them.
Kel::DenseArray<Kel::Ptr<PolicyMap::ClassMapStatus const>> const& ruleStatuses(
    PolicyState const& record, bool isInput) {
   return isInput ? record.classMapStatusInput()
                  : static_cast<PolicyStateInterface const&>(record).classMapStatusOutput();
}

CounterTables counterTablesOf(PolicyState const& record, bool isInput) {
   CounterTables tables;
   auto const& currCfg = record.policyMapConfig()->currCfg();
   if (!currCfg) {
      return tables;
   }
   for (auto const& [index, status] : ruleStatuses(record, isInput)) {
      if (!status) {
         continue;
      }
      auto const& ruleName = status->name();
      auto const* actions = currCfg->classAction().lookup(ruleName);
      auto const* count =
          actions ? (*actions)->policyAction().lookup(PolicyMap::ActionType::count) : nullptr;
      if (!count) {
         continue;
      }
      auto const& counterName = static_cast<PolicyMap::CountAction const&>(**count).counterName();
      if (counterName.empty()) {
         tables.ruleCounters.insertOrAssign(index, ruleName);
      } else {
         tables.namedCounters.insert(counterName);
      }
   }
   return tables;
}

// A policy is shown in a direction's walk only when it is configured and has a status in that
// direction: a policy applied on input alone has nothing to count on output, and a status left
// behind by a removed policy has no rules to name its counters.
bool definedFor(PolicyState const& record, bool isInput) {
   if (!record.policyMapConfig()) {
      return false;
   }
   return isInput ? static_cast<bool>(record.policyStatus())
                  : static_cast<bool>(
                        static_cast<PolicyStateInterface const&>(record).policyMapStatusOutput());
}

Kel::Ptr<TrafficPolicy::Counter const> const& snapshotsOf(PolicyState const& record, bool isInput) {
   return isInput ? record.counter()
                  : static_cast<PolicyStateInterface const&>(record).counterOutput();
}

// CPU records never count per interface.
bool countsPerInterface(PolicyState const& record, bool isInput) {
   auto const* interfaceRecord = dynamic_cast<PolicyStateInterface const*>(&record);
   if (!interfaceRecord) {
      return false;
   }
   return isInput ? interfaceRecord->countersPerInterfaceInput()
                  : interfaceRecord->countersPerInterfaceOutput();
}

// " P packets" and, with byte counters, " B bytes"; in JSON the two figures under the given keys.
void writeCounts(vellum::RendererV2* renderer, PolicyMap::PacketAndByte const& count,
                 bool withBytes, vellum::JsonKey packetKey, vellum::JsonKey byteKey) {
   renderer->writeString(count.packets);
   renderer->writeString(" packets");
   renderer->_addJsonKeyValuePair(packetKey, count.packets);
   if (withBytes) {
      renderer->writeString(" ");
      renderer->writeString(count.bytes);
      renderer->writeString(" bytes");
      renderer->_addJsonKeyValuePair(byteKey, count.bytes);
   }
   renderer->eol();
}

void writeTotals(vellum::RendererV2* renderer, PolicyMap::PacketAndByte const& total,
                 bool withBytes) {
   renderer->object("totals",
                    [&] { writeCounts(renderer, total, withBytes, "packetTotal", "byteTotal"); });
}

void renderPerInterfaceCounts(vellum::RendererV2* renderer, PolicyState const& record,
                              PolicyMap::PacketDataStatus const& data,
                              PolicyMap::PacketAndByte const& total, bool withBytes, bool isInput) {
   auto const intfIndent = record.indentCountPerLevel() + kPolicyLineIndent;
   renderer->writeString(":");
   renderer->eol();
   renderer->object("interfaces", [&] {
      for (auto const& [intf, live] : data.perIntfCount()) {
         auto const count =
             getNamedIntfCount(snapshotsOf(record, isInput), data, record.name(), intf, live);
         writeIndent(*renderer, intfIndent);
         renderer->writeString(intf.stringValue());
         renderer->writeString(": ");
         renderer->object(intf.stringValue().view(), [&] {
            writeCounts(renderer, count, withBytes, "packetCount", "byteCount");
         });
      }
   });
   writeIndent(*renderer, intfIndent);
   renderer->writeString("Total: ");
   writeTotals(renderer, total, withBytes);
}

}  // namespace

void renderPolicyNamedCountersInfo(vellum::RendererV2* renderer,
                                   PolicyState::PtrConst const& policyState,
                                   Kel::OrderedSet<Kel::String> const& namedCounters,
                                   bool byteCountersSupported, bool isInput) {
   auto const& snapshots = snapshotsOf(*policyState, isInput);
   bool const perInterface = countsPerInterface(*policyState, isInput);
   renderer->object("namedCounters", [&] {
      for (auto const& counterName : namedCounters) {
         auto const data = getNamedCounterData(policyState, counterName, isInput);
         // A counter that no rule's data backs is left out of text and JSON alike.
         if (!data) {
            TP_TRACE(1) << "Counter: " << counterName.view() << " is undefined";
            continue;
         }
         PolicyMap::PacketAndByte const total{
             getNamedPacketCount(snapshots, data, policyState->name()),
             getNamedByteCount(snapshots, data, policyState->name())};
         writeIndent(*renderer, kPolicyLineIndent);
         renderer->writeString(counterName);
         renderer->object(counterName.view(), [&] {
            if (perInterface) {
               renderPerInterfaceCounts(renderer, *policyState, *data, total, byteCountersSupported,
                                        isInput);
            } else {
               renderer->writeString(": ");
               writeTotals(renderer, total, byteCountersSupported);
            }
         });
      }
   });
}

void renderPolicyUnnamedCountersInfo(
    vellum::RendererV2* renderer, PolicyState::PtrConst const& policyState,
    Kel::OrderedMap<std::uint32_t, Kel::String> const& ruleCounters, bool isInput) {
   auto const& snapshots = snapshotsOf(*policyState, isInput);
   renderer->object("unnamedCounters", [&] {
      for (auto const& [ruleIndex, ruleName] : ruleCounters) {
         // A rule whose counter the agent has not published yet has no figure to show.
         auto const data = getUnnamedCounterData(policyState, ruleName, isInput);
         if (!data) {
            continue;
         }
         writeIndent(*renderer, kPolicyLineIndent);
         renderer->writeString("match rule: ");
         renderer->writeString(ruleName);
         renderer->writeString(": ");
         renderer->object(ruleName.view(), [&] {
            writeTotals(renderer, {getRulePacketCount(data, snapshots, policyState->name()), 0},
                        false);
         });
      }
   });
}

void _renderTrafficPolicyCounters(vellum::RendererV2* renderer,
                                  ShowTrafficPolicyBase::PolicyStateMap const& policies,
                                  Kel::String const& policyName, bool byteCountersSupported,
                                  bool isInput) {
   renderer->object(isInput ? vellum::JsonKey("trafficPolicies") : "egressTrafficPolicies", [&] {
      for (auto const& [name, record] : policies) {
         if (!policyName.empty() && name != policyName) {
            continue;
         }
         if (!definedFor(*record, isInput)) {
            TP_TRACE(6) << "TrafficPolicyShowCliHelper::_renderTrafficPolicyCounters  - "
                        << name.view()
                        << " is undefined; skip rendering its counters. isInput = " << isInput;
            continue;
         }
         renderer->writeString("Traffic policy ");
         renderer->writeString(name);
         renderer->eol();
         // Structured bindings are named in init-captures: clang 14 cannot capture them.
         renderer->object(name.view(), [&, &record = record] {
            auto const tables = counterTablesOf(*record, isInput);
            renderPolicyNamedCountersInfo(renderer, record, tables.namedCounters,
                                          byteCountersSupported, isInput);
            renderPolicyUnnamedCountersInfo(renderer, record, tables.ruleCounters, isInput);
         });
      }
   });
}

void renderNamedCounter(vellum::RendererV2* renderer, PolicyState::PtrConst const& policyState) {
   auto const& declared = policyState->namedCounter();
   if (declared.empty()) {
      return;
   }
   writeIndent(*renderer, 2 * kPolicyLineIndent);
   renderer->writeString("counter");
   renderer->list("namedCounters", [&] {
      for (auto const& [counterName, isDeclared] : declared) {
         renderer->writeString(" ");
         renderer->writeString(counterName);
         renderer->_addJsonKeyValuePair("", counterName);
      }
   });
   renderer->eol();
}

}  // namespace TrafficPolicyCli
