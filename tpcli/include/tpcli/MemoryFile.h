// An anonymous file in memory. Renderers write by descriptor, so text wanted in memory (a metrics
// page, a test's or a fuzz target's capture) is written here and read back; the loader reads by
// path, so an input held in memory reaches it by the /proc/self/fd path, with no journal flush
// per input as a file on disk would cost. Failures throw std::system_error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tpcli {

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

}  // namespace tpcli
