// The catalogue of bad state files: each row is a file and the one line the loader must answer
// with, pointer and message exact, whether the file is read whole or cut into the finest pieces.
// Rows whose JSON is well formed are first read by an independent parser, so that a row meant to
// test a content check cannot pass by being broken JSON.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "PieceLoader.h"
#include "StateLoader/Loader.h"
#include "support/CapturedOutput.h"
#include "support/TempStateFiles.h"

namespace {

using testing_support::TempStateFiles;

struct RejectedCase {
   std::string_view name;
   std::string text;
   // What follows "FILE: " in the reason.
   std::string expected;
};

// Wraps rule contents into a policy "p" with one rule "r", where most rule checks happen.
std::string rule(std::string_view body) {
   return R"({"trafficPolicies": {"p": {"rules": {"r": )" + std::string(body) + "}}}}";
}

// Wraps a match into rule "r" of policy "p" for the ipv4 match option.
std::string ipv4Match(std::string_view match) {
   return rule(R"({"sequence": 10, "match": {"ipv4": )" + std::string(match) + "}}");
}

// Wraps the status of policy "p" on the CPU.
std::string cpuStatus(std::string_view policy) {
   return R"({"status": {"cpu": {"policies": {"p": )" + std::string(policy) + "}}}}";
}

constexpr std::string_view kMatchPointer = "/trafficPolicies/p/rules/r/match/ipv4";

std::string atMatch(std::string_view rest) {
   return std::string(kMatchPointer) + std::string(rest);
}

// Content faults: well-formed JSON whose content the loader refuses.
std::vector<RejectedCase> contentCases() {
   return {
       {"top level not an object", "[]", "expected an object, found a list"},
       {"unknown key with a suggestion", R"({"trafficPolices": {}})",
        R"(/trafficPolices: unknown key "trafficPolices" (did you mean "trafficPolicies"?))"},
       {"unknown key too far from any", R"({"trafficPolicy": {}})",
        R"(/trafficPolicy: unknown key "trafficPolicy")"},
       {"unknown key in a different case", R"({"vrfs": {"CpuPolicy": {}}})",
        R"(/vrfs/CpuPolicy: unknown key "CpuPolicy" (did you mean "cpuPolicy"?))"},
       {"unknown key without a suggestion", ipv4Match(R"({"colour": "red"})"),
        atMatch(R"(/colour: unknown key "colour")")},
       {"duplicate section", R"({"vrfs": {}, "vrfs": {}})", R"(/vrfs: duplicate key "vrfs")"},
       {"duplicate policy name", R"({"trafficPolicies": {"p": {}, "p": {}}})",
        R"(/trafficPolicies/p: duplicate key "p")"},
       {"duplicate rule name",
        R"({"trafficPolicies": {"p": {"rules": {"r": {"sequence": 1}, "r": {"sequence": 2}}}}})",
        R"(/trafficPolicies/p/rules/r: duplicate key "r")"},
       {"duplicate sequence number",
        R"({"trafficPolicies": {"p": {"rules": {"a": {"sequence": 5}, "b": {"sequence": 5}}}}})",
        R"(/trafficPolicies/p/rules/b/sequence: sequence number 5 is already used by rule "a")"},
       {"missing sequence number", rule(R"({"actions": {"drop": true}})"),
        R"(/trafficPolicies/p/rules/r: missing key "sequence")"},
       {"list where a list of names belongs is a string", R"({"vrfs": {"names": "default"}})",
        "/vrfs/names: expected a list, found a string"},
       {"number where a name belongs", R"({"interfaces": {"input": {"Ethernet1": 7}}})",
        "/interfaces/input/Ethernet1: expected a string, found a number"},
       {"pointer escapes a slash in a key", R"({"interfaces": {"input": {"Ethernet2/1": null}}})",
        "/interfaces/input/Ethernet2~11: expected a string, found null"},
       {"pointer escapes a tilde in a key", R"({"trafficPolicies": {"a~b": []}})",
        "/trafficPolicies/a~0b: expected an object, found a list"},
       {"newline in a policy name stays on one line", R"({"trafficPolicies": {"a\nb": {}}})",
        R"(/trafficPolicies/a\nb: control character 10 at position 2 in policy name)"},
       {"very long unknown key is cut short", R"({")" + std::string(100000, 'k') + R"(": {}})",
        "/" + std::string(200, 'k') + "...: unknown key \"" + std::string(200, 'k') + "...\""},
       {"NUL in a key is escaped", R"({"trafficPolicies": {"p": {"na\u0000me": 1}}})",
        R"(/trafficPolicies/p/na\u0000me: unknown key "na\u0000me")"},
       {"C1 control in a policy name", R"({"trafficPolicies": {"a\u009b31m": {}}})",
        R"(/trafficPolicies/a\u009b31m: control character U+009B at position 2 in policy name)"},
       {"direction control in a rule name",
        rule(R"({"sequence": 1}, "\u202egnp": {"sequence": 2})"),
        R"(/trafficPolicies/p/rules/\u202egnp: direction control U+202E at position 1 in rule name)"},
       {"no-break space in an interface name",
        R"({"interfaces": {"input": {"Ethernet\u00a01": "p"}}})",
        R"(/interfaces/input/Ethernet\u00a01: blank U+00A0 at position 9 in interface name)"},
       {"line separator in an error text",
        cpuStatus(R"({"interfaces": {"Ethernet1": {"ipv4": {"state": "failed", )"
                  R"("error": "TCAM\u2028full"}}}})"),
        "/status/cpu/policies/p/interfaces/Ethernet1/ipv4/error: line separator U+2028 at "
        "position 5 in error text"},
       {"blank in an interface name", R"({"interfaces": {"input": {"Ethernet 1": "p"}}})",
        "/interfaces/input/Ethernet 1: blank at position 9 in interface name"},
       {"empty policy name", R"({"interfaces": {"output": {"Ethernet1": ""}}})",
        "/interfaces/output/Ethernet1: empty policy name"},
       {"control character in an error text",
        cpuStatus(R"({"interfaces": {"Ethernet1": {"ipv4": {"state": "failed", )"
                  R"("error": "TCAM\nfull"}}}})"),
        "/status/cpu/policies/p/interfaces/Ethernet1/ipv4/error: control character 10 at "
        "position 5 in error text"},
       {"IPv4 prefix with host bits set",
        R"({"fieldSets": {"ipv4Prefix": {"s": {"prefixes": ["10.0.0.0/8", "10.0.0.1/8"]}}}})",
        "/fieldSets/ipv4Prefix/s/prefixes/1: host bits set in \"10.0.0.1/8\" (did you mean "
        "10.0.0.0/8?)"},
       {"IPv4 prefix length out of range", ipv4Match(R"({"sources": ["10.0.0.0/33"]})"),
        atMatch("/sources/0: prefix length 33 out of range (0-32) in \"10.0.0.0/33\"")},
       {"IPv6 prefix with a bad group",
        R"({"fieldSets": {"ipv6Prefix": {"s": {"exceptPrefixes": ["2001:db8::g/64"]}}}})",
        "/fieldSets/ipv6Prefix/s/exceptPrefixes/0: invalid character 'g' in \"2001:db8::g\""},
       {"null prefix in a set", R"({"fieldSets": {"ipv4Prefix": {"s": {"prefixes": [""]}}}})",
        "/fieldSets/ipv4Prefix/s/prefixes/0: empty prefix"},
       {"IPv6 prefix in an IPv4 set",
        R"({"fieldSets": {"ipv4Prefix": {"s": {"prefixes": ["2001:db8::/32"]}}}})",
        "/fieldSets/ipv4Prefix/s/prefixes/0: \"2001:db8::/32\" is not an IPv4 prefix"},
       {"IPv4 prefix in an ipv6 match",
        rule(R"({"sequence": 1, "match": {"ipv6": {"destinations": ["10.0.0.0/8"]}}})"),
        "/trafficPolicies/p/rules/r/match/ipv6/destinations/0: \"10.0.0.0/8\" is not an IPv6 "
        "prefix"},
       {"prefix listed twice", ipv4Match(R"({"sources": ["10.0.0.0/8", "10.0.0.0/8"]})"),
        atMatch("/sources/1: \"10.0.0.0/8\" is already listed")},
       {"range with its low end above its high end",
        R"({"fieldSets": {"l4Port": {"web": {"ports": ["2000-1000"]}}}})",
        "/fieldSets/l4Port/web/ports/0: range \"2000-1000\" has its low end above its high end"},
       {"port above 65535", R"({"fieldSets": {"l4Port": {"web": {"ports": ["80", "70000"]}}}})",
        "/fieldSets/l4Port/web/ports/1: port 70000 is out of range (0-65535)"},
       {"range that is not a number",
        ipv4Match(R"({"protocols": {"6": {"ports": [{"destinations": ["http"]}]}}})"),
        atMatch("/protocols/6/ports/0/destinations/0: \"http\" is not a number or a range of "
                "numbers such as \"1000-2000\"")},
       {"range written as a number", ipv4Match(R"({"dscps": [46]})"),
        atMatch("/dscps/0: expected a string, found a number")},
       {"VLAN above 4095", R"({"fieldSets": {"vlan": {"v": {"vlans": ["4000-4096"]}}}})",
        "/fieldSets/vlan/v/vlans/0: VLAN 4096 is out of range (1-4095)"},
       {"VLAN 0", ipv4Match(R"({"vlanTags": [{"vlans": ["0"]}]})"),
        atMatch("/vlanTags/0/vlans/0: VLAN 0 is out of range (1-4095)")},
       {"DSCP above 63 in a match", ipv4Match(R"({"dscps": ["10", "64"]})"),
        atMatch("/dscps/1: DSCP value 64 is out of range (0-63)")},
       {"DSCP above 63 in an action", rule(R"({"sequence": 1, "actions": {"setDscp": 64}})"),
        "/trafficPolicies/p/rules/r/actions/setDscp: expected a whole number from 0 to 63, "
        "found 64"},
       {"protocol above 255", ipv4Match(R"({"protocols": {"256": {}}})"),
        atMatch("/protocols/256: protocol 256 is out of range (0-255)")},
       {"protocol listed twice", ipv4Match(R"({"protocols": {"6": {}, "6-6": {}}})"),
        atMatch("/protocols/6-6: protocol \"6-6\" is already listed")},
       {"negative number",
        R"({"status": {"interfaceInput": {"policies": {"p": {"ruleCounters": )"
        R"({"r": {"instanceId": 1, "packets": -1}}}}}}})",
        "/status/interfaceInput/policies/p/ruleCounters/r/packets: expected a whole number from "
        "0 to 18446744073709551615, found -1"},
       {"number with a fraction",
        cpuStatus(R"({"ruleCounters": {"r": {"instanceId": 1.5, "packets": 1}}})"),
        "/status/cpu/policies/p/ruleCounters/r/instanceId: expected a whole number from 0 to "
        "18446744073709551615, found 1.5"},
       {"whole number written with an exponent",
        rule(R"({"sequence": 1, "actions": {"setTc": 1e0}})"),
        "/trafficPolicies/p/rules/r/actions/setTc: expected a whole number from 0 to 7, found 1 "
        "written with a fraction or an exponent"},
       {"flag where a list belongs", ipv4Match(R"({"sources": true})"),
        atMatch("/sources: expected a list, found true")},
       {"sequence number above 32 bits", rule(R"({"sequence": 4294967296})"),
        "/trafficPolicies/p/rules/r/sequence: expected a whole number from 0 to 4294967295, "
        "found 4294967296"},
       {"two source kinds in one rule",
        ipv4Match(R"({"sources": ["10.0.0.0/8"], "sourcePrefixSets": ["s"]})"),
        atMatch(": \"sources\" and \"sourcePrefixSets\" exclude each other: a rule matches its "
                "source addresses one way only")},
       {"two destination kinds in one rule",
        ipv4Match(R"({"destinationLpmPrefixSets": ["s"], "destinationLpms": ["10.0.0.0/8"]})"),
        atMatch(": \"destinationLpms\" and \"destinationLpmPrefixSets\" exclude each other: a "
                "rule matches its destination addresses one way only")},
       {"longest-prefix match in an inner header",
        ipv4Match(R"({"encapsulation": {"type": "gtpv1", "inner": )"
                  R"({"addressFamily": "ipv4", "sourceLpms": ["10.0.0.0/8"]}}})"),
        atMatch("/encapsulation/inner/sourceLpms: longest-prefix match is not possible in an "
                "inner header")},
       {"two source kinds in an inner header",
        ipv4Match(R"({"encapsulation": {"type": "gtpv1", "inner": {"addressFamily": "ipv6", )"
                  R"("sources": ["2001:db8::/32"], "sourcePrefixSets": ["s"]}}})"),
        atMatch("/encapsulation/inner: \"sources\" and \"sourcePrefixSets\" exclude each other: "
                "a rule matches its source addresses one way only")},
       {"inner prefix of the other family",
        ipv4Match(R"({"encapsulation": {"type": "gtpv1", "inner": )"
                  R"({"destinations": ["10.0.0.0/8"], "addressFamily": "ipv6"}}})"),
        atMatch("/encapsulation/inner/destinations/0: \"10.0.0.0/8\" is not an IPv6 prefix")},
       {"inner header without its family",
        ipv4Match(R"({"encapsulation": {"type": "gtpv1", "inner": {"sources": []}}})"),
        atMatch("/encapsulation/inner: missing key \"addressFamily\"")},
       {"unknown encapsulation",
        ipv4Match(R"({"encapsulation": {"type": "vxlan", "inner": {"addressFamily": "ipv4"}}})"),
        atMatch("/encapsulation/type: unknown encapsulation type \"vxlan\"; expected \"gtpv1\"")},
       {"VLAN tag with VLANs and field sets",
        ipv4Match(R"({"vlanTags": [{"vlans": ["10"], "vlanFieldSets": ["v"]}]})"),
        atMatch("/vlanTags/0: \"vlans\" and \"vlanFieldSets\" exclude each other: a VLAN tag "
                "holds one or the other")},
       {"empty VLAN tag", ipv4Match(R"({"vlanTags": [{"vlans": ["10"]}, {}]})"),
        atMatch("/vlanTags/1: a VLAN tag needs \"vlans\" or \"vlanFieldSets\"")},
       {"empty TCP flag group", ipv4Match(R"({"protocols": {"6": {"tcpFlags": [{}]}}})"),
        atMatch("/protocols/6/tcpFlags/0: a TCP flag group needs at least one flag")},
       {"initial SYN with another flag",
        ipv4Match(R"({"protocols": {"6": {"tcpFlags": [{"initialSyn": true, "ack": false}]}}})"),
        atMatch("/protocols/6/tcpFlags/0: \"initialSyn\" is a connection state and must be "
                "alone in its flag group")},
       {"established set to false",
        ipv4Match(R"({"protocols": {"6": {"tcpFlags": [{"established": false}]}}})"),
        atMatch("/protocols/6/tcpFlags/0: \"established\" can only be true")},
       {"unknown TCP flag with a suggestion",
        ipv4Match(R"({"protocols": {"6": {"tcpFlags": [{"synn": true}]}}})"),
        atMatch("/protocols/6/tcpFlags/0/synn: unknown key \"synn\" (did you mean \"syn\"?)")},
       {"TCP flags under another protocol",
        ipv4Match(R"({"protocols": {"17": {"tcpFlags": [{"syn": true}]}}})"),
        atMatch("/protocols/17/tcpFlags: TCP flags can only be matched under protocol \"6\"")},
       {"fragment with all and offsets",
        ipv4Match(R"({"fragment": {"all": true, "offsets": ["0-10"]}})"),
        atMatch("/fragment: \"all\" and \"offsets\" exclude each other")},
       {"fragment with neither all nor offsets", ipv4Match(R"({"fragment": {"all": false}})"),
        atMatch("/fragment: a fragment match needs \"all\": true or \"offsets\"")},
       {"TCP flag group listed twice",
        ipv4Match(R"({"protocols": {"6": {"tcpFlags": [{"syn": true}, {"syn": true}]}}})"),
        atMatch("/protocols/6/tcpFlags/1: this TCP flag group is already listed")},
       {"fragment offset above 8191", ipv4Match(R"({"fragment": {"offsets": ["8192"]}})"),
        atMatch("/fragment/offsets/0: fragment offset 8192 is out of range (0-8191)")},
       {"police without a unit", rule(R"({"sequence": 1, "actions": {"police": {"rate": 1000}}})"),
        "/trafficPolicies/p/rules/r/actions/police: missing key \"unit\""},
       {"unknown rate unit",
        rule(R"({"sequence": 1, "actions": {"police": {"rate": 1, "unit": "mbit"}}})"),
        "/trafficPolicies/p/rules/r/actions/police/unit: unknown rate unit \"mbit\"; expected "
        "\"bps\", \"kbps\", \"mbps\", \"gbps\" or \"pps\""},
       {"redirect to no next-hop group",
        rule(R"({"sequence": 1, "actions": {"redirectNexthopGroups": []}})"),
        "/trafficPolicies/p/rules/r/actions/redirectNexthopGroups: a redirect needs at least one "
        "next-hop group"},
       {"tap-aggregation redirect to nothing",
        rule(R"({"sequence": 1, "actions": {"tapAggRedirect": {"groups": []}}})"),
        "/trafficPolicies/p/rules/r/actions/tapAggRedirect: a tap-aggregation redirect needs at "
        "least one group or interface"},
       {"rule status with two match options",
        R"({"status": {"interfaceOutput": {"policies": {"p": {"rules": {"r": ["ipv4", "ipv6"]}}}}}})",
        "/status/interfaceOutput/policies/p/rules/r: a rule is processed for one match option at "
        "most, found 2"},
       {"unknown installation state",
        cpuStatus(R"({"interfaces": {"Ethernet1": {"ipv4": {"state": "installed"}}}})"),
        "/status/cpu/policies/p/interfaces/Ethernet1/ipv4/state: unknown installation state "
        "\"installed\"; expected \"pending\", \"programmed\" or \"failed\""},
       {"duplicate interface in a status",
        cpuStatus(R"({"interfaces": {"Ethernet1": {}, "Ethernet1": {}}})"),
        "/status/cpu/policies/p/interfaces/Ethernet1: duplicate key \"Ethernet1\""},
       {"counter without its instance id", cpuStatus(R"({"namedCounters": {"c": {"packets": 1}}})"),
        "/status/cpu/policies/p/namedCounters/c: missing key \"instanceId\""},
       {"per-interface counts of a rule counter",
        cpuStatus(R"({"ruleCounters": {"r": {"instanceId": 1, "packets": 1, "interfaces": {}}}})"),
        "/status/cpu/policies/p/ruleCounters/r/interfaces: unknown key \"interfaces\""},
   };
}

// Text faults, found by the scanner that runs when the JSON parser refuses a file.
std::vector<RejectedCase> syntaxCases() {
   std::string const tooDeep(100000, '[');
   std::string deepPointer;
   for (int level = 0; level < 32; ++level) {
      deepPointer += "/0";
   }
   return {
       {"white space only", "  \n ",
        "expected a value, found the end of the file (line 2, column 2)"},
       {"truncated in an object", R"({"trafficPolicies": {"p": {"rules": {)",
        "/trafficPolicies/p/rules: expected a key in double quotes, found the end of the file "
        "(line 1, column 38)"},
       {"truncated in a string", R"({"vrfs": {"names": ["def)",
        "/vrfs/names/0: the file ends inside a string (line 1, column 25)"},
       {"truncated after a member", "{\"vrfs\": {}\n",
        "expected ',' or '}', found the end of the file (line 2, column 1)"},
       {"comma before a closing bracket", R"({"vrfs": {"names": ["a",]}})",
        "/vrfs/names/1: expected a value, found ']' (line 1, column 25)"},
       {"missing colon", R"({"vrfs" {}})",
        "expected ':' after the key, found '{' (line 1, column 9)"},
       {"text after the document", "{}\n}", "unexpected '}' after the document (line 2, column 1)"},
       {"bare word", R"({"hardware": {"sharedMemoryCounters": yes}})",
        "/hardware/sharedMemoryCounters: expected a value, found 'y' (line 1, column 39)"},
       {"invalid UTF-8 in a value", "{\"vrfs\": {\"names\": [\"bl\xffue\"]}}",
        "/vrfs/names/0: invalid UTF-8 byte 0xff in a string (line 1, column 24)"},
       {"invalid UTF-8 in a key", "{\"trafficPolicies\": {\"p\xc3\": {}}}",
        "/trafficPolicies: invalid UTF-8 byte 0xc3 in a key (line 1, column 24)"},
       {"overlong UTF-8 form", "{\"vrfs\": {\"names\": [\"\xc0\xaf\"]}}",
        "/vrfs/names/0: invalid UTF-8 byte 0xc0 in a string (line 1, column 22)"},
       {"UTF-8 surrogate", "[\"\xed\xa0\x80\"]",
        "/0: invalid UTF-8 byte 0xed in a string (line 1, column 3)"},
       {"control character in a string", "{\"vrfs\": {\"names\": [\"a\tb\"]}}",
        "/vrfs/names/0: control character 0x09 in a string; write it as an escape (line 1, "
        "column 23)"},
       {"lone surrogate escape", R"({"vrfs": {"names": ["\udc00"]}})",
        "/vrfs/names/0: lone low surrogate in a string (line 1, column 22)"},
       {"byte-order mark", "\xef\xbb\xbf{}",
        "the file starts with a byte-order mark, which JSON does not allow (line 1, column 1)"},
       {"number above 2^64-1",
        cpuStatus(R"({"ruleCounters": {"r": {"instanceId": 18446744073709551616, "packets": 1}}})"),
        "/status/cpu/policies/p/ruleCounters/r/instanceId: number 18446744073709551616 is larger "
        "than 18446744073709551615 (line 1, column 77)"},
       {"number with a leading zero", R"({"hardware": {"x": 007}})",
        "/hardware/x: a number may not start with 0 followed by more digits (line 1, column 20)"},
       {"nesting deeper than any state", tooDeep,
        deepPointer + ": nesting deeper than 32 levels (line 1, column 33)"},
   };
}

