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

TEST(Ptr, TheLastReferenceDeletes) {
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
      EXPECT_EQ(destroyed, 0);
   }
   EXPECT_EQ(destroyed, 1);
}

TEST(Ptr, AssignmentAndRawPointersKeepTheCount) {
   int destroyed = 0;
   Kel::Ptr<Node> ptr = Kel::make<Node>(&destroyed);
   ptr = Kel::make<Node>(&destroyed);
   EXPECT_EQ(destroyed, 1);
   auto& same = ptr;
   ptr = same;  // self-assignment keeps the entity
   Kel::Ptr<Node> again(ptr.get());
   ptr = nullptr;
   EXPECT_EQ(destroyed, 1);
   again.reset();
   EXPECT_EQ(destroyed, 2);
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
