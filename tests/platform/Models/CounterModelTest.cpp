// The counter side of the model: both counter readers answer the same questions from their own
// store, and the snapshot store keeps one record per key.
#include <gtest/gtest.h>

#include <functional>

#include "PolicyMap/CounterStatusReader.h"
#include "TrafficPolicy/Counter.h"

namespace {

using PolicyMap::PacketDataStatus;
using PolicyMap::PolicyMapSmKey;

Kel::Ptr<PacketDataStatus const> data(char const* name, std::uint64_t packets) {
   auto status = Kel::make<PacketDataStatus>(name, 7);
   status->countIs({packets, packets * 100});
   return status;
}

// Fills the counters of policy "p1" into whatever holds per-policy counters.
template <typename PolicyCounters>
void fill(PolicyCounters& counters) {
   counters.classCounter().insertOrAssign("r1", data("r1", 5));
   counters.classCounter().insertOrAssign("r2", data("r2", 6));
   counters.namedCounter().insertOrAssign("c1", data("c1", 9));
}

Kel::Ptr<PolicyMap::PolicyMapCounterStatusReaderBase const> ledgerReader() {
   auto policy = Kel::make<PolicyMap::PolicyMapStatus>("p1");
   fill(*policy);
   auto typeStatus = Kel::make<PolicyMap::PolicyMapTypeStatus>();
   typeStatus->policyMapStatus().insertOrAssign("p1", policy);
   return Kel::make<PolicyMap::PolicyMapLedgerCounterStatusReader>(typeStatus);
}

Kel::Ptr<PolicyMap::PolicyMapCounterStatusReaderBase const> pylonReader() {
   auto policy = Kel::make<PolicyMap::Counters::PolicyMapCounters>();
   fill(*policy);
   auto table = Kel::make<PolicyMap::Counters::PolicyMapTypeCounters>();
   table->policyMapCounters().insertOrAssign({"p1", ""}, policy);
   return Kel::make<PolicyMap::PolicyMapPylonCounterStatusReader>(table);
}

TEST(CounterStatusReader, BothReadersAnswerAlike) {
   for (auto const& reader : {ledgerReader(), pylonReader()}) {
      auto const& type = reader->fwkType().name();
      PolicyMapSmKey const key{"p1", ""};
      EXPECT_EQ(reader->classCounterData(key, "r2")->pkts(), 6u) << type;
      EXPECT_EQ(reader->namedCounterData(key, "c1")->bytes(), 900u) << type;
      EXPECT_FALSE(reader->classCounterData(key, "c1")) << type;
      EXPECT_FALSE(reader->namedCounterData(key, "r1")) << type;
      EXPECT_FALSE(reader->classCounterData({"p2", ""}, "r1")) << type;
      EXPECT_EQ(reader->numClasses(key), 2u) << type;
      EXPECT_EQ(reader->numNamedCounters(key), 1u) << type;
      EXPECT_EQ(reader->numClasses({"p2", ""}), 0u) << type;
   }
}

// Readers remember where they found the last counter of a policy; a sequence of lookups in and out
// of order, with the policy's counters changing between two of them, must still find each one.
TEST(CounterStatusReader, LookupsInAnyOrderAcrossChanges) {
   auto policy = Kel::make<PolicyMap::PolicyMapStatus>("p1");
   fill(*policy);
   auto typeStatus = Kel::make<PolicyMap::PolicyMapTypeStatus>();
   typeStatus->policyMapStatus().insertOrAssign("p1", policy);
   PolicyMap::PolicyMapLedgerCounterStatusReader const reader(typeStatus);
   PolicyMapSmKey const key{"p1", ""};
   struct Step {
      char const* name;
      std::uint64_t packets;  // 0: not found
      std::function<void()> change;
   } const steps[] = {
       {"r1", 5, nullptr},
       {"r2", 6, [&] { policy->classCounter().insertOrAssign("r15", data("r15", 8)); }},
       {"r2", 6, nullptr},
       {"r1", 5, nullptr},
       {"r15", 8, [&] { policy->classCounter().erase("r2"); }},
       {"r2", 0, nullptr},
       {"r3", 0, nullptr},
       {"r15", 8, nullptr},
   };
   for (auto const& step : steps) {
      auto const found = reader.classCounterData(key, step.name);
      EXPECT_EQ(found ? found->pkts() : 0, step.packets) << step.name;
      if (step.change) {
         step.change();
      }
   }
}

TEST(CounterSnapshots, OneRecordPerKey) {
   TrafficPolicy::Counter counter;
   counter.snapshotIs({"p1", "r1"}, {7, 40});
   counter.snapshotIs({"p1", "r1"}, {7, 50});
   EXPECT_EQ(counter.snapshot().size(), 1u);
   EXPECT_EQ(counter.snapshot({"p1", "r1"})->pkts, 50u);
   EXPECT_EQ(counter.snapshot({"p1", "r2"}), nullptr);

   auto first = counter.namedSnapshotIs({"p1", "c1"}, 7);
   auto again = counter.namedSnapshotIs({"p1", "c1"}, 8);
   EXPECT_EQ(first, again) << "an existing snapshot is returned, not replaced";
   EXPECT_EQ(counter.namedSnapshot({"p1", "c1"})->instanceId(), 7u);

   auto perIntf = first->perIntfCountIs(Quoll::IntfId("Ethernet1"), 7);
   perIntf->countDataIs({3, 300});
   EXPECT_EQ(first->perIntfCount().size(), 1u);
   first->perIntfCountDel(Quoll::IntfId("Ethernet1"));
   EXPECT_TRUE(first->perIntfCount().empty());

   counter.namedSnapshotDel({"p1", "c1"});
   EXPECT_FALSE(counter.namedSnapshot({"p1", "c1"}));
}

}  // namespace
