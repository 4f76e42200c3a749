// Whether a policy counts as programmed or failed on a VRF's interfaces, and which error text a
// failure shows, where the golden states do not tell: no entries, and several failures.
#include <gtest/gtest.h>

#include "TrafficPolicyCli/InterfaceRecords.h"

namespace {

using PolicyMap::ClassMapMatchOption;
using TrafficPolicyCli::InterfaceStatus;

constexpr auto ipv4 = ClassMapMatchOption::ipv4;
constexpr auto ipv6 = ClassMapMatchOption::ipv6;

struct AgentReport {
   char const* intf;
   // State per option; -1 means no entry for the option.
   int ipv4State;
   char const* error;
};

Kel::Ptr<InterfaceStatus> statusOf(std::vector<AgentReport> const& reports) {
   auto status = TrafficPolicyCli::interfaceStatusFactory();
   for (auto const& report : reports) {
      auto intfStatus = Kel::make<PolicyMap::IntfStatus>(Quoll::IntfId(report.intf));
      if (report.ipv4State >= 0) {
         intfStatus->installed().insertOrAssign(
             ipv4, {static_cast<std::uint8_t>(report.ipv4State), report.error});
      }
      status->intfStatusIs(intfStatus);
   }
   return status;
}

TEST(InterfaceStatus, ProgrammedFailedAndErrorText) {
   struct Row {
      char const* name;
      std::vector<AgentReport> reports;
      bool programmed;
      bool failed;
      char const* error;
   } const rows[] = {
       {"no status at all", {}, false, false, ""},
       {"one pending", {{"Ethernet1", 0, "waiting"}}, false, false, "waiting"},
       {"no entry for the option", {{"Ethernet1", -1, ""}}, false, false, ""},
       {"programmed and pending",
        {{"Ethernet1", 1, ""}, {"Ethernet2", 0, "later"}},
        false,
        false,
        "later"},
       {"an entry missing beside a programmed one",
        {{"Ethernet1", 1, ""}, {"Ethernet2", -1, ""}},
        true,
        false,
        ""},
       {"first failure wins by interface order",
        {{"Ethernet2", 2, "second"}, {"Ethernet1", 2, "first"}},
        false,
        true,
        "first"},
   };
   for (auto const& row : rows) {
      auto const status = statusOf(row.reports);
      EXPECT_EQ(status->isProgrammed(ipv4), row.programmed) << row.name;
      EXPECT_EQ(status->isFailed(ipv4), row.failed) << row.name;
      EXPECT_EQ(TrafficPolicyCli::getInstalledErrorString(status, ipv4), row.error) << row.name;
      EXPECT_FALSE(status->isProgrammed(ipv6)) << row.name << ": ipv6 has no entries";
      EXPECT_FALSE(status->isFailed(ipv6)) << row.name;
   }
}

}  // namespace
