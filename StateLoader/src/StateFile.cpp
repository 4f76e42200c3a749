// Plain POSIX reads into an uninitialised buffer: the size is known up front for regular files,
// so one allocation and a few large reads bring in even a very large state; pipes and devices are
// read until they end, the buffer doubling as needed.
#include "StateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "StateError.h"

namespace StateLoader {

namespace {

constexpr std::size_t kMinimumBuffer = 1 << 16;

[[noreturn]] void failFile(std::string const& message) {
   throw StateError("", message);
}

[[noreturn]] void failSystem(char const* what) {
   failFile(std::string(what) + ": " + std::strerror(errno));
}

class OpenFile {
 public:
   explicit OpenFile(std::string const& path) : fd_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
      if (fd_ < 0) {
         failSystem("cannot open");
      }
   }
   ~OpenFile() { ::close(fd_); }
   OpenFile(OpenFile const&) = delete;
   OpenFile& operator=(OpenFile const&) = delete;

   int fd() const noexcept { return fd_; }

 private:
   int fd_;
};

// The size to expect: exact for regular files, nothing for pipes and devices.
std::size_t expectedSize(OpenFile const& file) {
   struct stat status {};
   if (::fstat(file.fd(), &status) != 0) {
      failSystem("cannot read");
   }
   if (S_ISDIR(status.st_mode)) {
      failFile("is a directory, not a state file");
   }
   return S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
}

std::unique_ptr<char[]> grown(std::unique_ptr<char[]> const& old, std::size_t used,
                              std::size_t capacity) {
   auto bigger = std::make_unique_for_overwrite<char[]>(capacity);
   std::copy_n(old.get(), used, bigger.get());
   return bigger;
}

}  // namespace

FileBytes readStateFile(std::string const& path, std::size_t padding) {
   OpenFile const file(path);
   FileBytes bytes;
   bytes.capacity_ = std::max(expectedSize(file) + padding + 1, kMinimumBuffer);
   bytes.data_ = std::make_unique_for_overwrite<char[]>(bytes.capacity_);
   while (true) {
      if (bytes.capacity_ - bytes.size_ <= padding) {
         bytes.data_ = grown(bytes.data_, bytes.size_, bytes.capacity_ * 2);
         bytes.capacity_ *= 2;
      }
      auto const room = bytes.capacity_ - bytes.size_ - padding;
      auto const got = ::read(file.fd(), bytes.data_.get() + bytes.size_, room);
      if (got == 0) {
         break;
      }
      if (got < 0 && errno != EINTR) {
         failSystem("cannot read");
      }
      bytes.size_ += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
   }
   if (bytes.size_ == 0) {
      failFile("the file is empty");
   }
   // The parser reads into the spare room; give it defined bytes.
   std::fill_n(bytes.data_.get() + bytes.size_, bytes.spare(), '\0');
   return bytes;
}

}  // namespace StateLoader
