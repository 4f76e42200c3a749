// The base of every reference-counted object-model entity. The count lives in the object
// (intrusive), so a raw pointer to an entity can always be turned back into a counted one.
#pragma once

#include <atomic>
#include <cstdint>

namespace Kel {

class PtrInterface {
 public:
   PtrInterface() noexcept = default;
   // A copy is a new object: it starts without references.
   PtrInterface(PtrInterface const&) noexcept {}
   PtrInterface& operator=(PtrInterface const&) noexcept { return *this; }
   virtual ~PtrInterface();

   void newRef() const noexcept { references_.fetch_add(1, std::memory_order_relaxed); }
   // Drops one reference and deletes the object with the last one.
   void delRef() const;
   std::uint32_t refCount() const noexcept { return references_.load(std::memory_order_relaxed); }

 private:
   mutable std::atomic<std::uint32_t> references_{0};
};

}  // namespace Kel
