// Tracing: levels per facility, nothing built for disabled levels, lines delivered to the sink.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Kel/Trace.h"
#include "support/CapturedTrace.h"

namespace {

// Counts how often it is turned into text.
struct Expensive {
   int* formatted;
};
std::ostream& operator<<(std::ostream& out, Expensive const& value) {
   ++*value.formatted;
   return out << "expensive";
}

TEST(TraceTest, DisabledLevelsBuildNothing) {
   Kel::TraceFacility facility("TraceTest.disabled");
   testing_support::CapturedTrace const trace(facility, 4);
   int formatted = 0;
   KEL_TRACE(facility, 5) << Expensive{&formatted};
   KEL_TRACE(facility, 9) << Expensive{&formatted};
   EXPECT_EQ(formatted, 0);
   KEL_TRACE(facility, 4) << "ruleCount " << 3 << ", " << Expensive{&formatted};
   KEL_TRACE(facility, 0) << "always";
   EXPECT_EQ(formatted, 1);
   EXPECT_EQ(trace.lines(), (std::vector<std::string>{"4 ruleCount 3, expensive", "0 always"}));
}

TEST(TraceTest, OffByDefaultAndSwitchedByName) {
   Kel::TraceFacility facility("TraceTest.named");
   EXPECT_FALSE(facility.enabled(0));
   EXPECT_TRUE(Kel::traceLevelIs("TraceTest.named", 8));
   EXPECT_TRUE(facility.enabled(8));
   EXPECT_FALSE(facility.enabled(9));
   EXPECT_FALSE(Kel::traceLevelIs("TraceTest.nobody", 8));
   Kel::traceLevelIs("TraceTest.named", Kel::kTraceLevelOff);
   EXPECT_FALSE(facility.enabled(0));
}

TEST(TraceTest, SpecificationsApplyToPresentAndLaterFacilities) {
   Kel::TraceFacility early("TraceTest.early");
   ASSERT_TRUE(Kel::traceSpecIs("TraceTest.early=3,TraceTest.late=7"));
   Kel::TraceFacility late("TraceTest.late");
   EXPECT_EQ(early.level(), 3);
   EXPECT_EQ(late.level(), 7);

   ASSERT_TRUE(Kel::traceSpecIs("2"));
   Kel::TraceFacility after("TraceTest.after");
   EXPECT_EQ(early.level(), 2);
   EXPECT_EQ(after.level(), 2);
   Kel::traceSpecIs("*=-1");
   EXPECT_EQ(after.level(), Kel::kTraceLevelOff);
}

TEST(TraceTest, MalformedSpecificationsChangeNothing) {
   Kel::TraceFacility facility("TraceTest.malformed");
   facility.levelIs(1);
   for (char const* spec : {"x", "10", "a=", "=3", "a=3,", "a=3,b", "-2", "3 "}) {
      EXPECT_FALSE(Kel::traceSpecIs(spec)) << spec;
   }
   EXPECT_EQ(facility.level(), 1);
}

}  // namespace
