// What no loadable state can express: rules of an unknown match option or without criteria,
// flags under a protocol range that only contains TCP, action types a traffic policy never
// carries, and the configuration invariants that the renderers assert.
#include <gtest/gtest.h>

#include <functional>

#include "TrafficPolicyCli/CliMap.h"
#include "support/CapturedAssertion.h"
#include "support/RenderedRules.h"

namespace {

using Classification::StructuredFilter;
using PolicyMap::ActionType;
using PolicyMap::ClassMapMatchOption;
using rendering_test::RenderedRules;
using rendering_test::renderRulesOf;
using rendering_test::ruleState;

// Renders rule "r1" with `filter` (null: no criteria) as its match of `option`, and with `actions`
// when given in place of the configured ones (a drop).
RenderedRules renderRule(ClassMapMatchOption option, Kel::Ptr<StructuredFilter> filter,
                         Kel::Ptr<PolicyMap::ClassAction> actions = nullptr) {
   auto const state = ruleState({.actions = R"({"drop": true})"});
   return renderRulesOf(state, [&](TrafficPolicyCli::PolicyState& record) {
      auto match = Kel::make<PolicyMap::ClassMapMatch>(option);
      match->structuredFilterIs(filter);
      record.classMapConfigIs(0, "r1", match);
      if (actions) {
         auto sub = Kel::make<PolicyMap::PolicyMapSubConfig>("p");
         sub->classAction().insertOrAssign("r1", actions);
         auto pmap = Kel::make<PolicyMap::PolicyMapConfig>("p");
         pmap->currCfgIs(sub);
         record.policyMapConfigIs(pmap);
      }
   });
}

Kel::Ptr<StructuredFilter> tcpFlagsUnder(Classification::ProtocolRange range,
                                         Classification::TcpFlagGroup group) {
   auto filter = Kel::make<StructuredFilter>();
   auto field = Kel::make<Classification::ProtoField>();
   field->tcpFlag().insert(group);
   filter->proto().insertOrAssign(range, field);
   return filter;
}

Kel::Ptr<PolicyMap::ClassAction> actionsOfType(std::uint8_t type) {
   auto actions = Kel::make<PolicyMap::ClassAction>("r1");
   auto const actionType = static_cast<ActionType>(type);
   actions->policyAction().insertOrAssign(actionType, Kel::make<PolicyMap::Action>(actionType));
   return actions;
}

TEST(RuleRendering, WhatNoStateCanSayRendersAsTheRulesSay) {
   struct Row {
      char const* name;
      RenderedRules rendered;
      char const* text;
      char const* json;
   } const rows[] = {
       {"an unknown option ends the header after the name",
        renderRule(static_cast<ClassMapMatchOption>(7), nullptr),
        "    match r1 \n       Actions: Drop\n",
        R"({"actions": {"drop": true}, "matchOption": "", "ruleString": "r1"})"},
       {"a rule without criteria has no matches object",
        renderRule(ClassMapMatchOption::ipv6, nullptr), "    match r1 ipv6\n       Actions: Drop\n",
        R"({"actions": {"drop": true}, "matchOption": "ipv6", "ruleString": "r1"})"},
       {"TCP flags show only under the TCP protocol alone",
        renderRule(ClassMapMatchOption::ipv4, tcpFlagsUnder({1, 255}, {2, 2})),
        "    match r1 ipv4\n       Protocol: 1-255\n       Actions: Drop\n",
        R"({"actions": {"drop": true}, "matchOption": "ipv4", "matches": {"protocols":
            [{"protocolRange": {"high": 255, "low": 1}}]}, "ruleString": "r1"})"},
       {"action types beyond the known ones are passed over",
        renderRule(ClassMapMatchOption::ipv4, nullptr, actionsOfType(30)),
        "    match r1 ipv4\n       Actions: ",
        R"({"actions": {}, "matchOption": "ipv4", "ruleString": "r1"})"},
   };
   for (auto const& row : rows) {
      EXPECT_EQ(row.rendered.text, row.text) << row.name;
      EXPECT_EQ(row.rendered.rules, nlohmann::json::array({nlohmann::json::parse(row.json)}))
          << row.name << ": " << row.rendered.rules.dump();
   }
}

