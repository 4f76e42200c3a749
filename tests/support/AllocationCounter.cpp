#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::uint64_t> allocations{0};
}

void* operator new(std::size_t size) {
   allocations.fetch_add(1, std::memory_order_relaxed);
   if (void* memory = std::malloc(size == 0 ? 1 : size)) {
      return memory;
   }
   throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
   std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
   std::free(memory);
}

namespace testing_support {

std::uint64_t allocationCount() noexcept {
   return allocations.load(std::memory_order_relaxed);
}

}  // namespace testing_support
