// The policy record: defaults, rule counting, counter entries keyed by their own name, and
// reflection of every attribute in declaration order.
#include <gtest/gtest.h>

#include "TrafficPolicyCli/FieldSetState.h"
#include "TrafficPolicyCli/PolicyState.h"

namespace {

using TrafficPolicyCli::PolicyState;

std::vector<std::string> attributeNames(Kel::Entity const& entity) {
   std::vector<std::string> names;
   for (auto const* attribute : entity.fwkType().attributes()) {
      names.push_back(attribute->name);
   }
   return names;
}

TEST(PolicyState, DefaultsOfANewRecord) {
   auto const record = TrafficPolicyCli::policyStateFactory("p1");
   EXPECT_EQ(record->name(), "p1");
   EXPECT_EQ(record->ruleCount(), 0u);
   EXPECT_EQ(record->indentCountPerLevel(), 0u);
   EXPECT_TRUE(record->classMapConfig().empty());
   EXPECT_TRUE(record->inputClassCounters().empty());
   EXPECT_FALSE(record->policyMapConfig());
   EXPECT_FALSE(record->undefinedFieldSet());
}

TEST(PolicyState, RuleCountIncWrapsAndReturnsTheNewCount) {
   auto record = TrafficPolicyCli::policyStateFactory("p1");
   EXPECT_EQ(record->ruleCountInc(0), 0u);
   EXPECT_EQ(record->ruleCountInc(3), 3u);
   record->ruleCountIs(UINT32_MAX);
   EXPECT_EQ(record->ruleCountInc(2), 1u);
}

TEST(PolicyState, CounterDataIsKeyedByItsOwnName) {
   auto record = TrafficPolicyCli::policyStateFactory("p1");
   auto first = Kel::make<PolicyMap::PacketDataStatus>("r1", 1);
   auto second = Kel::make<PolicyMap::PacketDataStatus>("r1", 2);
   record->inputClassCountersIs(first);
   record->inputClassCountersIs(second);
   ASSERT_EQ(record->inputClassCounters().size(), 1u);
   EXPECT_EQ((*record->inputClassCounters().lookup("r1"))->instanceId(), 2u);
}

TEST(PolicyState, ReflectsEveryAttributeInOrder) {
   auto record = TrafficPolicyCli::policyStateFactory("p1");
   EXPECT_EQ(attributeNames(*record),
             (std::vector<std::string>{
                 "name", "matchOptionList", "policyMapConfig", "policyStatus", "classMapConfig",
                 "ruleNames", "classMapStatusInput", "ruleCount", "summary", "errors", "detail",
                 "indentCountPerLevel", "counter", "namedCounter", "inputClassCounters",
                 "inputNamedCounters", "undefinedCounter", "undefinedFieldSet",
                 "byteCountersSupported"}));
   for (auto const& name : attributeNames(*record)) {
      EXPECT_TRUE(record->attribute(name).has_value()) << name;
   }
   EXPECT_EQ(record->attributeIs("ruleCount", Kel::Value(std::uint64_t{4})),
             Kel::WriteResult::done);
   EXPECT_EQ(record->ruleCount(), 4u);
   EXPECT_EQ(record->attributeIs("name", Kel::Value(Kel::String("x"))),
             Kel::WriteResult::notWritable);
   EXPECT_FALSE(record->attribute("noSuchAttribute"));
}

TEST(FieldSetState, EntriesAreCreatedOnceAndStartAtZero) {
   auto state = TrafficPolicyCli::fieldSetStateFactory("");
   auto entry = state->ipPrefixFieldSetIs("fs1");
   EXPECT_EQ(entry->totalAcceptPrefixes(), 0u);
   entry->totalAcceptPrefixesIs(3);
   EXPECT_EQ(state->ipPrefixFieldSetIs("fs1"), entry);
   EXPECT_EQ(state->ipPrefixFieldSet().size(), 1u);
   EXPECT_TRUE(state->ipv6PrefixFieldSet().empty()) << "families are kept apart";
   EXPECT_EQ(state->vlanFieldSetIs("v")->fieldSetName(), "v");
   EXPECT_EQ(*state->l4PortFieldSetIs("ports")->attribute("totalEntries"),
             Kel::Value(std::uint64_t{0}));
}

}  // namespace
