// Taking snapshots of one direction's live counters. Both back ends keep, per policy, a map of rule
// counters and a map of named counters; they differ only in where the policies are found, so one
// routine snapshots a policy and each helper walks its own source. A snapshot of an earlier life of
// a counter (another instance id) is replaced, never updated, so that display never subtracts a
// count of one life from a count of another.
#include "TrafficPolicyCli/CounterSnapshotHelpers.h"

#include <chrono>

#include "Kel/RobustWalk.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

using PolicyMap::PacketDataMap;
using PolicyMap::PacketDataStatus;
using TrafficPolicy::Counter;
using TrafficPolicy::NamedCounterVersion;

// The named snapshot to write for a counter of the given life.
Kel::Ptr<NamedCounterVersion> namedSnapshotFor(Counter& counter,
                                               TrafficPolicy::NamedCounterKey const& key,
                                               std::uint64_t instanceId) {
   auto const existing = counter.namedSnapshot(key);
   if (existing && existing->instanceId() != instanceId) {
      counter.namedSnapshotDel(key);
   }
   return counter.namedSnapshotIs(key, instanceId);
}

void snapshotPerInterface(NamedCounterVersion& snapshot, PacketDataStatus const& data) {
   Kel::robustWalk(data.perIntfCount(),
                   [&](Quoll::IntfId const& intf, PolicyMap::PacketAndByte const& count) {
                      auto const* existing = snapshot.perIntfCount().lookup(intf);
                      if (existing && (*existing)->instanceId() != data.instanceId()) {
                         snapshot.perIntfCountDel(intf);
                      }
                      snapshot.perIntfCountIs(intf, data.instanceId())->countDataIs(count);
                   });
}

void snapshotPolicy(Counter& counter, Kel::String const& policyName, PacketDataMap const& rules,
                    PacketDataMap const& namedCounters, bool perInterface) {
   Kel::robustWalk(rules, [&](Kel::String const&, Kel::Ptr<PacketDataStatus const> const& data) {
      if (data) {
         counter.snapshotIs({policyName, data->name()}, {data->instanceId(), data->pkts()});
      }
   });
   Kel::robustWalk(namedCounters,
                   [&](Kel::String const&, Kel::Ptr<PacketDataStatus const> const& data) {
                      if (!data) {
                         return;
                      }
                      auto const snapshot =
                          namedSnapshotFor(counter, {policyName, data->name()}, data->instanceId());
                      snapshot->totalCountIs(data->count());
                      if (perInterface) {
                         snapshotPerInterface(*snapshot, *data);
                      }
                   });
}

double secondsSinceEpoch() {
   return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
       .count();
}

// A clear over a source's map of per-policy counters (null when the source is missing):
// policyNameOf(key) names the policy whose totals an entry holds, or is null for other entries.
// After the snapshots, the time is stamped and what the source no longer has is dropped, asking the
// helper itself, which reads the same source.
template <typename Policies, typename PolicyNameOf>
void clearFrom(Kel::Ptr<Counter> const& counter,
               Kel::Ptr<PolicyMap::PolicyMapCounterStatusReaderBase const> const& helper,
               Policies const* policies, PolicyNameOf policyNameOf, bool perInterface) {
   if (!counter) {
      return;
   }
   if (policies) {
      Kel::robustWalk(*policies, [&](auto const& key, auto const& policy) {
         auto const* policyName = policyNameOf(key);
         if (policy && policyName) {
            snapshotPolicy(*counter, *policyName, policy->classCounter(), policy->namedCounter(),
                           perInterface);
         }
      });
   }
   counter->timestampIs(secondsSinceEpoch());
   _cleanupStaleSnapshots(counter, helper);
}

void dropGoneInterfaces(NamedCounterVersion& snapshot, PacketDataStatus const& data) {
   Kel::robustWalk(snapshot.perIntfCount(), [&](Quoll::IntfId const& intf,
                                                Kel::Ptr<TrafficPolicy::IntfCountVersion> const&) {
      if (!data.perIntfCount().contains(intf)) {
         snapshot.perIntfCountDel(intf);
      }
   });
}

}  // namespace

Kel::TypeInfo const& TrafficPolicyLedgerCounterSnapshotHelper::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicyCli::TrafficPolicyLedgerCounterSnapshotHelper",
                                   nullptr, {});
   return info;
}

void TrafficPolicyLedgerCounterSnapshotHelper::clearCounter() {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::TrafficPolicyLedgerCounterSnapshotHelper::"
                  "clearCounter()";
   auto const& status = typeStatus();
   clearFrom(
       counter_, this, status ? &status->policyMapStatus() : nullptr,
       [](Kel::String const& policyName) { return &policyName; },
       status && status->perInterfaceCounters());
}

Kel::TypeInfo const& TrafficPolicyPylonCounterSnapshotHelper::fwkType() const {
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::TrafficPolicyPylonCounterSnapshotHelper", nullptr,
       {Kel::readOnly("perInterface", &TrafficPolicyPylonCounterSnapshotHelper::perInterface)});
   return info;
}

void TrafficPolicyPylonCounterSnapshotHelper::clearCounter() {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::TrafficPolicyPylonCounterSnapshotHelper::"
                  "clearCounter()";
   auto const& table = typeCounters();
   // Entries whose key names more than the policy are not a policy's totals.
   clearFrom(
       counter_, this, table ? &table->policyMapCounters() : nullptr,
       [](PolicyMap::PolicyMapSmKey const& key) {
          return key.name.empty() ? &key.policyName : nullptr;
       },
       perInterface_);
}

void _cleanupStaleSnapshots(
    Kel::Ptr<TrafficPolicy::Counter> const& counter,
    Kel::Ptr<PolicyMap::PolicyMapCounterStatusReaderBase const> const& reader) {
   if (!counter || !reader) {
      return;
   }
   Kel::robustWalk(counter->snapshot(), [&](TrafficPolicy::CounterKey const& key,
                                            TrafficPolicy::CounterVersion const&) {
      if (!reader->classCounterData({key.policyName, Kel::String()}, key.className)) {
         counter->snapshotDel(key);
      }
   });
   Kel::robustWalk(counter->namedSnapshot(), [&](TrafficPolicy::NamedCounterKey const& key,
                                                 Kel::Ptr<NamedCounterVersion> const& snapshot) {
      auto const data = reader->namedCounterData({key.policyName, Kel::String()}, key.counterName);
      if (!data) {
         counter->namedSnapshotDel(key);
      } else if (snapshot) {
         dropGoneInterfaces(*snapshot, *data);
      }
   });
}

}  // namespace TrafficPolicyCli
