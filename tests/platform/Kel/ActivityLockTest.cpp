// The activity lock: one holder at a time, and it knows who holds it.
#include <gtest/gtest.h>

#include <thread>

#include "Kel/ActivityLock.h"

namespace {

TEST(ActivityLock, OneHolderAtATime) {
   auto& lock = Kel::ActivityLock::instance();
   EXPECT_EQ(&lock, &Kel::ActivityLock::instance());
   {
      Kel::ActivityLockGuard held(lock);
      EXPECT_TRUE(lock.heldByThisThread());
      bool tookIt = true;
      std::thread other([&] { tookIt = lock.try_lock(); });
      other.join();
      EXPECT_FALSE(tookIt);
   }
   EXPECT_FALSE(lock.heldByThisThread());
   std::thread other([&] {
      Kel::ActivityLockGuard held(lock);
      EXPECT_TRUE(lock.heldByThisThread());
   });
   other.join();
}

}  // namespace
