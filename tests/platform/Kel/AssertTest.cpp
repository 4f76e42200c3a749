// Assertions report the expression, the source and the function to a replaceable handler.
#include <gtest/gtest.h>

#include "Kel/Assert.h"

namespace {

void checkPositive(int value) {
   KEL_ASSERT(value > 0 && "value must be positive");
}

TEST(Assert, ThrowingHandlerCarriesExpressionSourceAndFunction) {
   auto const previous = Kel::assertHandlerIs(&Kel::throwingAssertHandler);
   try {
      checkPositive(-1);
      ADD_FAILURE() << "no assertion";
   } catch (Kel::AssertionError const& error) {
      EXPECT_EQ(error.expression(), "value > 0 && \"value must be positive\"");
      EXPECT_EQ(error.source(), __FILE__);
      EXPECT_EQ(error.function(), "checkPositive");
      EXPECT_NE(std::string(error.what()).find("value > 0"), std::string::npos);
   }
   EXPECT_NO_THROW(checkPositive(1));
   Kel::assertHandlerIs(previous);
}

TEST(AssertDeathTest, DefaultHandlerAborts) {
   EXPECT_DEATH(checkPositive(0), "value must be positive.* failed in .*function checkPositive");
}

TEST(AssertDeathTest, AHandlerThatReturnsStillStops) {
   EXPECT_DEATH(
       {
          Kel::assertHandlerIs([](Kel::AssertionInfo const&) {});
          checkPositive(0);
       },
       "function checkPositive");
}

}  // namespace
