// An anonymous file in memory. The loader reads files by path, so a fuzz input reaches it as this
// file, named by its /proc/self/fd path (a file on disk would cost a journal flush per input); the
// commands write their output to it by descriptor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

class MemoryFile {
 public:
   MemoryFile();
   ~MemoryFile();
   MemoryFile(MemoryFile const&) = delete;
   MemoryFile& operator=(MemoryFile const&) = delete;

   int fd() const noexcept { return fd_; }
   std::string const& path() const noexcept { return path_; }

   // Replaces the contents with `size` bytes, or with none, and moves the offset to the start.
   void write(std::uint8_t const* data, std::size_t size) const;
   void write(std::string const& text) const;
   // What was written through fd() since the last write().
   std::string contents() const;

 private:
   int fd_;
   std::string path_;
};

}  // namespace fuzz
