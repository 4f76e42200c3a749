// The field-set listings on configurations built in memory: what the state file cannot express
// (sets without a current sub-configuration, null prefixes), the lock yields of large sets with
// their ring messages and a change made while the lock is given up, and the source word. The
// listings' exact output is checked by the golden tests of tpcli.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "Kel/ActivityLock.h"
#include "TrafficPolicyCli/PrefixCopy.h"
#include "TrafficPolicyCli/ShowTrafficPolicyPrefixFieldSet.h"
#include "TrafficPolicyCli/ShowTrafficPolicyRangeFieldSets.h"
#include "TrafficPolicyCli/Trace.h"
#include "support/CapturedAssertion.h"
#include "support/CapturedOutput.h"
#include "support/CapturedTrace.h"

namespace {

using Classification::ContentsSource;
using Quoll::IpGenPrefix;
using TrafficPolicyCli::ShowTrafficPolicyFieldSetBase;
using vellum::OutputFormat_t;

IpGenPrefix v4(std::uint32_t address, std::uint8_t length) {
   return IpGenPrefix(Quoll::IpAddr::v4(address), length);
}

// A configuration with one set of each kind under the name "set".
struct Configuration {
   Kel::Ptr<Classification::FieldSetConfig> config = Kel::make<Classification::FieldSetConfig>();
   Kel::Ptr<Classification::PrefixFieldSetSubConfig> prefixes =
       Kel::make<Classification::PrefixFieldSetSubConfig>();

   Configuration() {
      auto set = Kel::make<Classification::FieldSetIpPrefix>("set");
      set->currCfgIs(prefixes);
      config->fieldSetIpPrefix().insertOrAssign("set", set);
   }
   // Sets that are being defined: no current sub-configuration yet.
   void addUndefinedSets() {
      config->fieldSetIpPrefix().insertOrAssign(
          "undefined", Kel::make<Classification::FieldSetIpPrefix>("undefined"));
      config->fieldSetL4Port().insertOrAssign(
          "undefined", Kel::make<Classification::FieldSetL4Port>("undefined"));
      config->fieldSetVlan().insertOrAssign("undefined",
                                            Kel::make<Classification::FieldSetVlan>("undefined"));
   }
};

std::string rendered(TrafficPolicyCli::ShowCommand& command, OutputFormat_t format) {
   testing_support::MemoryFile file;
   command.render(static_cast<std::uint32_t>(file.fd()), static_cast<std::uint32_t>(format), 2);
   return file.contents();
}

class FieldSetListingTest : public testing::Test {
 protected:
   Configuration device_;
   testing_support::CapturedTrace trace_{TrafficPolicyCli::traceFacility(), 8};
};

TEST_F(FieldSetListingTest, SetsWithoutCurrentSubConfigurationAreOnlyTraced) {
   device_.addUndefinedSets();
   device_.prefixes->prefixes().insert(v4(0x0a000000, 8));
   auto prefixListing = Kel::make<TrafficPolicyCli::ShowTrafficPolicyPrefixFieldSet>(
       device_.config, "", true, false, IpGenPrefix(), false);
   auto portListing = Kel::make<TrafficPolicyCli::ShowTrafficPolicyL4PortFieldSet>(
       device_.config, "undefined", false, Classification::PortRange{});
   auto vlanListing = Kel::make<TrafficPolicyCli::ShowTrafficPolicyVlanFieldSet>(
       device_.config, "", true, Classification::VlanRange{1, 4094});

   EXPECT_EQ(testing_support::parseJson(rendered(*prefixListing, OutputFormat_t::json)),
             nlohmann::json::parse(R"({"prefixFieldSets": {"set": {"source": "static",
                "prefixes": [{"prefix": "10.0.0.0/8", "exceptPrefixes": []}]}}})"));
   EXPECT_EQ(rendered(*portListing, OutputFormat_t::text), "");
   EXPECT_EQ(rendered(*vlanListing, OutputFormat_t::text), "No matching VLAN field sets found\n");
   EXPECT_TRUE(trace_.anyEndsWith(", fsName:undefined, no currCfg"));
   EXPECT_TRUE(prefixListing->foundMatches());
   EXPECT_FALSE(portListing->foundMatches() || vlanListing->foundMatches());
}

