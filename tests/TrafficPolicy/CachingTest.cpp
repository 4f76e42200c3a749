// The caching pipeline: which policies and rules get cached, in which order and index, what is
// flagged as undefined, and that walks survive changes under them.
#include <gtest/gtest.h>

#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"
#include "TrafficPolicyCli/Trace.h"
#include "support/CapturedTrace.h"

namespace {

using PolicyMap::ClassMapMatchOption;
using TrafficPolicyCli::PolicyState;

// A device built by hand: policies with rules, their statuses and counters.
struct Device {
   Kel::Ptr<TrafficPolicy::TrafficPolicyConfig> config =
       Kel::make<TrafficPolicy::TrafficPolicyConfig>();
   Kel::Ptr<TrafficPolicy::Status> status = Kel::make<TrafficPolicy::Status>();
   Kel::Ptr<Classification::FieldSetConfig> fieldSets = Kel::make<Classification::FieldSetConfig>();
   Kel::Ptr<TrafficPolicy::HwStatus> hardware = Kel::make<TrafficPolicy::HwStatus>();
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters> table =
       Kel::make<PolicyMap::Counters::PolicyMapTypeCounters>();

   Kel::Ptr<PolicyMap::PolicyMapSubConfig> configure(char const* policy) {
      auto sub = Kel::make<PolicyMap::PolicyMapSubConfig>(policy);
      auto pmap = Kel::make<PolicyMap::PolicyMapConfig>(policy);
      pmap->currCfgIs(sub);
      config->policyMapConfig().insertOrAssign(policy, pmap);
      return sub;
   }
   Kel::Ptr<PolicyMap::PolicyMapStatus> report(char const* policy) {
      auto pmapStatus = Kel::make<PolicyMap::PolicyMapStatus>(policy);
      status->policyMapStatus().insertOrAssign(policy, pmapStatus);
      return pmapStatus;
   }
   static void processed(PolicyMap::PolicyMapStatus& pmapStatus, char const* rule,
                         std::initializer_list<ClassMapMatchOption> options) {
      auto cmapStatus = Kel::make<PolicyMap::ClassMapStatus>(rule);
      for (auto option : options) {
         cmapStatus->matchs().insert(option);
      }
      pmapStatus.classMapStatus().insertOrAssign(rule, cmapStatus);
   }
   static void rule(PolicyMap::PolicyMapSubConfig& sub, std::uint32_t sequence, char const* name,
                    Kel::Ptr<Classification::StructuredFilter const> filter = nullptr,
                    ClassMapMatchOption option = ClassMapMatchOption::ipv4) {
      sub.rule().insertOrAssign(sequence, name);
      auto classMap = Kel::make<PolicyMap::ClassMapConfig>(name);
      auto match = Kel::make<PolicyMap::ClassMapMatch>(option);
      match->structuredFilterIs(filter);
      classMap->match().insertOrAssign(option, match);
      sub.classMap().insertOrAssign(name, classMap);
   }
   static void counts(PolicyMap::PolicyMapSubConfig& sub, char const* rule, char const* counter) {
      auto actions = Kel::make<PolicyMap::ClassAction>(rule);
      actions->policyAction().insertOrAssign(PolicyMap::ActionType::count,
                                             Kel::make<PolicyMap::CountAction>(counter));
      sub.classAction().insertOrAssign(rule, actions);
   }

   // The interface show object over the input direction only.
   Kel::Ptr<TrafficPolicyCli::ShowTrafficPolicyInterface> showObject() const {
      return Kel::make<TrafficPolicyCli::ShowTrafficPolicyInterface>(
          config, status, nullptr, Kel::String(), false, false, true, false, false, fieldSets,
          hardware, table, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, false, false);
   }
};

class CachingTest : public testing::Test {
 protected:
   bool traced(std::string const& line) const { return trace_.traced(line); }

