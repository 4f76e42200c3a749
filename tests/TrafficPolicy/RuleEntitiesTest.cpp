// The rules of a policy meet their status, match and count action by name, whatever order their
// names sort in, and a rule the maps do not hold gets nothing of another rule's.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PolicyMap/Actions.h"
#include "TrafficPolicyCli/RuleEntities.h"
#include "TrafficPolicyCli/RuleLookups.h"

namespace {

using PolicyMap::ClassMapMatchOption;

// A rule as the maps hold it: "" for a map that does not hold it.
struct MapEntry {
   std::string name;
   bool inStatus = true;
   bool withOption = true;  // the status lists a match option
   bool configured = true;  // the configuration holds a match for that option
   std::string counter;     // the count action's counter; "-" for a rule without actions
};

// What a rule is expected to get: its status, its match, its counter name.
struct Expected {
   bool status;
   bool match;
   std::string counter;
};

struct Case {
   char const* what;
   std::vector<std::string> sequence;  // rule names in sequence order
   std::vector<MapEntry> maps;
   std::vector<Expected> expected;  // per position of `sequence`
};

struct Policy {
   Kel::Ptr<PolicyMap::PolicyMapStatus> status = Kel::make<PolicyMap::PolicyMapStatus>("p");
   Kel::Ptr<PolicyMap::PolicyMapSubConfig> config = Kel::make<PolicyMap::PolicyMapSubConfig>("p");