TEST_F(FieldSetListingTest, ANullPrefixIsABrokenInvariant) {
   device_.prefixes->prefixes().insert(IpGenPrefix());
   auto listing = Kel::make<TrafficPolicyCli::ShowTrafficPolicyPrefixFieldSet>(
       device_.config, "set", true, false, IpGenPrefix(), false);
   EXPECT_EQ(
       testing_support::failedAssertion([&] { rendered(*listing, OutputFormat_t::text); }, true),
       "TrafficPolicy/TrafficPolicyShowCliHelper: !pfx.isNullPrefix()");
}

constexpr std::uint32_t kYieldingCount = 60000;

// A copy of 60,000 prefixes while another thread waits for the lock to add a prefix ahead of the
// copy and one behind it. The copy starts once that thread is waiting, and the thread is joined
// after the lock is let go, so that a yield it missed cannot hang the test.
std::vector<IpGenPrefix> copyWhileAnotherThreadWaits() {
   Configuration device;
   auto& live = device.prefixes->prefixes();
   for (std::uint32_t host = 0; host < kYieldingCount; ++host) {
      live.insert(v4(0x0b000000 + host * 2, 32));
   }
   auto& lock = Kel::ActivityLock::instance();
   std::vector<IpGenPrefix> copy;
   std::atomic<bool> waiting = false;
   std::thread other;
   {
      Kel::ActivityLockGuard const held(lock);
      other = std::thread([&lock, &live, &waiting] {
         waiting = true;
         Kel::ActivityLockGuard const mine(lock);
         live.insert(v4(0x0a000000, 8));
         live.insert(v4(0x0c000000, 8));
      });
      while (!waiting) {
         std::this_thread::yield();
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      copy = TrafficPolicyCli::sortedPrefixCopy(live, TrafficPolicyCli::kPrefixCopyMessages);
   }
   other.join();
   return copy;
}

// 60,000 prefixes give two yields of the lock, a millisecond each; the waiting thread adds its
// prefixes during the first. A starved machine may not run that thread within the millisecond,
// so the copy is tried a few times.
TEST_F(FieldSetListingTest, LargeSetsGiveUpTheLockWhileCopying) {
   std::vector<IpGenPrefix> copy;
   for (int attempt = 0; attempt < 5 && copy.size() != kYieldingCount + 1; ++attempt) {
      copy = copyWhileAnotherThreadWaits();
   }
   EXPECT_EQ(copy.size(), kYieldingCount + 1);
   EXPECT_TRUE(std::ranges::is_sorted(copy));
   EXPECT_EQ(copy.back(), v4(0x0c000000, 8));

   auto const ring = TrafficPolicyCli::fieldSetRingBuf().messages();
   std::vector<std::string> const expected{"begin copy+sort prefixes 60000",
                                           "yielding activing lock: sort prefixes",
                                           "resuming",
                                           "yielding activing lock: sort prefixes",
                                           "resuming",
                                           "sort prefixes 60001",
                                           "end copy+sort prefixes 60001"};
   ASSERT_GE(ring.size(), expected.size());
   EXPECT_EQ(std::vector(ring.end() - static_cast<long>(expected.size()), ring.end()), expected);
}

TEST(ContentsSourceShowString, NamesTheSourceAndKeepsTheFirstComputedText) {
   auto const word = &ShowTrafficPolicyFieldSetBase::contentsSourceShowString;
   EXPECT_EQ(word(ContentsSource::staticSource, false), "static");
   EXPECT_EQ(word(ContentsSource::staticSource, true), "static");
   EXPECT_EQ(word(ContentsSource::bgp, false), "BGP");
   auto const first = word(ContentsSource::controller, true);
   EXPECT_TRUE(first == "controller" || first == "bgp" || first == "unknown") << first;
   EXPECT_EQ(word(ContentsSource::bgp, true), first);
   EXPECT_EQ(word(ContentsSource::unknown, false), first);
}

}  // namespace
