// Clearing through both snapshot helpers, over the state database's type status and over the
// shared-memory table alike: counters that are gone lose their snapshots, a new life of a counter
// gets a new snapshot, and per-interface entries follow the per-interface switch and the lives of
// their counters. (That a clear stores what the next shows are given is checked on tpcli as a
// process.)
#include <gtest/gtest.h>

#include "TrafficPolicyCli/Factories.h"

namespace {

using PolicyMap::PacketAndByte;
using PolicyMap::PacketDataMap;
using TrafficPolicy::NamedCounterKey;

enum class Backend { ledger, pylon };

// One direction's live counters, kept where the back end keeps them.
class LiveCounters {
 public:
   explicit LiveCounters(Backend backend) : backend_(backend) {}

   void ruleIs(char const* policy, char const* rule, std::uint64_t instance,
               std::uint64_t packets) {
      insert(rules(policy), rule, instance, {packets, 0}, {});
   }
   void namedIs(char const* policy, char const* name, std::uint64_t instance, PacketAndByte count,
                std::vector<std::pair<char const*, PacketAndByte>> const& perInterface = {}) {
      insert(named(policy), name, instance, count, perInterface);
   }
   void ruleDel(char const* policy, char const* rule) { rules(policy).erase(rule); }
   void namedDel(char const* policy, char const* name) { named(policy).erase(name); }

   // Clears with the helper of the back end; per-interface snapshots as asked.
   void clearInto(Kel::Ptr<TrafficPolicy::Counter> const& counter, bool perInterface) const {
      if (backend_ == Backend::ledger) {
         typeStatus_->perInterfaceCountersIs(perInterface);
         TrafficPolicyCli::trafficPolicyLedgerCounterSnapshotHelperFactory(typeStatus_, counter)
             ->clearCounter();
      } else {
         TrafficPolicyCli::trafficPolicyPylonCounterSnapshotHelperFactory(table_, counter,
                                                                          perInterface)
             ->clearCounter();
      }
   }

   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters> const& table() const { return table_; }

 private:
   static void insert(PacketDataMap& into, char const* name, std::uint64_t instance,
                      PacketAndByte count,
                      std::vector<std::pair<char const*, PacketAndByte>> const& perInterface) {
      auto data = Kel::make<PolicyMap::PacketDataStatus>(name, instance);
      data->countIs(count);
      for (auto const& [intf, intfCount] : perInterface) {
         data->perIntfCount().insertOrAssign(Quoll::IntfId(intf), intfCount);
      }
      into.insertOrAssign(name, data);
   }
   PacketDataMap& rules(char const* policy) {
      return backend_ == Backend::ledger ? status(policy).classCounter()
                                         : tableEntry(policy).classCounter();
   }
   PacketDataMap& named(char const* policy) {
      return backend_ == Backend::ledger ? status(policy).namedCounter()
                                         : tableEntry(policy).namedCounter();
   }
   PolicyMap::PolicyMapStatus& status(char const* policy) {
      auto& entry = statuses_.getOrCreate(policy, Kel::make<PolicyMap::PolicyMapStatus>(policy));
      typeStatus_->policyMapStatus().insertOrAssign(policy, entry);
      return *entry;
   }
   PolicyMap::Counters::PolicyMapCounters& tableEntry(char const* policy) {
      auto& entry =
          tableEntries_.getOrCreate(policy, Kel::make<PolicyMap::Counters::PolicyMapCounters>());
      table_->policyMapCounters().insertOrAssign({policy, ""}, entry);
      return *entry;
   }

   Backend backend_;
   Kel::Ptr<PolicyMap::PolicyMapTypeStatus> typeStatus_ =
       Kel::make<PolicyMap::PolicyMapTypeStatus>();
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters> table_ =
       Kel::make<PolicyMap::Counters::PolicyMapTypeCounters>();
   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMap::PolicyMapStatus>> statuses_;
   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMap::Counters::PolicyMapCounters>> tableEntries_;
};

class CounterSnapshotHelpersTest : public testing::TestWithParam<Backend> {
 protected:
   void clear(bool perInterface = true) { live_.clearInto(counter_, perInterface); }

   Kel::Ptr<TrafficPolicy::NamedCounterVersion const> named(char const* policy,
                                                            char const* name) const {
      return counter_->namedSnapshot(NamedCounterKey{policy, name});
   }
   // The interfaces of a named snapshot, each with its instance id and packets.
   std::vector<std::tuple<std::string, std::uint64_t, std::uint64_t>> perInterface(
       char const* policy, char const* name) const {
      std::vector<std::tuple<std::string, std::uint64_t, std::uint64_t>> entries;
      for (auto const& [intf, entry] : named(policy, name)->perIntfCount()) {
         entries.emplace_back(intf.stringValue(), entry->instanceId(), entry->countData().packets);
      }
      return entries;
   }