   void add(MapEntry const& entry) {
      Kel::String const name(entry.name);
      if (entry.inStatus) {
         auto cmapStatus = Kel::make<PolicyMap::ClassMapStatus>(name);
         if (entry.withOption) {
            cmapStatus->matchs().insert(ClassMapMatchOption::ipv6);
         }
         status->classMapStatus().insertOrAssign(name, cmapStatus);
      }
      auto classMap = Kel::make<PolicyMap::ClassMapConfig>(name);
      // A match of the other option only must not be taken for the status's option.
      auto const option = entry.configured ? ClassMapMatchOption::ipv6 : ClassMapMatchOption::ipv4;
      classMap->match().insertOrAssign(option, Kel::make<PolicyMap::ClassMapMatch>(option));
      config->classMap().insertOrAssign(name, classMap);
      if (entry.counter != "-") {
         auto actions = Kel::make<PolicyMap::ClassAction>(name);
         actions->policyAction().insertOrAssign(PolicyMap::ActionType::count,
                                                Kel::make<PolicyMap::CountAction>(entry.counter));
         config->classAction().insertOrAssign(name, actions);
      }
   }
};

TEST(RuleEntitiesTest, EachRuleMeetsItsOwnEntries) {
   Case const cases[] = {
       {"names that sort otherwise than in sequence",
        {"rule-10", "rule-2", "rule-1"},
        {{"rule-1", true, true, true, "a"},
         {"rule-2", true, true, true, "b"},
         {"rule-10", true, true, true, "c"}},
        {{true, true, "c"}, {true, true, "b"}, {true, true, "a"}}},
       {"a rule without status, one without option, one without match or actions",
        {"a", "b", "c", "d"},
        {{"a", false, true, true, "x"},
         {"b", true, false, true, "y"},
         {"c", true, true, false, "-"},
         {"d", true, true, true, ""}},
        {{false, false, ""}, {true, false, ""}, {true, false, ""}, {true, true, ""}}},
       {"entries of rules that are not configured in sequence",
        {"m"},
        {{"k", true, true, true, "k1"},
         {"m", true, true, true, "m1"},
         {"z", true, true, true, "z1"}},
        {{true, true, "m1"}}},
       {"a name that stands twice",
        {"b", "a", "b"},
        {{"a", true, true, true, "1"}, {"b", true, true, true, "2"}},
        {{true, true, "2"}, {true, true, "1"}, {true, true, "2"}}},
       {"no rules", {}, {{"a", true, true, true, "1"}}, {}},
   };
   for (auto const& row : cases) {
      SCOPED_TRACE(row.what);
      Policy policy;
      for (auto const& entry : row.maps) {
         policy.add(entry);
      }
      std::vector<Kel::String> names(row.sequence.begin(), row.sequence.end());
      auto const rules =
          TrafficPolicyCli::ruleEntitiesByName(names, *policy.status, *policy.config);
      ASSERT_EQ(rules.size(), row.expected.size());
      for (std::size_t position = 0; position < rules.size(); ++position) {
         SCOPED_TRACE(row.sequence[position]);
         auto const& rule = rules[position];
         auto const& expected = row.expected[position];
         EXPECT_EQ(rule.status != nullptr, expected.status);
         if (rule.status) {
            EXPECT_EQ(rule.status->name(), names[position]);
         }
         EXPECT_EQ(rule.match != nullptr, expected.match);
         if (rule.match) {
            EXPECT_EQ(rule.match->option(), ClassMapMatchOption::ipv6);
         }
         EXPECT_EQ(rule.counterName.stringValue(), expected.counter);
      }
   }
}

// Enough names that many share a hash slot's neighbourhood: each still finds its own status.
TEST(RuleEntitiesTest, ManyRulesEachFindTheirOwn) {
   Policy policy;
   std::vector<Kel::String> names;
   for (int rule = 4999; rule >= 0; --rule) {
      auto const name = "r" + std::to_string(rule);
      names.emplace_back(name);
      if (rule % 3 != 0) {
         policy.add({name, true, true, true, name});
      }
   }
   auto const rules = TrafficPolicyCli::ruleEntitiesByName(names, *policy.status, *policy.config);
   for (std::size_t position = 0; position < names.size(); ++position) {
      int const rule = 4999 - static_cast<int>(position);
      auto const expected = rule % 3 != 0 ? names[position] : Kel::String();
      ASSERT_EQ(rules[position].counterName, expected) << "rule " << rule;
      ASSERT_EQ(rules[position].status != nullptr, rule % 3 != 0) << "rule " << rule;
   }
}

// Rendering meets each rule's actions and live counter by rule index, in whatever order the names
// sort; a rule without actions or without a counter gets none of another rule's, and the lookups
// answer only for their record and for the name it keeps at the index.
TEST(RuleLookupsTest, EachRuleIndexMeetsItsOwnActionsAndCounter) {
   Policy policy;
   // Sequence order: rule-10, rule-2, rule-1, lone. "rule-2" has actions but no counter; "lone" has
   // a counter but no actions, so nothing that reads it; "rule-3" is not a rule of the record.
   for (auto const& [name, counter] : std::vector<std::pair<std::string, std::string>>{
            {"rule-1", "a"}, {"rule-2", "b"}, {"rule-10", "c"}, {"rule-3", "d"}, {"lone", "-"}}) {
      policy.add({name, true, true, true, counter});
   }
   auto const config = Kel::make<PolicyMap::PolicyMapConfig>("p");
   config->currCfgIs(policy.config);
   auto const record = TrafficPolicyCli::policyStateFactory("p");
   record->policyMapConfigIs(config);
   std::vector<std::string> const sequence{"rule-10", "rule-2", "rule-1", "lone"};
   for (std::uint32_t index = 0; index < sequence.size(); ++index) {
      record->classMapConfigIs(index, Kel::String(sequence[index]),
                               Kel::make<PolicyMap::ClassMapMatch>(ClassMapMatchOption::ipv4));
   }
   for (auto const* name : {"rule-1", "rule-10", "rule-3", "lone"}) {
      record->inputClassCountersIs(Kel::make<PolicyMap::PacketDataStatus>(name, 1));
   }

   TrafficPolicyCli::RuleLookups lookups;
   lookups.join(*record);
   struct Found {
      bool actions;
      bool counter;
   };
   std::vector<Found> const expected{{true, true}, {true, false}, {true, true}, {false, false}};
   for (std::uint32_t index = 0; index < sequence.size(); ++index) {
      SCOPED_TRACE(sequence[index]);
      Kel::String const name(sequence[index]);
      EXPECT_TRUE(lookups.answerFor(*record, index, name));
      auto const* actions = lookups.actions(index);
      ASSERT_EQ(actions != nullptr, expected[index].actions);
      if (actions) {
         EXPECT_EQ(actions->name(), name);
      }
      auto const* counter = lookups.inputCounter(index);
      ASSERT_EQ(counter != nullptr, expected[index].counter);
      if (counter) {
         EXPECT_EQ(counter->name(), name);
      }
   }
   EXPECT_EQ(lookups.actions(4), nullptr);
   EXPECT_FALSE(lookups.answerFor(*record, 0, "rule-2"));
   EXPECT_FALSE(lookups.answerFor(*TrafficPolicyCli::policyStateFactory("p"), 0, "rule-10"));
   lookups.forget();
   EXPECT_FALSE(lookups.answerFor(*record, 0, "rule-10"));
}

}  // namespace