   Device device_;
   testing_support::CapturedTrace trace_{TrafficPolicyCli::traceFacility(), 7};
};

TEST_F(CachingTest, RulesWithoutStatusOrMatchOptionLeaveNoGap) {
   auto sub = device_.configure("p1");
   Device::rule(*sub, 30, "r3");
   Device::rule(*sub, 10, "r1");
   Device::rule(*sub, 20, "r2");
   Device::rule(*sub, 40, "r4");
   auto pmapStatus = device_.report("p1");
   Device::processed(*pmapStatus, "r1", {ClassMapMatchOption::ipv4});
   Device::processed(*pmapStatus, "r3", {ClassMapMatchOption::ipv6});
   Device::processed(*pmapStatus, "r4", {});

   auto show = device_.showObject();
   show->cacheFieldSetState();
   show->cachePoliciesState();
   auto const record = show->policyState("p1");
   ASSERT_TRUE(record);
   EXPECT_EQ(record->ruleCount(), 2u);
   EXPECT_EQ((*record->classMapStatusInput().lookup(0))->name(), "r1");
   EXPECT_EQ((*record->classMapStatusInput().lookup(1))->name(), "r3");
   EXPECT_EQ((*record->classMapConfig().lookup(1))->option(), ClassMapMatchOption::ipv6);
   EXPECT_EQ(record->indentCountPerLevel(), 3u);
   EXPECT_TRUE(record->detail());
   EXPECT_TRUE(traced("7 ClassMapStatus not found for r2"));
   EXPECT_TRUE(traced("1 No match option status found for r4"));
   EXPECT_TRUE(traced("7 Caching 1 r3, ipv6"));
   EXPECT_TRUE(traced("4 ruleCount 2, total class count 4"));
}

TEST_F(CachingTest, UndefinedFieldSetsAreCheckedPerFamily) {
   auto v4Set = Kel::make<Classification::FieldSetIpPrefix>("fs-v4");
   device_.fieldSets->fieldSetIpPrefix().insertOrAssign("fs-v4", v4Set);
   struct Row {
      char const* name;
      ClassMapMatchOption option;
      bool undefined;
   } const rows[] = {
       {"defined for its family", ClassMapMatchOption::ipv4, false},
       {"defined for the other family only", ClassMapMatchOption::ipv6, true},
   };
   for (auto const& row : rows) {
      Device device;
      device.fieldSets = device_.fieldSets;
      auto sub = device.configure("p1");
      auto filter = Kel::make<Classification::StructuredFilter>();
      filter->srcPrefixSets().insert("fs-v4");
      Device::rule(*sub, 10, "r1", filter, row.option);
      Device::processed(*device.report("p1"), "r1", {row.option});
      auto show = device.showObject();
      show->cachePoliciesState();
      EXPECT_EQ(show->policyState("p1")->undefinedFieldSet(), row.undefined) << row.name;
   }
}

TEST_F(CachingTest, CountActionsNamingUndeclaredCounters) {
   auto sub = device_.configure("p1");
   sub->namedCounter().insert("declared");
   Device::rule(*sub, 10, "r1");
   Device::rule(*sub, 20, "r2");
   Device::rule(*sub, 30, "r3");
   Device::counts(*sub, "r1", "declared");
   Device::counts(*sub, "r2", "");
   Device::counts(*sub, "r3", "c9");
   auto pmapStatus = device_.report("p1");
   for (char const* rule : {"r1", "r2", "r3"}) {
      Device::processed(*pmapStatus, rule, {ClassMapMatchOption::ipv4});
   }
   auto show = device_.showObject();
   show->cachePoliciesState();
   auto const record = show->policyState("p1");
   EXPECT_TRUE(record->undefinedCounter());
   EXPECT_TRUE(record->namedCounter().contains("declared"));
   EXPECT_TRUE(traced("1 Class: r3 has undefined counter: c9"));
   EXPECT_EQ(std::count_if(trace_.lines().begin(), trace_.lines().end(),
                           [](auto const& line) {
                              return line.find("undefined counter") != std::string::npos;
                           }),
             1);
}

TEST_F(CachingTest, StatusWithoutConfigurationOrCurrentSubConfiguration) {
   device_.report("orphan");
   device_.config->policyMapConfig().insertOrAssign("draft",
                                                    Kel::make<PolicyMap::PolicyMapConfig>("draft"));
   device_.report("draft");
   auto show = device_.showObject();
   show->cachePoliciesState();
   for (char const* name : {"orphan", "draft"}) {
      auto const record = show->policyState(name);
      ASSERT_TRUE(record) << name;
      EXPECT_TRUE(record->policyStatus()) << name;
      EXPECT_EQ(record->ruleCount(), 0u) << name;
      EXPECT_TRUE(record->matchOptionList().empty()) << name;
      EXPECT_EQ(record->indentCountPerLevel(), 3u) << name;
   }
   EXPECT_FALSE(show->policyState("orphan")->policyMapConfig());
   EXPECT_TRUE(traced("7 PolicyMapConfig not found for orphan"));
   EXPECT_TRUE(traced("7 currCfg not found for draft"));
}

// Changes the status collection while the policy walk runs.
class ChangingShowObject : public TrafficPolicyCli::ShowTrafficPolicyInterface {
 public:
   ChangingShowObject(Device& device, std::function<void(Kel::String const&)> change)
       : ShowTrafficPolicyInterface(device.config, device.status, nullptr, Kel::String(), false,
                                    false, false, false, false, device.fieldSets, device.hardware,
                                    device.table, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr, false, false),
         change_(std::move(change)) {}