TEST(RenderingInvariants, BrokenConfigurationStopsOnTheQuotedExpression) {
   using Filter = Kel::Ptr<StructuredFilter>;
   auto const withSources = [](std::function<void(StructuredFilter&)> const& more) {
      auto filter = Kel::make<StructuredFilter>();
      filter->sources().insert(Quoll::IpGenPrefix::parse("10.0.0.0/8").value());
      more(*filter);
      return filter;
   };
   auto const innerWith = [](std::function<void(StructuredFilter&)> const& set) {
      auto inner = Kel::make<StructuredFilter>();
      inner->addressFamilyIs(Quoll::AddressFamily::ipv4);
      set(*inner);
      auto outer = Kel::make<StructuredFilter>();
      outer->innerMatchIs(inner);
      return outer;
   };
   auto const vlanTag = [](bool withFieldSet) {
      auto filter = Kel::make<StructuredFilter>();
      Classification::VlanRangeSet tag;
      tag.vlans().insert({10, 10});
      if (withFieldSet) {
         tag.vlanFieldSets().insert("guest");
      }
      filter->vlanTags().push_back(tag);
      return filter;
   };
   struct Case {
      char const* name;
      ClassMapMatchOption option;
      Filter filter;
      Kel::Ptr<PolicyMap::ClassAction> actions;
      char const* expression;
   };
   Case const cases[] = {
       {"empty TCP flag group", ClassMapMatchOption::ipv4, tcpFlagsUnder({6, 6}, {0, 0}), nullptr,
        "activeFlags.size() != 0"},
       {"connection state with another flag", ClassMapMatchOption::ipv4,
        tcpFlagsUnder({6, 6}, {0x102, 0x102}), nullptr, "activeFlags.size() == 1"},
       {"connection state that is clear", ClassMapMatchOption::ipv4,
        tcpFlagsUnder({6, 6}, {0, 0x100}), nullptr, "flagBool"},
       {"VLAN tag with VLANs and field sets", ClassMapMatchOption::ipv4, vlanTag(true), nullptr,
        "!range.vlans() || !range.vlanFieldSets()"},
       {"prefixes and field sets for the sources", ClassMapMatchOption::ipv4,
        withSources([](StructuredFilter& f) { f.srcPrefixSets().insert("fs1"); }), nullptr,
        "!structuredFilter->srcPrefixSets()"},
       {"longest-prefix match in an inner header", ClassMapMatchOption::ipv4,
        innerWith([](StructuredFilter& f) {
           f.destinationLpms().insert(Quoll::IpGenPrefix::parse("10.0.0.0/8").value());
        }),
        nullptr, "!sf->destinationLpms()"},
       {"protocol name for an option without one", ClassMapMatchOption::mac,
        tcpFlagsUnder({17, 17}, {1, 1}), nullptr, "false && \"Unrecognized match option\""},
       {"action type a policy never carries", ClassMapMatchOption::ipv4, vlanTag(false),
        actionsOfType(6), "false && \"Unexpected action type\""},
   };
   for (auto const& broken : cases) {
      EXPECT_EQ(testing_support::failedAssertion(
                    [&] { renderRule(broken.option, broken.filter, broken.actions); }, true),
                std::string("TrafficPolicy/TrafficPolicyShowCliHelper: ") + broken.expression)
          << broken.name;
   }
   EXPECT_EQ(
       testing_support::failedAssertion([] { TrafficPolicyCli::cliJsonName("Source prefixes"); }),
       "!!jsonName && \"Invalid mapping in cliMap\"");
}

}  // namespace
