// Under the address sanitizer every allocation past 128 KiB is a mapping of its own, made, poisoned
// and unmapped again each time, and every command renders through an output buffer of a megabyte:
// the four buffers of each input took a third of its run. Arrays (the output buffers and the
// loader's largest text pieces are the only ones) come from malloc here instead, which the
// sanitizer checks as before, and the last large array freed is kept, poisoned so that a use after
// its release still fails, and handed out again for the next array of its size.
#include <sanitizer/allocator_interface.h>
#include <sanitizer/asan_interface.h>

#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

namespace {

constexpr std::size_t kLarge = std::size_t{1} << 17;

class KeptArray {
 public:
   void* take(std::size_t size) {
      std::lock_guard const lock(mutex_);
      if (block_ == nullptr || size_ != size) {
         return nullptr;
      }
      ASAN_UNPOISON_MEMORY_REGION(block_, size_);
      return std::exchange(block_, nullptr);
   }

   // Keeps a large block in place of the one kept before; a small one is freed at once.
   void release(void* block) {
      auto const size = __sanitizer_get_allocated_size(block);
      if (size < kLarge) {
         std::free(block);
         return;
      }
      ASAN_POISON_MEMORY_REGION(block, size);
      std::lock_guard const lock(mutex_);
      if (block_ != nullptr) {
         ASAN_UNPOISON_MEMORY_REGION(block_, size_);
         std::free(block_);
      }
      block_ = block;
      size_ = size;
   }

 private:
   std::mutex mutex_;
   void* block_ = nullptr;
   std::size_t size_ = 0;
};

KeptArray kept;

}  // namespace

void* operator new[](std::size_t size) {
   if (void* const block = kept.take(size)) {
      return block;
   }
   if (void* const block = std::malloc(size == 0 ? 1 : size)) {
      return block;
   }
   throw std::bad_alloc();
}

void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
   try {
      return operator new[](size);
   } catch (std::bad_alloc const&) {
      return nullptr;
   }
}

void operator delete[](void* block) noexcept {
   if (block != nullptr) {
      kept.release(block);
   }
}

void operator delete[](void* block, std::size_t) noexcept {
   operator delete[](block);
}
