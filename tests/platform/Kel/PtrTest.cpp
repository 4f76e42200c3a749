// Counted references: sharing, const views, raw pointers and the end of an entity's life.
#include <gtest/gtest.h>

#include "Kel/Ptr.h"
#include "support/CapturedAssertion.h"

namespace {

struct Node : Kel::PtrInterface {
   explicit Node(int* destroyedCount) : destroyed(destroyedCount) {}
   ~Node() override { ++*destroyed; }
   int* destroyed;
};

TEST(Ptr, CountsEveryReferenceAndTheLastOneDeletes) {
   int destroyed = 0;
   {
      Kel::Ptr<Node> first = Kel::make<Node>(&destroyed);
      EXPECT_EQ(first->refCount(), 1u);
      {
         Kel::Ptr<Node> second = first;
         Kel::Ptr<Node const> view = first;
         EXPECT_EQ(first->refCount(), 3u);
         EXPECT_EQ(view, first);
      }
      EXPECT_EQ(first->refCount(), 1u);
      Kel::Ptr<Node> moved = std::move(first);
      EXPECT_FALSE(first);
      EXPECT_EQ(moved->refCount(), 1u);
      moved = Kel::make<Node>(&destroyed);
      EXPECT_EQ(destroyed, 1);
      auto& same = moved;
      moved = same;  // self-assignment keeps the entity
      Kel::Ptr<Node> again(moved.get());
      moved = nullptr;
      EXPECT_EQ(destroyed, 1);
      again.reset();
      EXPECT_EQ(destroyed, 2);
      Kel::Ptr<Node> last = Kel::make<Node>(&destroyed);
   }
   EXPECT_EQ(destroyed, 3);
}

#ifndef NDEBUG
TEST(Ptr, DebugBuildsCatchUnderflow) {
   int destroyed = 0;
   Node unowned(&destroyed);
   EXPECT_EQ(testing_support::failedAssertion([&] { unowned.delRef(); }),
             "before != 0 && \"reference count underflow\"");
}
#endif

}  // namespace
