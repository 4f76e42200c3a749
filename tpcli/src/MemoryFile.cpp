#include "tpcli/MemoryFile.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tpcli {

namespace {

[[noreturn]] void failSystem(char const* what) {
   throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

MemoryFile::MemoryFile() : fd_(::memfd_create("tpcli", MFD_CLOEXEC)) {
   if (fd_ < 0) {
      failSystem("memfd_create");
   }
   path_ = "/proc/self/fd/" + std::to_string(fd_);
}

MemoryFile::~MemoryFile() {
   ::close(fd_);
}

void MemoryFile::write(std::uint8_t const* data, std::size_t size) const {
   if (::ftruncate(fd_, static_cast<off_t>(size)) != 0 || ::lseek(fd_, 0, SEEK_SET) != 0) {
      failSystem("emptying a memory file");
   }
   for (std::size_t done = 0; done < size;) {
      auto const wrote = ::pwrite(fd_, data + done, size - done, static_cast<off_t>(done));
      if (wrote < 0) {
         failSystem("writing a memory file");
      }
      done += static_cast<std::size_t>(wrote);
   }
}

void MemoryFile::write(std::string const& text) const {
   write(reinterpret_cast<std::uint8_t const*>(text.data()), text.size());
}

std::string MemoryFile::contents() const {
   std::string text(static_cast<std::size_t>(::lseek(fd_, 0, SEEK_CUR)), '\0');
   if (::pread(fd_, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
      failSystem("reading a memory file");
   }
   return text;
}

}  // namespace tpcli
