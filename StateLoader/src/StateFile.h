// Reading a state file into memory, with the problems of the file as a whole (missing, a
// directory, unreadable, empty, too large, changed while it was read) reported as such.
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace StateLoader {

class MappedRange;

// A file's bytes with zeros to spare after them. A regular file is mapped: its pages are those of
// the system's cache, with nothing to copy and no fresh memory to fill. Pipes and devices are read
// into pages of our own, mapped anonymously so that the buffer grows by moving pages rather than
// by copying bytes: they never need twice their bytes in memory.
class FileBytes {
 public:
   FileBytes() = default;
   FileBytes(FileBytes&& other) noexcept;
   FileBytes& operator=(FileBytes&&) = delete;
   ~FileBytes();

   std::string_view text() const noexcept { return {data_, size_}; }

   // A regular file, which can be read again once pages of its bytes have been let go.
   bool canBeReadAgain() const noexcept { return S_ISREG(status_.st_mode); }
   // A mapped file's pages that went back are read from the file again when they are touched;
   // those of a copy come back as zeros.
   bool isMapped() const noexcept { return mappedFd_ >= 0; }
   // Text[begin, end) has been read: its pages may go back to the system.
   void release(std::size_t begin, std::size_t end) const noexcept;
   // The same file, unchanged since these bytes were read.
   bool isSameFileAs(FileBytes const& other) const noexcept;
   // Throws the StateError of a file that changed while it was read: a mapped file can change
   // under its reader until the reading is done, so the loader asks once it is.
   void failIfChanged() const;

 private:
   friend FileBytes readStateFile(std::string const& path, std::size_t padding,
                                  std::size_t largest);
   // Throws std::bad_alloc when the pages cannot be had.
   void capacityIs(std::size_t capacity);
   // False where the file cannot be mapped; it is read instead.
   bool map(int fd, std::size_t padding);
   void releaseMappedBefore(std::size_t end) const noexcept;
   void releaseWholePages(std::size_t begin, std::size_t end) const noexcept;

   char* data_ = nullptr;
   std::size_t size_ = 0;
   std::size_t capacity_ = 0;
   struct stat status_ {};
   int mappedFd_ = -1;
   std::unique_ptr<MappedRange> range_;
   mutable std::atomic<std::size_t> mappedReleasedTo_{0};
};

// Reads the whole file, leaving `padding` zeros after it (the room the JSON parser may read past
// the end). A file of more than `largest` bytes is refused, before it is read where its size is
// known, after `largest` bytes otherwise. Throws StateError with an empty pointer, std::bad_alloc,
// and vellum::SigIntException when the user interrupts a wait for a pipe or a device.
FileBytes readStateFile(std::string const& path, std::size_t padding, std::size_t largest);

// Throws the StateError of a file that changed while it was read.
[[noreturn]] void failFileChanged();

}  // namespace StateLoader
