// The in-memory ring of recent trace messages.
#include "Glint/RingBuf.h"

#include "Kel/Assert.h"

namespace Glint {

RingBuf::RingBuf(std::size_t capacity) : slots_(capacity) {
   KEL_ASSERT(capacity > 0);
}

void RingBuf::push(std::string_view message) {
   std::lock_guard lock(mutex_);
   slots_[pushed_ % slots_.size()].assign(message);
   ++pushed_;
}

std::vector<std::string> RingBuf::messages() const {
   std::lock_guard lock(mutex_);
   auto const kept = std::min<std::uint64_t>(pushed_, slots_.size());
   std::vector<std::string> oldestFirst;
   oldestFirst.reserve(kept);
   for (auto sequence = pushed_ - kept; sequence < pushed_; ++sequence) {
      oldestFirst.push_back(slots_[sequence % slots_.size()]);
   }
   return oldestFirst;
}

std::uint64_t RingBuf::pushed() const {
   std::lock_guard lock(mutex_);
   return pushed_;
}

}  // namespace Glint
