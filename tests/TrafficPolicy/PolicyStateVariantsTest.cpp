// The interface record keeps its two directions apart; the CPU record regroups by VRF. Getters
// announce themselves at trace level 8.
#include <gtest/gtest.h>

#include "TrafficPolicyCli/PolicyStateVariants.h"
#include "TrafficPolicyCli/Trace.h"
#include "support/CapturedTrace.h"

namespace {

using PolicyMap::ClassMapMatchOption;
constexpr auto ipv4 = ClassMapMatchOption::ipv4;
constexpr auto ipv6 = ClassMapMatchOption::ipv6;

TEST(PolicyStateInterface, DirectionsAreKeptApart) {
   auto record = TrafficPolicyCli::policyStateInterfaceFactory("p1");
   record->appliedIntfInputIs(ipv4)->intfListIs("Ethernet1", true);
   record->failedIntfOutputIs(ipv6)->intfListIs("Ethernet2", true);
   record->createInstallErrorColl(ipv6, false)->intfErrorIs("Ethernet2", "no room");
   record->interfaceStatusOutputIs("Ethernet2", TrafficPolicyCli::interfaceStatusFactory());

   EXPECT_TRUE(record->getAppliedIntfList(ipv4, true));
   EXPECT_FALSE(record->getAppliedIntfList(ipv4, false));
   EXPECT_FALSE(record->getAppliedIntfList(ipv6, true));
   EXPECT_TRUE(record->getFailedIntfList(ipv6, false));
   EXPECT_FALSE(record->getFailedIntfList(ipv6, true));
   EXPECT_EQ(*record->getInstallErrorList(ipv6, false)->intfError("Ethernet2"), "no room");
   EXPECT_FALSE(record->getInstallErrorList(ipv6, true));
   EXPECT_TRUE(record->getInterfaceStatus("Ethernet2", false));
   EXPECT_FALSE(record->getInterfaceStatus("Ethernet2", true));
   EXPECT_EQ(record->createInstallErrorColl(ipv6, false),
             record->createInstallErrorColl(ipv6, false));

   auto data = Kel::make<PolicyMap::PacketDataStatus>("r1", 3);
   record->cacheClassCounterData(data, false);
   record->cacheNamedCounterData(data, true);
   EXPECT_TRUE(record->outputClassCounters().contains("r1"));
   EXPECT_TRUE(record->inputClassCounters().empty());
   EXPECT_TRUE(record->inputNamedCounters().contains("r1"));
}

TEST(PolicyStateInterface, GettersTraceTheirSignatureAndArguments) {
   testing_support::CapturedTrace const trace(TrafficPolicyCli::traceFacility(), 8);
   auto record = TrafficPolicyCli::policyStateInterfaceFactory("p1");
   record->getAppliedIntfList(ipv6, false);
   record->getInterfaceStatus("Ethernet7", true);
   ASSERT_EQ(trace.lines().size(), 2u);
   EXPECT_EQ(trace.lines()[0],
             "8 TrafficPolicyCli::PerAfIntfList::PtrConst "
             "TrafficPolicyCli::PolicyStateInterface::getAppliedIntfList("
             "PolicyMap::ClassMapMatchOption, bool) const, option:ipv6, isInput: 0");
   EXPECT_EQ(trace.lines()[1],
             "8 TrafficPolicyCli::InterfaceStatus::PtrConst "
             "TrafficPolicyCli::PolicyStateInterface::getInterfaceStatus(const Kel::String&, "
             "bool) const, intfName:Ethernet7, isInput: 1");
}

TEST(PolicyStateCpu, VrfRecordsAreCreatedOnce) {
   auto record = TrafficPolicyCli::policyStateCpuFactory("cpu1");
   auto blue = record->vrfIntfStatusIs("blue");
   EXPECT_EQ(record->vrfIntfStatusIs("blue"), blue);
   EXPECT_EQ(record->vrfIntfStatus("blue"), blue.get());
   EXPECT_EQ(record->vrfIntfStatus("red"), nullptr);
   record->appliedVrfIs(ipv4)->vrfListIs("blue", true);
   EXPECT_EQ(record->appliedVrfIs(ipv4)->vrfList().size(), 1u);
   EXPECT_EQ(record->installErrorCollIs(ipv6), record->installErrorCollIs(ipv6));
   EXPECT_TRUE(record->attribute("vrfIntfStatus").has_value());
   EXPECT_TRUE(record->attribute("ruleCount").has_value()) << "base attributes are reflected too";
}

}  // namespace
