// The command grammar: what each accepted command line asks for. The message of each kind of
// mistake is a row of data/command-lines.txt, run on tpcli as a process.
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
       {"sh traffic-policy int det", {ShowRequest{InterfaceRequest{"", D::both, V::detail}}}},
       {"s t i", {ShowRequest{InterfaceRequest{}}}},
       {"show traffic-policy interface o c",
        {ShowRequest{InterfaceRequest{"", D::output, V::counters}}}},
       {"show traffic-policy policy edge-in interface output summary",
        {ShowRequest{InterfaceRequest{"edge-in", D::output, V::summary}}}},
       {"show traffic-policy policy int interface", {ShowRequest{InterfaceRequest{"int"}}}},
       {"show traffic-policy p cp-in c c", {ShowRequest{CpuRequest{"cp-in", V::counters}}}},
       {"show traffic-policy field-set ipv6 p office",
        {ShowRequest{PrefixFieldSetRequest{false, "office"}}}},
       {"show traffic-policy fi ipv4 prefix contains 10.0.0.0/8",
        {ShowRequest{PrefixFieldSetRequest{true, "", prefix("10.0.0.0/8")}}}},
       {"show traffic-policy field-set ipv4 prefix servers cont 10.1.2.3 exact",
        {ShowRequest{PrefixFieldSetRequest{true, "servers", prefix("10.1.2.3/32"), true}}}},
       {"show traffic-policy field-set l4 web contains 80",
        {ShowRequest{L4PortFieldSetRequest{"web", Classification::PortRange{80, 80}}}}},
       {"show traffic-policy field-set vlan guests c 1-4095",
        {ShowRequest{VlanFieldSetRequest{"guests", Classification::VlanRange{1, 4095}}}}},
       {"show traffic-policy field-set vlan c 4095",
        {ShowRequest{VlanFieldSetRequest{"", Classification::VlanRange{4095, 4095}}}}},
       {"clear traffic-policy counters interface input",
        {ClearCountersRequest{ClearScope::interface, D::input}}},
       {"cl t co i", {ClearCountersRequest{ClearScope::interface}}},
       {"show traffic-policy cpu |json", {ShowRequest{CpuRequest{}}, true}},
   };
   for (auto const& row : rows) {
      auto const parsed = parseCommand(wordsOf(row.line));
      ASSERT_TRUE(parsed.ok()) << row.line << ": " << parsed.reason();
      EXPECT_TRUE(parsed.value() == row.expected) << row.line;
   }
}

}  // namespace
}  // namespace tpcli
