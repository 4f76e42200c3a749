// Reference counting of entities.
#include "Kel/PtrInterface.h"

#include "Kel/Assert.h"

namespace Kel {

// Out of line, so that the virtual table is emitted once, here.
PtrInterface::~PtrInterface() = default;

void PtrInterface::delRef() const {
   auto const before = references_.fetch_sub(1, std::memory_order_acq_rel);
#ifndef NDEBUG
   KEL_ASSERT(before != 0 && "reference count underflow");
#endif
   if (before == 1) {
      delete this;
   }
}

}  // namespace Kel
