#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

// The whole unaligned family is replaced, so that every allocation made through any of its forms
// (libraries use the nothrow and array ones) is freed by the matching form of this allocator.

namespace {

std::atomic<std::uint64_t> allocations{0};
std::atomic<std::uint64_t> bytes{0};

void* countedAllocation(std::size_t size) noexcept {
   allocations.fetch_add(1, std::memory_order_relaxed);
   bytes.fetch_add(size, std::memory_order_relaxed);
   return std::malloc(size == 0 ? 1 : size);
}

void* countedOrThrow(std::size_t size) {
   if (void* memory = countedAllocation(size)) {
      return memory;
   }
   throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
   return countedOrThrow(size);
}
void* operator new[](std::size_t size) {
   return countedOrThrow(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
   return countedAllocation(size);
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
   return countedAllocation(size);
}
void operator delete(void* memory) noexcept {
   std::free(memory);
}
void operator delete[](void* memory) noexcept {
   std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
   std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
   std::free(memory);
}
void operator delete(void* memory, std::nothrow_t const&) noexcept {
   std::free(memory);
}
void operator delete[](void* memory, std::nothrow_t const&) noexcept {
   std::free(memory);
}

namespace testing_support {

std::uint64_t allocationCount() noexcept {
   return allocations.load(std::memory_order_relaxed);
}

std::uint64_t allocatedBytes() noexcept {
   return bytes.load(std::memory_order_relaxed);
}

}  // namespace testing_support
