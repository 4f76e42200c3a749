// The ring-buffer trace keeps the most recent messages, oldest first.
#include <gtest/gtest.h>

#include "Glint/RingBuf.h"

namespace {

TEST(RingBuf, KeepsTheLastMessages) {
   struct Row {
      int pushes;
      std::vector<std::string> kept;
   } const rows[] = {
       {0, {}},
       {2, {"m0", "m1"}},
       {3, {"m0", "m1", "m2"}},
       {7, {"m4", "m5", "m6"}},
   };
   for (auto const& row : rows) {
      Glint::RingBuf ring(3);
      for (int i = 0; i < row.pushes; ++i) {
         ring.push("m" + std::to_string(i));
      }
      EXPECT_EQ(ring.messages(), row.kept) << row.pushes << " pushes";
      EXPECT_EQ(ring.pushed(), static_cast<std::uint64_t>(row.pushes));
   }
}

}  // namespace