// Every object of more than a byte read member by member, every member parsed on its own.
constexpr StateLoader::PieceLimits kFinestPieces{1, 1};

void expectRejected(std::vector<RejectedCase> const& cases, bool wellFormed) {
   TempStateFiles const files;
   for (RejectedCase const& row : cases) {
      auto const path = files.write("state.json", row.text);
      if (wellFormed) {
         testing_support::parseJson(row.text);
      }
      for (auto const& limits : {StateLoader::PieceLimits{}, kFinestPieces}) {
         auto const loaded = StateLoader::loadState(path, limits);
         if (loaded) {
            ADD_FAILURE() << row.name << ": loaded";
            continue;
         }
         EXPECT_EQ(loaded.reason(), path + ": " + row.expected)
             << row.name << (limits.piece == 1 ? " (finest pieces)" : "");
      }
   }
}

TEST(RejectedStates, ContentFaultsNameThePointerAndTheProblem) {
   expectRejected(contentCases(), true);
}

TEST(RejectedStates, SyntaxFaultsNameThePointerLineAndColumn) {
   expectRejected(syntaxCases(), false);
}

// The scanner must find a fault wherever the parser does: a cut anywhere in a real state gives a
// located message, never the parser's bare one.
TEST(RejectedStates, EveryCutOfTheLabStateIsLocated) {
   constexpr std::size_t kStep = 13;
   TempStateFiles const files;
   auto const lab = testing_support::readFile(std::filesystem::path(EXAMPLES_DIR) / "lab.json");
   auto const end = lab.rfind('}');
   for (std::size_t cut = 0; cut < end; cut += kStep) {
      auto const path = files.write("cut.json", std::string_view(lab).substr(0, cut));
      auto const loaded = StateLoader::loadState(path);
      ASSERT_FALSE(loaded) << "cut at " << cut;
      EXPECT_NE(loaded.reason().find(cut == 0 ? "the file is empty" : "(line "), std::string::npos)
          << "cut at " << cut << ": " << loaded.reason();
   }
}

