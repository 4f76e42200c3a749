// Mapped state files that a writer may cut short while they are read. Touching a page of a
// mapping past the file's new end raises SIGBUS, which would kill the command; the handler here
// puts a page of zeros in its place and notes it, so that the reading goes on to its end and the
// loader reports that the file changed while it was read.
#pragma once

#include <cstddef>

namespace StateLoader {

class MappedRange {
 public:
   // Watches [begin, begin + size) until destroyed. `watched()` is false when every slot is
   // taken; the caller then reads the file instead of mapping it.
   MappedRange(char* begin, std::size_t size) noexcept;
   ~MappedRange();
   MappedRange(MappedRange const&) = delete;
   MappedRange& operator=(MappedRange const&) = delete;

   bool watched() const noexcept { return slot_ != nullptr; }
   // A page of the range was touched past the file's end and read as zeros.
   bool cutShort() const noexcept;

 private:
   struct Slot* slot_ = nullptr;
};

}  // namespace StateLoader
