// Reading a state file into memory, with the problems of the file as a whole (missing, a
// directory, unreadable, empty) reported as such.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace StateLoader {

// Unmaps a mapping (of `mappedLength` bytes) or deletes a buffer.
struct ReleaseFileBytes {
   std::size_t mappedLength = 0;
   void operator()(char const* data) const noexcept;
};

// A file's bytes with room to spare after them: the file mapped into memory, or read into a
// buffer when it cannot be mapped with that room.
class FileBytes {
 public:
   std::string_view text() const noexcept { return {data_.get(), size_}; }
   std::size_t spare() const noexcept { return capacity_ - size_; }

 private:
   friend FileBytes readStateFile(std::string const& path, std::size_t padding);

   std::unique_ptr<char const[], ReleaseFileBytes> data_;
   std::size_t size_ = 0;
   std::size_t capacity_ = 0;
};

// Reads the whole file, leaving at least `padding` spare bytes after it (the room the JSON parser
// may read past the end). Throws StateError with an empty pointer.
FileBytes readStateFile(std::string const& path, std::size_t padding);

}  // namespace StateLoader
