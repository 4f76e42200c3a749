// Counter arithmetic against snapshots: same life, another life, no snapshot, backwards, bytes
// apart from packets, and values near 2^64.
#include <gtest/gtest.h>

#include <limits>

#include "TrafficPolicyCli/CounterData.h"
#include "TrafficPolicyCli/PolicyStateVariants.h"
#include "TrafficPolicyCli/Trace.h"
#include "support/CapturedTrace.h"

namespace {

using TrafficPolicyCli::getNamedByteCount;
using TrafficPolicyCli::getNamedPacketCount;
using TrafficPolicyCli::getRulePacketCount;

constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();

Kel::Ptr<PolicyMap::PacketDataStatus const> live(char const* name, std::uint64_t instance,
                                                 std::uint64_t packets, std::uint64_t bytes) {
   auto data = Kel::make<PolicyMap::PacketDataStatus>(name, instance);
   data->countIs({packets, bytes});
   return data;
}

struct Row {
   char const* name;
   std::uint64_t liveInstance;
   std::uint64_t livePackets;
   std::uint64_t liveBytes;
   bool snapshotTaken;
   std::uint64_t snapshotInstance;
   std::uint64_t snapshotPackets;
   std::uint64_t snapshotBytes;
   std::uint64_t shownPackets;
   std::uint64_t shownBytes;
   bool tracedBackwards;
};

Row const kRows[] = {
    {"same life", 7, 100, 9000, true, 7, 40, 1000, 60, 8000, false},
    {"another life", 8, 100, 9000, true, 7, 40, 1000, 100, 9000, false},
    {"no snapshot", 7, 100, 9000, false, 0, 0, 0, 100, 9000, false},
    {"packets backwards", 7, 100, 9000, true, 7, 120, 1000, 0, 8000, true},
    {"bytes backwards alone", 7, 100, 900, true, 7, 40, 1000, 60, 0, true},
    {"near 2^64", 7, kMax, kMax, true, 7, 1, kMax - 5, kMax - 1, 5, false},
    {"snapshot at 2^64-1", 7, kMax, 0, true, 7, kMax, 0, 0, 0, false},
};

TEST(CounterData, NamedCountersSubtractPacketsAndBytesApartRulesPackets) {
   for (auto const& row : kRows) {
      testing_support::CapturedTrace const trace(TrafficPolicyCli::traceFacility(), 1);
      auto counter = Kel::make<TrafficPolicy::Counter>();
      if (row.snapshotTaken) {
         counter->namedSnapshotIs({"p1", "c1"}, row.snapshotInstance)
             ->totalCountIs({row.snapshotPackets, row.snapshotBytes});
         counter->snapshotIs({"p1", "r1"}, {row.snapshotInstance, row.snapshotPackets});
      }
      auto const named = live("c1", row.liveInstance, row.livePackets, row.liveBytes);
      EXPECT_EQ(getNamedPacketCount(counter, named, "p1"), row.shownPackets) << row.name;
      EXPECT_EQ(getNamedByteCount(counter, named, "p1"), row.shownBytes) << row.name;
      auto const rule = live("r1", row.liveInstance, row.livePackets, row.liveBytes);
      EXPECT_EQ(getRulePacketCount(rule, counter, "p1"), row.shownPackets) << row.name;
      // Bytes alone going backwards is the named counter's only: a rule counts packets.
      bool const packetsBackwards = row.livePackets < row.snapshotPackets;
      std::vector<std::string> expected;
      if (row.tracedBackwards) {
         expected.push_back("1 Counter value for policy p1, counter c1 has moved backwards");
      }
      if (packetsBackwards) {
         expected.push_back("1 Counter value for policy p1, class r1 has moved backwards");
      }
      EXPECT_EQ(trace.lines(), expected) << row.name;
   }
}

TEST(CounterData, NoSnapshotStoreShowsTheLiveCount) {
   auto const data = live("r1", 3, 42, 420);
   EXPECT_EQ(getRulePacketCount(data, nullptr, "p1"), 42u);
   EXPECT_EQ(getNamedByteCount(nullptr, data, "p1"), 420u);
}

}  // namespace