   void cachePolicyState(Kel::String const& policyName) override {
      visited.push_back(policyName.stringValue());
      change_(policyName);
      ShowTrafficPolicyInterface::cachePolicyState(policyName);
   }

   std::vector<std::string> visited;

 private:
   std::function<void(Kel::String const&)> change_;
};

TEST_F(CachingTest, PolicyWalkSurvivesChangesUnderIt) {
   for (char const* name : {"a", "c", "e", "g"}) {
      device_.report(name);
   }
   auto show = Kel::make<ChangingShowObject>(device_, [this](Kel::String const& name) {
      if (name == "c") {
         device_.status->policyMapStatus().erase("e");
         device_.report("d");
         device_.report("b");
      }
   });
   show->cachePoliciesState();
   EXPECT_EQ(show->visited, (std::vector<std::string>{"a", "c", "d", "g"}));
}

// Answers for named counters, and changes the record's counter set while it is asked.
class ChangingReader : public PolicyMap::PolicyMapLedgerCounterStatusReader {
 public:
   ChangingReader(Kel::Ptr<TrafficPolicy::Status const> status, std::function<void()> change)
       : PolicyMapLedgerCounterStatusReader(std::move(status)), change_(std::move(change)) {}

   Kel::Ptr<PolicyMap::PacketDataStatus const> namedCounterData(
       PolicyMap::PolicyMapSmKey const&, Kel::String const& counterName) const override {
      asked.push_back(counterName.stringValue());
      if (counterName == "c2") {
         change_();
      }
      return Kel::make<PolicyMap::PacketDataStatus>(counterName, 1);
   }

   mutable std::vector<std::string> asked;

 private:
   std::function<void()> change_;
};

class ShowObjectWithReader : public TrafficPolicyCli::ShowTrafficPolicyInterface {
 public:
   explicit ShowObjectWithReader(Device& device)
       : ShowTrafficPolicyInterface(device.config, device.status, nullptr, Kel::String(), false,
                                    false, false, false, false, device.fieldSets, device.hardware,
                                    device.table, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr, false, false) {}

   // The input direction's reader changes the walk under it; there is no output status.
   Kel::Ptr<CounterReader const> createCounterStatusHelper(bool isInput) override {
      if (!isInput) {
         return nullptr;
      }
      reader = Kel::make<ChangingReader>(status(), [this] {
         auto record = policyState("p1");
         record->namedCounterDel("c3");
         record->namedCounterIs("c4", true);
         record->namedCounterIs("c0", true);
      });
      return reader;
   }

   Kel::Ptr<ChangingReader> reader;
};

TEST_F(CachingTest, NamedCounterWalkSurvivesChangesUnderIt) {
   auto sub = device_.configure("p1");
   for (char const* name : {"c1", "c2", "c3"}) {
      sub->namedCounter().insert(name);
   }
   device_.report("p1");
   auto show = Kel::make<ShowObjectWithReader>(device_);
   show->cachePoliciesState();
   EXPECT_EQ(show->reader->asked, (std::vector<std::string>{"c1", "c2", "c4"}));
   auto const record = show->policyState("p1");
   EXPECT_TRUE(record->inputNamedCounters().contains("c4"));
   EXPECT_FALSE(record->inputNamedCounters().contains("c3"));
}

}  // namespace
