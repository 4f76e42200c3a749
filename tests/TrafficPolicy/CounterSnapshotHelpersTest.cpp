// Clearing through both snapshot helpers, over the state database's type status and over the
// shared-memory table alike: counters that are gone lose their snapshots, a new life of a counter
// gets a new snapshot, and per-interface entries follow the per-interface switch and the lives of
// their counters. (That a clear stores what the next shows are given is checked on tpcli as a
// process.)
#include <gtest/gtest.h>

#include "StateLoader/Loader.h"
#include "TrafficPolicyCli/Factories.h"
#include "support/TempStateFiles.h"

namespace {

using PolicyMap::PacketAndByte;
using TrafficPolicy::NamedCounterKey;

enum class Backend { ledger, pylon };

// A named snapshot's interfaces, each with its instance id and packets.
using InterfaceEntries = std::vector<std::tuple<std::string, std::uint64_t, std::uint64_t>>;

class CounterSnapshotHelpersTest : public testing::TestWithParam<Backend> {
 protected:
   // Clears into the test's store with the back end's helper, from the CPU counters of a state
   // whose "policies" status is `policies`.
   void clear(std::string const& policies, bool perInterface = true) {
      bool const pylon = GetParam() == Backend::pylon;
      auto loaded = StateLoader::loadState(files_.write(
          "state.json",
          std::string(R"({"hardware": {"sharedMemoryCounters": )") + (pylon ? "true" : "false") +
              R"(}, "status": {"cpu": {"perInterfaceCounters": )" +
              (perInterface ? "true" : "false") + R"(, "policies": )" + policies + "}}}"));
      ASSERT_TRUE(loaded) << loaded.reason();
      auto const& cpu = loaded->cpu;
      if (pylon) {
         TrafficPolicyCli::trafficPolicyPylonCounterSnapshotHelperFactory(cpu.counterTable,
                                                                          counter_, perInterface)
             ->clearCounter();
      } else {
         TrafficPolicyCli::trafficPolicyLedgerCounterSnapshotHelperFactory(cpu.status, counter_)
             ->clearCounter();
      }
   }

   Kel::Ptr<TrafficPolicy::NamedCounterVersion const> named(char const* policy,
                                                            char const* name) const {
      return counter_->namedSnapshot(NamedCounterKey{policy, name});
   }
   InterfaceEntries perInterface(char const* policy, char const* name) const {
      InterfaceEntries entries;
      for (auto const& [intf, entry] : named(policy, name)->perIntfCount()) {
         entries.emplace_back(intf.stringValue(), entry->instanceId(), entry->countData().packets);
      }
      return entries;
   }

   testing_support::TempStateFiles const files_;
   Kel::Ptr<TrafficPolicy::Counter> counter_ = Kel::make<TrafficPolicy::Counter>();
};

TEST_P(CounterSnapshotHelpersTest, CountersThatAreGoneLoseTheirSnapshots) {
   std::string const c = R"({"instanceId": 1, "packets": 5})";
   clear(R"({"p1": {"ruleCounters": {"r1": )" + c + ", \"r2\": " + c + ", \"r3\": " + c +
         ", \"r4\": " + c + R"(}, "namedCounters": {"c1": )" + c + ", \"c2\": " + c +
         ", \"c3\": " + c + R"(}}, "p2": {"ruleCounters": {"r1": )" + c + "}}}");
   // Neighbours go together, so that the clean-up deletes several entries in a row.
   clear(R"({"p1": {"ruleCounters": {"r1": )" + c + ", \"r4\": " + c +
         R"(}, "namedCounters": {"c3": )" + c + "}}}");
   std::vector<std::string> rules;
   for (auto const& [key, version] : counter_->snapshot()) {
      rules.push_back(key.policyName.stringValue() + "/" + key.className.stringValue());
   }
   EXPECT_EQ(rules, (std::vector<std::string>{"p1/r1", "p1/r4"}));
   EXPECT_EQ(counter_->namedSnapshot().size(), 1U);
   EXPECT_TRUE(named("p1", "c3"));
}

// The first clear keeps no per-interface snapshots; a new life of the counter gets a new snapshot.
TEST_P(CounterSnapshotHelpersTest, ANewLifeOfACounterGetsANewSnapshot) {
   clear(R"({"p1": {"namedCounters": {"c1": {"instanceId": 1, "packets": 40, "bytes": 400,
      "interfaces": {"Ethernet1": {"packets": 40, "bytes": 400}}}}}})",
         false);
   auto const first = named("p1", "c1");
   EXPECT_EQ(first->totalCount(), (PacketAndByte{40, 400}));
   EXPECT_TRUE(first->perIntfCount().empty());
   clear(R"({"p1": {"namedCounters": {"c1": {"instanceId": 2, "packets": 3, "bytes": 30,
      "interfaces": {"Ethernet2": {"packets": 3, "bytes": 30}}}}}})");
   auto const second = named("p1", "c1");
   EXPECT_NE(first, second);
   EXPECT_EQ(second->instanceId(), 2U);
   EXPECT_EQ(second->totalCount(), (PacketAndByte{3, 30}));
   EXPECT_EQ(perInterface("p1", "c1"), (InterfaceEntries{{"Ethernet2", 2, 3}}));
}