// Policies are read by several threads, each stopping at its first fault; the file must still be
// refused for the first problem in document order, whether a policy's own fault or a name given
// twice, wherever the threads happen to be.
TEST(RejectedStates, ManyPoliciesAreRefusedForTheirFirstProblem) {
   constexpr int kPolicies = 400;
   // Broken in every file: a late fault that any earlier problem must win over.
   constexpr int kAlwaysBroken = kPolicies - 5;
   struct OrderCase {
      std::string_view name;
      int brokenPolicy;  // its rules are not an object
      int repeatedAt;    // where "p0" is given a second time
      std::string expected;
   };
   OrderCase const cases[] = {
       {"early fault before a late one", 10, kPolicies,
        "/trafficPolicies/p10/rules: expected an object, found a number"},
       {"the earlier of two late faults", 390, kPolicies,
        "/trafficPolicies/p390/rules: expected an object, found a number"},
       {"repeated name before a fault", 300, 200, R"(/trafficPolicies/p0: duplicate key "p0")"},
       {"fault before a repeated name", 150, 350,
        "/trafficPolicies/p150/rules: expected an object, found a number"},
   };
   TempStateFiles const files;
   for (OrderCase const& row : cases) {
      std::string text = R"({"trafficPolicies": {)";
      for (int policy = 0; policy < kPolicies; ++policy) {
         auto const name = policy == row.repeatedAt ? 0 : policy;
         text += (policy ? ", \"p" : "\"p") + std::to_string(name) + "\": ";
         text += policy == row.brokenPolicy || policy == kAlwaysBroken ? R"({"rules": 1})" : "{}";
      }
      text += "}}";
      testing_support::parseJson(text);
      auto const path = files.write("state.json", text);
      auto const loaded = StateLoader::loadState(path);
      ASSERT_FALSE(loaded) << row.name;
      EXPECT_EQ(loaded.reason(), path + ": " + row.expected) << row.name;
   }
}

