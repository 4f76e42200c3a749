// Reading a state file into memory, with the problems of the file as a whole (missing, a
// directory, unreadable, empty, too large, changed while it was read) reported as such.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace StateLoader {

// A file's bytes in a buffer of our own, with room to spare after them.
class FileBytes {
 public:
   std::string_view text() const noexcept { return {data_.get(), size_}; }

 private:
   friend FileBytes readStateFile(std::string const& path, std::size_t padding,
                                  std::size_t largest);
   struct Free {
      void operator()(char* data) const noexcept { std::free(data); }
   };

   std::unique_ptr<char, Free> data_;
   std::size_t size_ = 0;
};

// Reads the whole file, leaving `padding` zeros after it (the room the JSON parser may read past
// the end). A file of more than `largest` bytes is refused, before it is read where its size is
// known, after `largest` bytes otherwise. Throws StateError with an empty pointer, std::bad_alloc,
// and vellum::SigIntException when the user interrupts a wait for a pipe or a device.
FileBytes readStateFile(std::string const& path, std::size_t padding, std::size_t largest);

}  // namespace StateLoader
