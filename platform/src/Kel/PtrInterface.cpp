// Reference counting of entities, with the live-entity tally used to find leaks.
#include "Kel/PtrInterface.h"

#include "Kel/Assert.h"

namespace Kel {

namespace {
std::atomic<std::uint64_t> liveEntities{0};
}

PtrInterface::PtrInterface() noexcept {
   liveEntities.fetch_add(1, std::memory_order_relaxed);
}

PtrInterface::PtrInterface(PtrInterface const&) noexcept : PtrInterface() {}

PtrInterface::~PtrInterface() {
   liveEntities.fetch_sub(1, std::memory_order_relaxed);
}

void PtrInterface::delRef() const {
   auto const before = references_.fetch_sub(1, std::memory_order_acq_rel);
#ifndef NDEBUG
   KEL_ASSERT(before != 0 && "reference count underflow");
#endif
   if (before == 1) {
      delete this;
   }
}

std::uint64_t liveEntityCount() noexcept {
   return liveEntities.load(std::memory_order_relaxed);
}

}  // namespace Kel
