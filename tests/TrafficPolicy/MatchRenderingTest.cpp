// Golden cases of rule rendering: one small rule each, its exact text and its JSON in the grouped
// form (revision 2) and, where it differs, the older form (revision 1). Rules stand at indent 4,
// so their criteria start at column 7.
#include <gtest/gtest.h>

#include "support/RenderedRules.h"

namespace {

using rendering_test::renderRulesOf;
using rendering_test::ruleState;
using rendering_test::ViewOptions;

struct GoldenRule {
   char const* name;
   char const* option;
   char const* match;
   bool detail;
   char const* text;
   char const* json;
   // Only where the older JSON form differs.
   char const* jsonRevision1 = nullptr;
};

GoldenRule const kGoldenRules[] = {
    {"prefixes stand in one column under the first", "ipv4",
     R"({"sources": ["192.168.0.0/16", "10.0.0.0/8"], "destinationPrefixSets": ["fs1"],
         "lengths": ["64-128"], "fragment": {"all": true}})",
     true, R"(    match r1 ipv4
       Source prefix: 10.0.0.0/8
                      192.168.0.0/16
       Destination prefix: field-set fs1 (Prefixes: 3, Except prefixes: 1)
       IP length: 64-128
       Fragment: all
)",
     R"({"matchOption": "ipv4", "matches": {"destExtPrefixSet": [{"name": "fs1",
         "numExceptPrefixes": 1, "numPrefixes": 3}], "destPrefixSets": ["fs1"],
         "fragment": {"matchAllFragments": true}, "ipLengths": [{"high": 128, "low": 64}],
         "srcPrefixes": ["10.0.0.0/8", "192.168.0.0/16"]}, "ruleString": "r1"})"},
    {"longest prefix match, sorted field sets, undefined ones noted, no counts outside detail",
     "ipv4", R"({"sourceLpmPrefixSets": ["zz", "fs1"], "destinationLpms": ["10.0.0.0/8"]})", false,
     R"(    match r1 ipv4
       Source prefix (longest prefix match): field-set fs1
                                             field-set zz (field-set 'zz' has not been defined)
       Destination prefix (longest prefix match): 10.0.0.0/8
)",
     R"({"matchOption": "ipv4", "matches": {"destLpmPrefixes": ["10.0.0.0/8"],
         "srcLpmPrefixSet": [{"name": "fs1", "numExceptPrefixes": 1, "numPrefixes": 3},
         {"name": "zz", "undefined": true}]}, "ruleString": "r1"})"},
    {"field sets are looked up per family", "ipv6",
     R"({"sourcePrefixSets": ["fs1", "v6set"], "destinationLpmPrefixSets": ["v6set"]})", true,
     R"(    match r1 ipv6
       Source prefix: field-set fs1 (field-set 'fs1' has not been defined)
                      field-set v6set (Prefixes: 2, Except prefixes: 0)
       Destination prefix (longest prefix match): field-set v6set (Prefixes: 2, Except prefixes: 0)
)",
     R"({"matchOption": "ipv6", "matches": {"destLpmPrefixSet": [{"name": "v6set",
         "numExceptPrefixes": 0, "numPrefixes": 2}], "srcExtPrefixSet": [{"name": "fs1",
         "undefined": true}, {"name": "v6set", "numExceptPrefixes": 0, "numPrefixes": 2}],
         "srcPrefixSets": ["fs1", "v6set"]}, "ruleString": "r1"})"},
    {"VLAN tags in order, VLAN field sets defined and not", "ipv4",
     R"({"vlanTags": [{"vlans": ["300", "100-200"]}, {"vlanFieldSets": ["nope", "guest"]}]})", true,
     R"(    match r1 ipv4
       802.1Q VLAN: field-set guest (VLANs: 10)
                    field-set nope (field-set 'nope' has not been defined)
       802.1Q VLAN: 100-200
                    300
)",
     R"({"matchOption": "ipv4",
         "matches": {"dot1qVlanTags": [{"dot1qVlanFieldSets": [{"name": "guest",
         "numVlans": 10}, {"name": "nope", "undefined": true}]}, {"dot1qVlans": [{"high": 200,
         "low": 100}, {"high": 300, "low": 300}]}]}, "ruleString": "r1"})"},
    {"protocols without sub-criteria stand in one column, names for single values", "ipv4",
     R"({"protocols": {"200": {}, "17": {}, "6": {}, "1-5": {}}})", true, R"(    match r1 ipv4
       Protocol: 1-5
                 tcp
                 udp
                 200
)",
     R"({"matchOption": "ipv4", "matches": {"protocols": [{"protocolRange": {"high": 5,
         "low": 1}}, {"protocolRange": {"high": 6, "low": 6}}, {"protocolRange": {"high": 17,
         "low": 17}}, {"protocolRange": {"high": 200, "low": 200}}]}, "ruleString": "r1"})"},
    {"ipv6 protocol names", "ipv6", R"({"protocols": {"58": {}, "1": {}}})", true,
     R"(    match r1 ipv6
       Protocol: 1
                 icmpv6
)",
     R"({"matchOption": "ipv6", "matches": {"protocols": [{"protocolRange": {"high": 1,
         "low": 1}}, {"protocolRange": {"high": 58, "low": 58}}]}, "ruleString": "r1"})"},
    {"one port switches every protocol to its own line", "ipv4",
     R"({"protocols": {"17": {}, "6": {"ports": [{"destinations": ["443", "1000-2000"]}]}}})", true,
     R"(    match r1 ipv4
       Protocol: tcp
          Destination port: 443
                            1000-2000
       Protocol: udp
)",
     R"({"matchOption": "ipv4",
         "matches": {"protocols": [{"ports": [{"destPorts": [{"high": 443, "low": 443},
         {"high": 2000, "low": 1000}]}], "protocolRange": {"high": 6, "low": 6}},
         {"protocolRange": {"high": 17, "low": 17}}]}, "ruleString": "r1"})",
     R"({"matchOption": "ipv4", "matches": {"protocols": [{"destPorts": [{"high": 443,
         "low": 443}, {"high": 2000, "low": 1000}], "protocolRange": {"high": 6, "low": 6}},
         {"protocolRange": {"high": 17, "low": 17}}]}, "ruleString": "r1"})"},
    {"TCP flags and port field sets under one protocol line", "ipv4",
     R"({"protocols": {"6": {
         "tcpFlags": [{"syn": true, "ack": false}, {"established": true}, {"initialSyn": true}],
         "ports": [{"sources": ["80"], "sourceFieldSets": ["web"]},
                   {"destinationFieldSets": ["nope", "web"]}]}}})",
     true, R"(    match r1 ipv4
       Protocol: tcp
          TCP flags: ack:0 syn:1
                     established
                     initial-syn
          Source port: 80
          Source port: field-set web (Ports: 3)
          Destination port: field-set nope (field-set 'nope' has not been defined)
                            field-set web (Ports: 3)
)",
     R"({"matchOption": "ipv4",
         "matches": {"protocols": [{"ports": [{"srcExtL4PortFieldSet": [{"name": "web",
         "numPorts": 3}], "srcL4PortFieldSets": ["web"], "srcPorts": [{"high": 80, "low": 80}]},
         {"destExtL4PortFieldSet": [{"name": "nope", "undefined": true}, {"name": "web",
         "numPorts": 3}], "destL4PortFieldSets": ["nope", "web"]}], "protocolRange": {"high": 6,
         "low": 6}, "tcpFlagGroups": [{"tcpFlags": [{"name": "ack", "value": false},
         {"name": "syn", "value": true}]}, {"tcpFlags": [{"name": "established",
         "value": true}]}, {"tcpFlags": [{"name": "initial-syn", "value": true}]}]}]},
         "ruleString": "r1"})",
     R"({"matchOption": "ipv4",
         "matches": {"protocols": [{"destExtL4PortFieldSet": [{"name": "nope",
         "undefined": true}, {"name": "web", "numPorts": 3}], "destL4PortFieldSets": ["nope",
         "web"], "protocolRange": {"high": 6, "low": 6},
         "srcExtL4PortFieldSet": [{"name": "web", "numPorts": 3}],
         "srcL4PortFieldSets": ["web"], "srcPorts": [{"high": 80, "low": 80}],
         "tcpFlags": [{"name": "ack", "value": false}, {"name": "syn", "value": true},
         {"name": "established", "value": true}, {"name": "initial-syn", "value": true}]}]},
         "ruleString": "r1"})"},
    {"port field sets without counts outside detail", "ipv4",
     R"({"protocols": {"17": {"ports": [{"sourceFieldSets": ["web"]}]}}})", false,
     R"(    match r1 ipv4
       Protocol: udp
          Source port: field-set web
)",
     R"({"matchOption": "ipv4",
         "matches": {"protocols": [{"ports": [{"srcExtL4PortFieldSet": [{"name": "web",
         "numPorts": 3}], "srcL4PortFieldSets": ["web"]}], "protocolRange": {"high": 17,
         "low": 17}}]}, "ruleString": "r1"})",
     R"({"matchOption": "ipv4", "matches": {"protocols": [{"protocolRange": {"high": 17,
         "low": 17}, "srcExtL4PortFieldSet": [{"name": "web", "numPorts": 3}],
         "srcL4PortFieldSets": ["web"]}]}, "ruleString": "r1"})"},
    {"DSCP names for single values, numbers for ranges; TTL", "ipv4",
     R"({"dscps": ["7", "46", "10-12"], "ttls": ["64", "1-2"]})", true, R"(    match r1 ipv4
       DSCP: 7
             10-12
             ef
       TTL: 1-2
            64
)",
     R"({"matchOption": "ipv4", "matches": {"dscps": [{"high": 7, "low": 7}, {"high": 12,
         "low": 10}, {"high": 46, "low": 46}], "ttls": [{"high": 2, "low": 1}, {"high": 64,
         "low": 64}]}, "ruleString": "r1"})"},
    {"fragment offsets", "ipv4", R"({"fragment": {"offsets": ["100-200", "0"]}})", true,
     R"(    match r1 ipv4
       Fragment: offset: 0
                         100-200
)",
     R"({"matchOption": "ipv4", "matches": {"fragment": {"fragmentOffsets": [{"high": 0,
         "low": 0}, {"high": 200, "low": 100}]}}, "ruleString": "r1"})"},
    {"inner header two blanks in, field sets of its own family", "ipv4",
     R"({"destinations": ["10.0.0.0/8"], "encapsulation": {"type": "gtpv1", "inner": {
         "addressFamily": "ipv6", "sources": ["2001:db8::/32"],
         "destinationPrefixSets": ["v6set", "fs1"]}}})",
     true, R"(    match r1 ipv4
       Destination prefix: 10.0.0.0/8
       Encapsulation GTPv1 inner header IPv6
         Source prefix: 2001:db8::/32
         Destination prefix: field-set fs1 (field-set 'fs1' has not been defined)
                             field-set v6set (Prefixes: 2, Except prefixes: 0)
)",
     R"({"matchOption": "ipv4", "matches": {"destPrefixes": ["10.0.0.0/8"],
         "encapsulation": {"encapsulationType": "gtpv1"},
         "innerMatch": {"addressFamily": "ipv6", "destExtPrefixSet": [{"name": "fs1",
         "undefined": true}, {"name": "v6set", "numExceptPrefixes": 0, "numPrefixes": 2}],
         "srcPrefixes": ["2001:db8::/32"]}}, "ruleString": "r1"})"},
    {"inner IPv4 header with source field sets", "ipv4",
     R"({"encapsulation": {"type": "gtpv1", "inner": {"addressFamily": "ipv4",
         "sourcePrefixSets": ["fs1"], "destinations": ["10.0.0.0/8", "10.2.0.0/16"]}}})",
     true, R"(    match r1 ipv4
       Encapsulation GTPv1 inner header IPv4
         Source prefix: field-set fs1 (Prefixes: 3, Except prefixes: 1)
         Destination prefix: 10.0.0.0/8
                             10.2.0.0/16
)",
     R"({"matchOption": "ipv4", "matches": {"encapsulation": {"encapsulationType": "gtpv1"},
         "innerMatch": {"addressFamily": "ipv4", "destPrefixes": ["10.0.0.0/8", "10.2.0.0/16"],
         "srcExtPrefixSet": [{"name": "fs1", "numExceptPrefixes": 1, "numPrefixes": 3}]}},
         "ruleString": "r1"})"},
};

TEST(MatchRendering, EveryCriterionMatchesItsGoldenTextAndJson) {
   for (auto const& golden : kGoldenRules) {
      auto const state = ruleState({.option = golden.option, .match = golden.match});
      for (std::uint32_t revision : {1u, 2u}) {
         SCOPED_TRACE(testing::Message() << golden.name << ", revision " << revision);
         auto const rendered =
             renderRulesOf(state, ViewOptions{.detail = golden.detail, .revision = revision});
         EXPECT_EQ(rendered.text, golden.text);
         auto const* json =
             revision == 1 && golden.jsonRevision1 ? golden.jsonRevision1 : golden.json;
         EXPECT_EQ(rendered.rules, nlohmann::json::array({nlohmann::json::parse(json)}))
             << rendered.rules.dump();
      }
   }
}

}  // namespace
