// Ranges and field-set contents: text forms, overlap, value counts and orderings that the show
// commands sort and print by.
#include <gtest/gtest.h>

#include "Classification/FieldSetConfig.h"
#include "PolicyMap/Types.h"

namespace {

using Classification::NumericalRange;

TEST(NumericalRange, TextAndOverlap) {
   struct Row {
      NumericalRange range;
      char const* text;
      NumericalRange other;
      bool overlaps;
   } const rows[] = {
       {{80, 80}, "80", {80, 80}, true},
       {{1000, 2000}, "1000-2000", {2000, 3000}, true},
       {{1000, 2000}, "1000-2000", {2001, 3000}, false},
       {{0, 4294967295u}, "0-4294967295", {5, 5}, true},
       {{10, 20}, "10-20", {1, 9}, false},
   };
   for (auto const& row : rows) {
      EXPECT_EQ(row.range.stringValue(), row.text);
      EXPECT_EQ(row.range.overlaps(row.other), row.overlaps) << row.text;
      EXPECT_EQ(row.other.overlaps(row.range), row.overlaps) << row.text;
   }
}

TEST(RangeFieldSet, CountsValuesNotRanges) {
   Classification::L4PortFieldSetSubConfig ports;
   EXPECT_EQ(ports.numPorts(), 0u);
   ports.ranges().insert({80, 80});
   ports.ranges().insert({1000, 1009});
   EXPECT_EQ(ports.numPorts(), 11u);
   Classification::VlanFieldSetSubConfig everything;
   everything.ranges().insert({0, 4294967295u});
   EXPECT_EQ(everything.numVlans(), 4294967295u) << "saturates instead of wrapping";
}

TEST(VlanRangeSet, OrdersByVlansThenFieldSets) {
   Classification::VlanRangeSet low, high, named;
   low.vlans().insert({10, 20});
   high.vlans().insert({30, 30});
   named.vlanFieldSets().insert("vlans-a");
   EXPECT_LT(low, high);
   EXPECT_LT(named, low) << "no VLANs sorts before any VLAN";
   EXPECT_EQ(low, low);
}

}  // namespace
