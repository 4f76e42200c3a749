// Reading a state file into memory, with the problems of the file as a whole (missing, a
// directory, unreadable, empty, too large, changed while it was read) reported as such.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace StateLoader {

// A file's bytes in pages of our own, with room to spare after them. The pages are mapped
// anonymously so that the buffer grows by moving pages rather than by copying bytes: a pipe or a
// device read up to the size limit never needs twice its bytes in memory.
class FileBytes {
 public:
   FileBytes() = default;
   FileBytes(FileBytes&& other) noexcept;
   FileBytes& operator=(FileBytes&&) = delete;
   ~FileBytes();

   std::string_view text() const noexcept { return {data_, size_}; }

   // A regular file, which can be read again once pages of its bytes have been let go.
   bool canBeReadAgain() const noexcept { return S_ISREG(status_.st_mode); }
   // Gives the whole pages of text[begin, end) back to the system; reading them again gives
   // zeros.
   void release(std::size_t begin, std::size_t end) const noexcept;
   // The same file, unchanged since these bytes were read.
   bool isSameFileAs(FileBytes const& other) const noexcept;

 private:
   friend FileBytes readStateFile(std::string const& path, std::size_t padding,
                                  std::size_t largest);
   // Throws std::bad_alloc when the pages cannot be had.
   void capacityIs(std::size_t capacity);

   char* data_ = nullptr;
   std::size_t size_ = 0;
   std::size_t capacity_ = 0;
   struct stat status_ {};
};

// Reads the whole file, leaving `padding` zeros after it (the room the JSON parser may read past
// the end). A file of more than `largest` bytes is refused, before it is read where its size is
// known, after `largest` bytes otherwise. Throws StateError with an empty pointer, std::bad_alloc,
// and vellum::SigIntException when the user interrupts a wait for a pipe or a device.
FileBytes readStateFile(std::string const& path, std::size_t padding, std::size_t largest);

// Throws the StateError of a file that changed while it was read.
[[noreturn]] void failFileChanged();

}  // namespace StateLoader