TEST_P(CounterSnapshotHelpersTest, InterfaceEntriesFollowTheirCounters) {
   // An entry left from another life of the counter, and one of an interface now gone.
   auto const snapshot = counter_->namedSnapshotIs({"p1", "c1"}, 5);
   snapshot->perIntfCountIs(Quoll::IntfId("Ethernet1"), 4)->countDataIs({99, 999});
   snapshot->perIntfCountIs(Quoll::IntfId("Ethernet9"), 5)->countDataIs({1, 1});
   auto const kept = snapshot->perIntfCountIs(Quoll::IntfId("Ethernet2"), 5);
   clear(R"({"p1": {"namedCounters": {"c1": {"instanceId": 5, "packets": 40, "bytes": 400,
      "interfaces": {"Ethernet1": {"packets": 10, "bytes": 100},
                     "Ethernet2": {"packets": 20, "bytes": 200},
                     "Ethernet3": {"packets": 1, "bytes": 1}}}}}})");
   EXPECT_EQ(named("p1", "c1"), snapshot);
   EXPECT_EQ(perInterface("p1", "c1"),
             (InterfaceEntries{{"Ethernet1", 5, 10}, {"Ethernet2", 5, 20}, {"Ethernet3", 5, 1}}));
   EXPECT_EQ(snapshot->perIntfCount().lookup(Quoll::IntfId("Ethernet2"))->get(), kept.get());
}

INSTANTIATE_TEST_SUITE_P(BothBackends, CounterSnapshotHelpersTest,
                         testing::Values(Backend::ledger, Backend::pylon),
                         [](testing::TestParamInfo<Backend> const& param) {
                            return param.param == Backend::ledger ? "ledger" : "pylon";
                         });

TEST(CounterSnapshotHelpersEdgeTest, TableEntriesOfOneInterfaceAreNotPolicies) {
   auto const table = Kel::make<PolicyMap::Counters::PolicyMapTypeCounters>();
   for (auto const& [intf, packets] : {std::pair{"", 5u}, std::pair{"Ethernet1", 2u}}) {
      auto entry = Kel::make<PolicyMap::Counters::PolicyMapCounters>();
      auto data = Kel::make<PolicyMap::PacketDataStatus>("r1", 1);
      data->countIs({packets, 0});
      entry->classCounter().insertOrAssign("r1", data);
      table->policyMapCounters().insertOrAssign({"p1", intf}, entry);
   }
   auto const counter = Kel::make<TrafficPolicy::Counter>();
   TrafficPolicyCli::trafficPolicyPylonCounterSnapshotHelperFactory(table, counter, true)
       ->clearCounter();
   EXPECT_EQ(counter->snapshot({"p1", "r1"})->pkts, 5U);
}

TEST(CounterSnapshotHelpersEdgeTest, AMissingSourceDropsEverySnapshotAndAMissingStoreIsNoFault) {
   auto const counter = Kel::make<TrafficPolicy::Counter>();
   counter->snapshotIs({"p1", "r1"}, {1, 5});
   counter->namedSnapshotIs({"p1", "c1"}, 1);
   TrafficPolicyCli::trafficPolicyLedgerCounterSnapshotHelperFactory(nullptr, counter)
       ->clearCounter();
   EXPECT_TRUE(counter->snapshot().empty());
   EXPECT_TRUE(counter->namedSnapshot().empty());
   TrafficPolicyCli::trafficPolicyPylonCounterSnapshotHelperFactory(nullptr, nullptr, true)
       ->clearCounter();
}

}  // namespace
