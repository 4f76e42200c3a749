// The activity lock: one process-wide mutex that a command holds while it reads the object model.
// Long computations give it up for a moment (yield) so that other work can proceed.
#pragma once

#include <atomic>
#include <mutex>
#include <thread>

namespace Kel {

class ActivityLock {
 public:
   static ActivityLock& instance();

   void lock();
   void unlock();
   bool try_lock();
   bool heldByThisThread() const noexcept {
      return owner_.load(std::memory_order_relaxed) == std::this_thread::get_id();
   }

 private:
   ActivityLock() = default;

   std::mutex mutex_;
   std::atomic<std::thread::id> owner_{};
};

// Holds the activity lock for a scope.
using ActivityLockGuard = std::lock_guard<ActivityLock>;

}  // namespace Kel
