// The command grammar: what each accepted command line asks for, and the message of each kind of
// mistake (ambiguous, missing, unknown and extra words, bad values, a bad output filter).
#include <gtest/gtest.h>

#include "support/Words.h"
#include "tpcli/CommandGrammar.h"

namespace tpcli {
namespace {

using tpcli_test::wordsOf;

Quoll::IpGenPrefix prefix(std::string_view text) {
   return Quoll::IpGenPrefix::parse(text).value();
}

struct Accepted {
   std::string line;
   ParsedCommand expected;
};

TEST(CommandGrammarTest, AcceptsEveryFormWithAbbreviatedKeywords) {
   using D = Direction;
   using V = PolicyView;
   Accepted const rows[] = {
       {"show traffic-policy interface", {ShowRequest{InterfaceRequest{}}}},
       {"sh traffic-policy int det", {ShowRequest{InterfaceRequest{"", D::both, V::detail}}}},
       {"s t i", {ShowRequest{InterfaceRequest{}}}},
       {"show traffic-policy interface in", {ShowRequest{InterfaceRequest{"", D::input}}}},
       {"show traffic-policy interface o c",
        {ShowRequest{InterfaceRequest{"", D::output, V::counters}}}},
       {"show traffic-policy interface e", {ShowRequest{InterfaceRequest{"", D::both, V::errors}}}},
       {"show traffic-policy interface s",
        {ShowRequest{InterfaceRequest{"", D::both, V::summary}}}},
       {"show traffic-policy policy edge-in interface output summary",
        {ShowRequest{InterfaceRequest{"edge-in", D::output, V::summary}}}},
       {"show traffic-policy policy int interface", {ShowRequest{InterfaceRequest{"int"}}}},
       {"show traffic-policy cpu", {ShowRequest{CpuRequest{}}}},
       {"show traffic-policy p cp-in c c", {ShowRequest{CpuRequest{"cp-in", V::counters}}}},
       {"show traffic-policy field-set ipv4 prefix", {ShowRequest{PrefixFieldSetRequest{}}}},
       {"show traffic-policy field-set ipv6 p office",
        {ShowRequest{PrefixFieldSetRequest{false, "office"}}}},
       {"show traffic-policy fi ipv4 prefix contains 10.0.0.0/8",
        {ShowRequest{PrefixFieldSetRequest{true, "", prefix("10.0.0.0/8")}}}},
       {"show traffic-policy field-set ipv4 prefix servers cont 10.1.2.3 exact",
        {ShowRequest{PrefixFieldSetRequest{true, "servers", prefix("10.1.2.3/32"), true}}}},
       {"show traffic-policy field-set ipv6 prefix contains 2001:db8::/32 ex",
        {ShowRequest{PrefixFieldSetRequest{false, "", prefix("2001:db8::/32"), true}}}},
       {"show traffic-policy field-set l4-port", {ShowRequest{L4PortFieldSetRequest{}}}},
       {"show traffic-policy field-set l4 web contains 80",
        {ShowRequest{L4PortFieldSetRequest{"web", Classification::PortRange{80, 80}}}}},
       {"show traffic-policy field-set l4-port contains 0-65535",
        {ShowRequest{L4PortFieldSetRequest{"", Classification::PortRange{0, 65535}}}}},
       {"show traffic-policy field-set vlan guests c 1-4095",
        {ShowRequest{VlanFieldSetRequest{"guests", Classification::VlanRange{1, 4095}}}}},
       {"show traffic-policy field-set vlan c 4095",
        {ShowRequest{VlanFieldSetRequest{"", Classification::VlanRange{4095, 4095}}}}},
       {"show traffic-policy field-set vlan c 10",
        {ShowRequest{VlanFieldSetRequest{"", Classification::VlanRange{10, 10}}}}},
       {"clear traffic-policy counters", {ClearCountersRequest{}}},
       {"clear traffic-policy counters interface input",
        {ClearCountersRequest{ClearScope::interface, D::input}}},
       {"cl t co i", {ClearCountersRequest{ClearScope::interface}}},
       {"clear traffic-policy counters cpu", {ClearCountersRequest{ClearScope::cpu}}},
       {"show traffic-policy cpu | json", {ShowRequest{CpuRequest{}}, true}},
       {"show traffic-policy cpu |json", {ShowRequest{CpuRequest{}}, true}},
       {"show traffic-policy cpu | j", {ShowRequest{CpuRequest{}}, true}},
   };
   for (auto const& row : rows) {
      auto const parsed = parseCommand(wordsOf(row.line));
      ASSERT_TRUE(parsed.ok()) << row.line << ": " << parsed.reason();
      EXPECT_TRUE(parsed.value() == row.expected) << row.line;
   }
}

struct Rejected {
   std::string line;
   std::string message;
};

void expectRejected(std::vector<Rejected> const& rows) {
   for (auto const& row : rows) {
      auto const parsed = parseCommand(wordsOf(row.line));
      ASSERT_FALSE(parsed.ok()) << row.line;
      EXPECT_EQ(parsed.reason(), row.message) << row.line;
   }
}

TEST(CommandGrammarTest, NamesMissingUnknownAndExtraWords) {
   expectRejected({
       {"", "missing command: expected show or clear"},
       {"display traffic-policy", "unknown command \"display\": expected show or clear"},
       {"show", "missing word after \"show\": expected traffic-policy"},
       {"show \"\"", "unknown word \"\" after \"show\": expected traffic-policy"},
       {"show traffic-policy",
        "missing word after \"traffic-policy\": expected policy, interface, cpu or field-set"},
       {"show traffic-policy policy", "missing policy name after \"policy\""},
       {"show traffic-policy policy \"\" cpu", "empty policy name after \"policy\""},
       {"show traffic-policy policy p1", "missing word after \"p1\": expected interface or cpu"},
       {"show traffic-policy policy p1 field-set",
        "unknown word \"field-set\" after \"p1\": expected interface or cpu"},
       {"show traffic-policy interface sideways",
        "unknown word \"sideways\" after \"interface\": expected input, output, summary, detail, "
        "errors, counters or end of command"},
       {"show traffic-policy cpu input",
        "unknown word \"input\" after \"cpu\": expected summary, detail, errors, counters or end "
        "of command"},
       {"show traffic-policy interface detail input",
        "unexpected word \"input\" after \"detail\": expected end of command"},
       {"show traffic-policy field-set ipv4", "missing word after \"ipv4\": expected prefix"},
       {"show traffic-policy field-set ipv4 prefix a b",
        "unknown word \"b\" after \"a\": expected contains or end of command"},
       {"show traffic-policy field-set ipv4 prefix contains", "missing prefix after \"contains\""},
       {"show traffic-policy field-set ipv4 prefix contains 10.0.0.0/8 exact more",
        "unexpected word \"more\" after \"exact\": expected end of command"},
       {"clear traffic-policy", "missing word after \"traffic-policy\": expected counters"},
       {"clear traffic-policy counters cpu input",
        "unexpected word \"input\" after \"cpu\": expected end of command"},
       {"clear traffic-policy counters interface input output",
        "unexpected word \"output\" after \"input\": expected end of command"},
   });
}

TEST(CommandGrammarTest, ListsTheCandidatesOfAnAmbiguousWord) {
   expectRejected({
       {"show traffic-policy field-set i", "ambiguous word \"i\": could be ipv4, ipv6"},
       {"show traffic-policy field-set ipv prefix", "ambiguous word \"ipv\": could be ipv4, ipv6"},
   });
}

TEST(CommandGrammarTest, RejectsValuesOutOfRangeOrOfTheWrongFamily) {
   auto const port = "expected a number from 0 to 65535 or a range LOW-HIGH";
   auto const vlan = "expected a number from 1 to 4095 or a range LOW-HIGH";
   auto const l4 = std::string("show traffic-policy field-set l4-port contains ");
   auto const vl = std::string("show traffic-policy field-set vlan contains ");
   auto const v4 = std::string("show traffic-policy field-set ipv4 prefix contains ");
   expectRejected({
       {l4 + "65536", "invalid port \"65536\" after \"contains\": " + std::string(port)},
       {l4 + "-1", "invalid port \"-1\" after \"contains\": " + std::string(port)},
       {l4 + "+80", "invalid port \"+80\" after \"contains\": " + std::string(port)},
       {l4 + "80-", "invalid port \"80-\" after \"contains\": " + std::string(port)},
       {l4 + "1-2-3", "invalid port \"1-2-3\" after \"contains\": " + std::string(port)},
       {l4 + "http", "invalid port \"http\" after \"contains\": " + std::string(port)},
       {l4 + "20-10",
        "invalid port \"20-10\" after \"contains\": the low end is above the high end"},
       {vl + "0", "invalid VLAN \"0\" after \"contains\": " + std::string(vlan)},
       {vl + "4096", "invalid VLAN \"4096\" after \"contains\": " + std::string(vlan)},
       {vl + "5-1", "invalid VLAN \"5-1\" after \"contains\": the low end is above the high end"},
       {v4 + "2001:db8::/32",
        "invalid prefix \"2001:db8::/32\" after \"contains\": an IPv6 "
        "prefix, but the command lists IPv4 field sets"},
       {"show traffic-policy field-set ipv6 prefix contains 10.0.0.0/8",
        "invalid prefix \"10.0.0.0/8\" after \"contains\": an IPv4 prefix, but the command lists "
        "IPv6 field sets"},
       {v4 + "10.0.0.1/8",
        "invalid prefix \"10.0.0.1/8\" after \"contains\": host bits set in "
        "\"10.0.0.1/8\" (did you mean 10.0.0.0/8?)"},
   });
}

TEST(CommandGrammarTest, AcceptsOnlyJsonAsTheLastFilter) {
   expectRejected({
       {"show traffic-policy cpu |", "missing word after \"|\": expected json"},
       {"show traffic-policy cpu | xml", "unknown word \"xml\" after \"|\": expected json"},
       {"show traffic-policy cpu |json json",
        "unexpected word \"json\" after \"json\": expected end of command"},
       {"| json", "missing command: expected show or clear"},
   });
}

}  // namespace
}  // namespace tpcli
