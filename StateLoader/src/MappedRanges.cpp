// The handler only reads the slots and maps a page: both are safe in a signal handler, and a
// slot is released only after its mapping is gone, when no thread can fault in it any more.
#include "MappedRanges.h"

#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>

namespace StateLoader {

struct Slot {
   std::atomic<bool> taken{false};
   // Set last and cleared first, so that the handler never sees a range half written.
   std::atomic<std::uintptr_t> begin{0};
   std::atomic<std::uintptr_t> end{0};
   std::atomic<bool> cutShort{false};
};

namespace {

// A command maps its state and, while it locates a fault, the same file once more.
std::array<Slot, 8> slots;
struct sigaction previousAction {};

Slot* slotHolding(std::uintptr_t address) noexcept {
   for (auto& slot : slots) {
      auto const begin = slot.begin.load(std::memory_order_acquire);
      if (begin != 0 && address >= begin && address < slot.end.load(std::memory_order_acquire)) {
         return &slot;
      }
   }
   return nullptr;
}

void onBusError(int, siginfo_t* info, void*) {
   auto const address = reinterpret_cast<std::uintptr_t>(info->si_addr);
   if (auto* const slot = slotHolding(address)) {
      auto const page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
      auto* const start = reinterpret_cast<void*>(address / page * page);
      if (::mmap(start, page, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) !=
          MAP_FAILED) {
         slot->cutShort.store(true, std::memory_order_release);
         return;
      }
   }
   // Not a page of ours: the faulting access runs again under the action that was there before.
   ::sigaction(SIGBUS, &previousAction, nullptr);
}

void handleBusErrors() noexcept {
   static std::once_flag installed;
   std::call_once(installed, [] {
      struct sigaction action {};
      action.sa_sigaction = &onBusError;
      action.sa_flags = SA_SIGINFO;
      sigemptyset(&action.sa_mask);
      ::sigaction(SIGBUS, &action, &previousAction);
   });
}

}  // namespace

MappedRange::MappedRange(char* begin, std::size_t size) noexcept {
   handleBusErrors();
   for (auto& slot : slots) {
      if (!slot.taken.exchange(true, std::memory_order_acquire)) {
         slot.cutShort.store(false, std::memory_order_relaxed);
         slot.end.store(reinterpret_cast<std::uintptr_t>(begin) + size, std::memory_order_relaxed);
         slot.begin.store(reinterpret_cast<std::uintptr_t>(begin), std::memory_order_release);
         slot_ = &slot;
         return;
      }
   }
}

MappedRange::~MappedRange() {
   if (slot_) {
      slot_->begin.store(0, std::memory_order_release);
      slot_->taken.store(false, std::memory_order_release);
   }
}

bool MappedRange::cutShort() const noexcept {
   return slot_ && slot_->cutShort.load(std::memory_order_acquire);
}

}  // namespace StateLoader
