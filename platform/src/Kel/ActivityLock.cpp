// The process-wide activity lock.
#include "Kel/ActivityLock.h"

namespace Kel {

ActivityLock& ActivityLock::instance() {
   static ActivityLock lock;
   return lock;
}

void ActivityLock::lock() {
   mutex_.lock();
   owner_.store(std::this_thread::get_id(), std::memory_order_relaxed);
}

void ActivityLock::unlock() {
   owner_.store(std::thread::id{}, std::memory_order_relaxed);
   mutex_.unlock();
}

bool ActivityLock::try_lock() {
   if (!mutex_.try_lock()) {
      return false;
   }
   owner_.store(std::this_thread::get_id(), std::memory_order_relaxed);
   return true;
}

}  // namespace Kel
