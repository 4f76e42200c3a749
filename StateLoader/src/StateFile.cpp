// A regular file is mapped rather than read: its pages come straight from the page cache, where a
// copy would first make the kernel hand out and zero as many fresh pages, which for a state of
// tens of megabytes costs more than parsing it. The tail of the last page reads as zeros and is
// the parser's spare room; a file that ends too close to a page boundary for that, pipes and
// devices are read into a buffer instead, the buffer doubling as needed. States are replaced, not
// rewritten in place, so the mapping does not see the file change under it.
#include "StateFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "StateError.h"

namespace StateLoader {

void ReleaseFileBytes::operator()(char const* data) const noexcept {
   if (mappedLength != 0) {
      ::munmap(const_cast<char*>(data), mappedLength);
   } else {
      delete[] data;
   }
}

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

std::size_t pageRounded(std::size_t size) {
   auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
   return (size + page - 1) / page * page;
}

// The whole file mapped, or nothing when it cannot be mapped with `padding` bytes after it.
std::unique_ptr<char const [], ReleaseFileBytes> mapped(OpenFile const& file, std::size_t size,
                                                        std::size_t padding) {
   auto const length = pageRounded(size);
   if (size == 0 || length - size < padding) {
      return {};
   }
   void* const data = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file.fd(), 0);
   if (data == MAP_FAILED) {
      return {};
   }
   return {static_cast<char const*>(data), ReleaseFileBytes{length}};
}

std::unique_ptr<char[]> grown(std::unique_ptr<char[]> const& old, std::size_t used,
                              std::size_t capacity) {
   auto bigger = std::make_unique_for_overwrite<char[]>(capacity);
   std::copy_n(old.get(), used, bigger.get());
   return bigger;
}

// Reads until the end, leaving `padding` zeros after the bytes; `capacity` is the first guess.
std::unique_ptr<char[]> readAll(OpenFile const& file, std::size_t padding, std::size_t& size,
                                std::size_t& capacity) {
   auto data = std::make_unique_for_overwrite<char[]>(capacity);
   while (true) {
      if (capacity - size <= padding) {
         data = grown(data, size, capacity * 2);
         capacity *= 2;
      }
      auto const got = ::read(file.fd(), data.get() + size, capacity - size - padding);
      if (got == 0) {
         break;
      }
      if (got < 0 && errno != EINTR) {
         failSystem("cannot read");
      }
      size += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
   }
   // The parser reads into the spare room; give it defined bytes.
   std::fill_n(data.get() + size, capacity - size, '\0');
   return data;
}

}  // namespace

FileBytes readStateFile(std::string const& path, std::size_t padding) {
   OpenFile const file(path);
   auto const expected = expectedSize(file);
   FileBytes bytes;
   bytes.data_ = mapped(file, expected, padding);
   if (bytes.data_) {
      bytes.size_ = expected;
      bytes.capacity_ = bytes.data_.get_deleter().mappedLength;
      return bytes;
   }
   bytes.capacity_ = std::max(expected + padding + 1, kMinimumBuffer);
   bytes.data_ = {readAll(file, padding, bytes.size_, bytes.capacity_).release(),
                  ReleaseFileBytes{}};
   if (bytes.size_ == 0) {
      failFile("the file is empty");
   }
   return bytes;
}

}  // namespace StateLoader
