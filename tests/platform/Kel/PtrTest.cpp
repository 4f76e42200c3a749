// Counted references: sharing, const views, raw pointers and the end of an entity's life.
#include <gtest/gtest.h>

#include "Kel/Assert.h"
#include "Kel/Ptr.h"

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

TEST(Ptr, AssignmentDropsTheOldReference) {
   int destroyed = 0;
   Kel::Ptr<Node> ptr = Kel::make<Node>(&destroyed);
   ptr = Kel::make<Node>(&destroyed);
   EXPECT_EQ(destroyed, 1);
   auto& same = ptr;
   ptr = same;  // self-assignment keeps the entity
   EXPECT_EQ(destroyed, 1);
   ptr = nullptr;
   EXPECT_EQ(destroyed, 2);
}

TEST(Ptr, RawPointerRecoversACountedReference) {
   int destroyed = 0;
   Kel::Ptr<Node> ptr = Kel::make<Node>(&destroyed);
   Node* raw = ptr.get();
   Kel::Ptr<Node> again(raw);
   ptr.reset();
   EXPECT_EQ(destroyed, 0);
   again.reset();
   EXPECT_EQ(destroyed, 1);
}

#ifndef NDEBUG
TEST(Ptr, DebugBuildsCatchUnderflow) {
   auto const previous = Kel::assertHandlerIs(&Kel::throwingAssertHandler);
   int destroyed = 0;
   Node unowned(&destroyed);
   EXPECT_THROW(unowned.delRef(), Kel::AssertionError);
   Kel::assertHandlerIs(previous);
}
#endif

}  // namespace