// A large file's pages are let go as its rules are read. A fault found late is still told as for
// a file read whole, the text around it read again from the file: a content fault when the text
// is well formed, else the fault of the text, even one after the content fault.
TEST(RejectedStates, LateFaultsOfALargeFileAreToldAsForAFileReadWhole) {
   std::string rules;
   for (int index = 0; index < 20000; ++index) {
      rules +=
          "\"r" + std::to_string(index) + "\": {\"sequence\": " + std::to_string(index + 1) + "}, ";
   }
   auto const withEnd = [&rules](std::string_view end) {
      return R"({"trafficPolicies": {"p": {"rules": {)" + rules +
             R"("late": {"sequence": "x"}}}})" + std::string(end);
   };
   auto const textFault = withEnd("]");
   std::vector<RejectedCase> const cases = {
       {"content fault", withEnd("}"),
        "/trafficPolicies/p/rules/late/sequence: expected a whole number from 0 to 4294967295, "
        "found a string"},
       {"text fault after a content fault", textFault,
        "expected ',' or '}', found ']' (line 1, column " + std::to_string(textFault.size()) + ")"},
   };
   expectRejected(cases, false);
}

TEST(RejectedStates, FileProblemsNameTheFile) {
   TempStateFiles const files;
   struct FileCase {
      std::string_view name;
      std::string path;
      std::string expected;
   };
   auto const missing = (files.folder() / "missing.json").string();
   auto const folder = files.folder().string();
   auto const empty = files.write("empty.json", "");
   // Sparse: refused by its size, before a byte of it is read.
   auto const huge = files.write("huge.json", "{}");
   std::filesystem::resize_file(huge, std::uintmax_t{1} << 32);
   FileCase const cases[] = {
       {"missing file", missing, missing + ": cannot open: No such file or directory"},
       {"directory", folder, folder + ": is a directory, not a state file"},
       {"empty file", empty, empty + ": the file is empty"},
       {"file above the parser's limit", huge,
        huge + ": the file is larger than 4294967295 bytes, the most the parser can take"},
   };
   for (FileCase const& row : cases) {
      auto const loaded = StateLoader::loadState(row.path);
      ASSERT_FALSE(loaded) << row.name;
      EXPECT_EQ(loaded.reason(), row.expected) << row.name;
   }
}

}  // namespace