   LiveCounters live_{GetParam()};
   Kel::Ptr<TrafficPolicy::Counter> counter_ = Kel::make<TrafficPolicy::Counter>();
};

TEST_P(CounterSnapshotHelpersTest, CountersThatAreGoneLoseTheirSnapshots) {
   for (auto const* rule : {"r1", "r2", "r3", "r4"}) {
      live_.ruleIs("p1", rule, 1, 5);
   }
   for (auto const* name : {"c1", "c2", "c3"}) {
      live_.namedIs("p1", name, 1, {5, 50});
   }
   live_.ruleIs("p2", "r1", 1, 5);
   clear();
   // Neighbours go together, so that the clean-up deletes several entries in a row.
   live_.ruleDel("p1", "r2");
   live_.ruleDel("p1", "r3");
   live_.ruleDel("p2", "r1");
   live_.namedDel("p1", "c1");
   live_.namedDel("p1", "c2");
   clear();
   std::vector<std::string> rules;
   for (auto const& [key, version] : counter_->snapshot()) {
      rules.push_back(key.policyName.stringValue() + "/" + key.className.stringValue());
   }
   EXPECT_EQ(rules, (std::vector<std::string>{"p1/r1", "p1/r4"}));
   EXPECT_EQ(counter_->namedSnapshot().size(), 1U);
   EXPECT_TRUE(named("p1", "c3"));
}

TEST_P(CounterSnapshotHelpersTest, ANewLifeOfACounterGetsANewSnapshot) {
   live_.namedIs("p1", "c1", 1, {40, 400}, {{"Ethernet1", {40, 400}}});
   clear();
   auto const first = named("p1", "c1");
   live_.namedIs("p1", "c1", 2, {3, 30}, {{"Ethernet2", {3, 30}}});
   clear();
   auto const second = named("p1", "c1");
   EXPECT_NE(first, second);
   EXPECT_EQ(second->instanceId(), 2U);
   EXPECT_EQ(second->totalCount(), (PacketAndByte{3, 30}));
   EXPECT_EQ(
       perInterface("p1", "c1"),
       (std::vector<std::tuple<std::string, std::uint64_t, std::uint64_t>>{{"Ethernet2", 2, 3}}));
}

TEST_P(CounterSnapshotHelpersTest, WithoutPerInterfaceSnapshotsOnlyTheTotalsAreWritten) {
   live_.namedIs("p1", "c1", 1, {40, 400}, {{"Ethernet1", {40, 400}}});
   clear(false);
   EXPECT_EQ(named("p1", "c1")->totalCount(), (PacketAndByte{40, 400}));
   EXPECT_TRUE(named("p1", "c1")->perIntfCount().empty());
}

TEST_P(CounterSnapshotHelpersTest, InterfaceEntriesFollowTheirCounters) {
   live_.namedIs("p1", "c1", 5, {40, 400},
                 {{"Ethernet1", {10, 100}}, {"Ethernet2", {20, 200}}, {"Ethernet3", {1, 1}}});
   // An entry left from another life of the counter, and one of an interface now gone.
   auto const snapshot = counter_->namedSnapshotIs({"p1", "c1"}, 5);
   snapshot->perIntfCountIs(Quoll::IntfId("Ethernet1"), 4)->countDataIs({99, 999});
   snapshot->perIntfCountIs(Quoll::IntfId("Ethernet9"), 5)->countDataIs({1, 1});
   auto const kept = snapshot->perIntfCountIs(Quoll::IntfId("Ethernet2"), 5);
   clear();
   EXPECT_EQ(named("p1", "c1"), snapshot);
   EXPECT_EQ(perInterface("p1", "c1"),
             (std::vector<std::tuple<std::string, std::uint64_t, std::uint64_t>>{
                 {"Ethernet1", 5, 10}, {"Ethernet2", 5, 20}, {"Ethernet3", 5, 1}}));
   EXPECT_EQ(snapshot->perIntfCount().lookup(Quoll::IntfId("Ethernet2"))->get(), kept.get());
}

INSTANTIATE_TEST_SUITE_P(BothBackends, CounterSnapshotHelpersTest,
                         testing::Values(Backend::ledger, Backend::pylon),
                         [](testing::TestParamInfo<Backend> const& param) {
                            return param.param == Backend::ledger ? "ledger" : "pylon";
                         });

TEST(CounterSnapshotHelpersEdgeTest, TableEntriesOfOneInterfaceAreNotPolicies) {
   LiveCounters live(Backend::pylon);
   live.ruleIs("p1", "r1", 1, 5);
   auto perInterface = Kel::make<PolicyMap::Counters::PolicyMapCounters>();
   auto data = Kel::make<PolicyMap::PacketDataStatus>("r1", 1);
   data->countIs({2, 0});
   perInterface->classCounter().insertOrAssign("r1", data);
   live.table()->policyMapCounters().insertOrAssign({"p1", "Ethernet1"}, perInterface);
   auto const counter = Kel::make<TrafficPolicy::Counter>();
   live.clearInto(counter, true);
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
