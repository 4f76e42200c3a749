// Golden cases of action rendering: one rule whose matches are left out, its exact text and JSON.
// Rules stand at indent 4, so "Actions: " starts at column 7 and later actions at column 16.
#include <gtest/gtest.h>

#include "support/RenderedRules.h"

namespace {

using rendering_test::renderRulesOf;
using rendering_test::RuleSpec;
using rendering_test::ruleState;
using rendering_test::Variant;
using rendering_test::ViewOptions;

struct GoldenActions {
   char const* name;
   RuleSpec rule;
   ViewOptions view;
   char const* text;
   char const* json;
};

constexpr char kRuleCounter[] =
    R"("ruleCounters": {"r1": {"instanceId": 1, "packets": 100, "bytes": 5000}})";
constexpr char kNamedCounter[] =
    R"("namedCounters": {"c1": {"instanceId": 2, "packets": 40, "bytes": 3000}})";

GoldenActions const kGoldenActions[] = {
    {"every plain kind, later ones under the first",
     {.actions = R"({"log": true, "goto": {"match": "r2"}, "police": {"rate": 2, "unit": "mbps"},
                     "setTc": 5, "stripHeaderBytes": "dot1q", "setDscp": 46, "drop": true})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Drop
                Set DSCP 46
                Remove dot1q outer tag dot1q
                Set Traffic Class 5
                Police rate 2 mbps
                Log
                Goto match r2
)",
     R"({"actions": {"drop": true, "goto": {"matchName": "r2"}, "log": true,
         "police": {"rate": 2, "unit": "mbps"}, "setDscp": 46, "setTc": 5,
         "stripHeaderBytes": "dot1q"}, "matchOption": "ipv4", "ruleString": "r1"})"},
    {"goto without a target",
     {.actions = R"({"goto": {}})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Goto next
)",
     R"({"actions": {"goto": {"nextMatch": true}}, "matchOption": "ipv4", "ruleString": "r1"})"},
    {"five next-hop groups without detail",
     {.actions = R"({"redirectNexthopGroups": ["g5", "g3", "g1", "g2", "g4"]})"},
     {.leaveOutMatches = true, .detail = false},
     R"(    match r1 ipv4
       Actions: Redirect Next-hop Group: g1,g2,g3,g4...
)",
     R"({"actions": {"redirectNexthopGroups": ["g1", "g2", "g3", "g4", "g5"]},
         "matchOption": "ipv4", "ruleString": "r1"})"},
    {"five next-hop groups with detail",
     {.actions = R"({"redirectNexthopGroups": ["g5", "g3", "g1", "g2", "g4"]})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Redirect Next-hop Group: g1,g2,g3,g4,g5
)",
     R"({"actions": {"redirectNexthopGroups": ["g1", "g2", "g3", "g4", "g5"]},
         "matchOption": "ipv4", "ruleString": "r1"})"},
    {"aggregation groups and tool interfaces on two lines",
     {.actions = R"({"tapAggRedirect": {"groups": ["b", "a"],
                                        "interfaces": ["Ethernet2", "Ethernet1"]}})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Redirect Aggregation Group: a,b
                Redirect Tool Interface: Ethernet1,Ethernet2
)",
     R"({"actions": {"tapAggRedirect": {"groups": ["a", "b"], "interfaces": ["Ethernet1",
         "Ethernet2"]}}, "matchOption": "ipv4", "ruleString": "r1"})"},
    {"tool interfaces alone",
     {.actions = R"({"tapAggRedirect": {"interfaces": ["Ethernet1"]}, "log": true})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Redirect Tool Interface: Ethernet1
                Log
)",
     R"({"actions": {"log": true, "tapAggRedirect": {"groups": [],
         "interfaces": ["Ethernet1"]}}, "matchOption": "ipv4", "ruleString": "r1"})"},
    {"the rule's own counter on the CPU",
     {.actions = R"({"drop": true, "count": {}})", .policyStatus = kRuleCounter},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Drop
                Count: 100 packets
)",
     R"({"actions": {"count": 100, "drop": true, "inputCounter": 100}, "matchOption": "ipv4",
         "ruleString": "r1"})"},
    {"a rule counter not reported yet",
     {.actions = R"({"count": {}})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Count: 0 packets
)",
     R"({"actions": {"count": 0, "inputCounter": 0}, "matchOption": "ipv4", "ruleString": "r1"})"},
    {"a named counter with bytes",
     {.actions = R"({"count": {"counter": "c1"}})",
      .policyStatus = kNamedCounter,
      .byteCountersSupported = true},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Count: c1: 40 packets 3000 bytes
)",
     R"({"actions": {"countNamed": {"c1": {"byteCount": 3000, "packetCount": 40}},
         "inputNamedCounters": {"c1": {"byteCount": 3000, "packetCount": 40}}},
         "matchOption": "ipv4", "ruleString": "r1"})"},
    {"a named counter without byte counters",
     {.actions = R"({"count": {"counter": "c1"}})", .policyStatus = kNamedCounter},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Count: c1: 40 packets
)",
     R"({"actions": {"countNamed": {"c1": {"packetCount": 40}},
         "inputNamedCounters": {"c1": {"packetCount": 40}}}, "matchOption": "ipv4",
         "ruleString": "r1"})"},
    {"a declared named counter without data",
     {.actions = R"({"count": {"counter": "c1"}})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Count: c1: N/A
)",
     R"({"actions": {}, "matchOption": "ipv4", "ruleString": "r1"})"},
    {"an undeclared named counter",
     {.actions = R"({"count": {"counter": "c9"}})"},
     {.leaveOutMatches = true},
     R"(    match r1 ipv4
       Actions: Count: c9 (counter 'c9' is inactive because it has not been declared)
)",
     R"({"actions": {"countNamed": {"c9": {"undefined": true}},
         "inputNamedCounters": {"c9": {"undefined": true}}}, "matchOption": "ipv4",
         "ruleString": "r1"})"},
    {"interfaces: the rule counter with output below it",
     {.actions = R"({"count": {}, "log": true})",
      .policyStatus = kRuleCounter,
      .variant = Variant::interface},
     {.leaveOutMatches = true, .variant = Variant::interface},
     R"(    match r1 ipv4
       Actions: Count: 100 packets (input)
                       N/A (output)
                Log
)",
     R"({"actions": {"count": 100, "inputCounter": 100, "log": true}, "matchOption": "ipv4",
         "ruleString": "r1"})"},
    {"interfaces: input only",
     {.actions = R"({"count": {}})", .policyStatus = kRuleCounter, .variant = Variant::interface},
     {.leaveOutMatches = true, .filterInputPolicies = true, .variant = Variant::interface},
     R"(    match r1 ipv4
       Actions: Count: 100 packets (input)
)",
     R"({"actions": {"count": 100, "inputCounter": 100}, "matchOption": "ipv4",
         "ruleString": "r1"})"},
    {"interfaces: a named counter with output under its figures",
     {.actions = R"({"count": {"counter": "c1"}})",
      .policyStatus = kNamedCounter,
      .byteCountersSupported = true,
      .variant = Variant::interface},
     {.leaveOutMatches = true, .variant = Variant::interface},
     R"(    match r1 ipv4
       Actions: Count: c1: 40 packets 3000 bytes (input)
                           N/A (output)
)",
     R"({"actions": {"countNamed": {"c1": {"byteCount": 3000, "packetCount": 40}},
         "inputNamedCounters": {"c1": {"byteCount": 3000, "packetCount": 40}}},
         "matchOption": "ipv4", "ruleString": "r1"})"},
    {"interfaces: a named counter, output only",
     {.actions = R"({"count": {"counter": "c1"}})",
      .policyStatus = kNamedCounter,
      .variant = Variant::interface},
     {.leaveOutMatches = true, .filterOutputPolicies = true, .variant = Variant::interface},
     R"(    match r1 ipv4
       Actions: Count: c1: N/A (output)
)",
     R"({"actions": {}, "matchOption": "ipv4", "ruleString": "r1"})"},
    {"matches are shown before the actions unless left out",
     {.match = R"({"ttls": ["64"]})", .actions = R"({"drop": true})"},
     {},
     R"(    match r1 ipv4
       TTL: 64
       Actions: Drop
)",
     R"({"actions": {"drop": true}, "matchOption": "ipv4", "matches": {"ttls": [{"high": 64,
         "low": 64}]}, "ruleString": "r1"})"},
};

TEST(ActionRendering, EveryActionMatchesItsGoldenTextAndJson) {
   for (auto const& golden : kGoldenActions) {
      SCOPED_TRACE(golden.name);
      auto const rendered = renderRulesOf(ruleState(golden.rule), golden.view);
      EXPECT_EQ(rendered.text, golden.text);
      EXPECT_EQ(rendered.rules, nlohmann::json::array({nlohmann::json::parse(golden.json)}))
          << rendered.rules.dump();
   }
}

}  // namespace
