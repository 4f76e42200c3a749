// A regular file is mapped. Read into a buffer, a state of tens of megabytes took as long again in
// fresh pages to fill and bytes to copy as the rest of loading it. A writer that cuts the file
// short while it is mapped (`cat new.json > state.json` during a show) leaves pages that raise
// SIGBUS; those read as zeros (MappedRanges.h), and the size and times of the file before and
// after the reading tell that it changed. Pipes and devices have no size to check first: they are
// read up to the same limit as files, the buffer growing by remapping its pages.
#include "StateFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "MappedRanges.h"
#include "StateError.h"
#include "vellum/SigIntException.h"

namespace StateLoader {

namespace {

constexpr std::size_t kFirstBuffer = 1 << 16;
constexpr std::size_t kMappedReleaseStep = 1 << 20;

[[noreturn]] void failFile(std::string const& message) {
   throw StateError("", message);
}

[[noreturn]] void failSystem(char const* what) {
   failFile(std::string(what) + ": " + std::strerror(errno));
}

[[noreturn]] void failTooLarge(std::size_t largest) {
   failFile("the file is larger than " + std::to_string(largest) +
            " bytes, the most the parser can take");
}

constexpr int kWaitSlice = 100;  // milliseconds

[[noreturn]] void failInterrupted() {
   throw vellum::SigIntException("interrupted");
}

// Pipes and devices are opened and read without blocking, and waited for in short slices that
// look at the Ctrl-C flag in between: a blocking call would miss a Ctrl-C that came just before
// it started, and then wait for a writer forever. A FIFO opened this way reports nothing until a
// writer has come, and its end once the writers are gone.
void waitForBytes(int fd) {
   pollfd ready{fd, POLLIN, 0};
   while (true) {
      if (vellum::sigIntNoticed()) {
         failInterrupted();
      }
      auto const polled = ::poll(&ready, 1, kWaitSlice);
      if (polled > 0) {
         return;
      }
      if (polled < 0 && errno != EINTR) {
         failSystem("cannot read");
      }
   }
}

class OpenFile {
 public:
   explicit OpenFile(std::string const& path) {
      while ((fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) < 0) {
         if (errno != EINTR) {
            failSystem("cannot open");
         }
      }
   }
   ~OpenFile() {
      if (fd_ >= 0) {
         ::close(fd_);
      }
   }
   OpenFile(OpenFile const&) = delete;
   OpenFile& operator=(OpenFile const&) = delete;

   int fd() const noexcept { return fd_; }
   int release() noexcept { return std::exchange(fd_, -1); }

   struct stat status() const {
      struct stat status {};
      if (::fstat(fd_, &status) != 0) {
         failSystem("cannot read");
      }
      return status;
   }

 private:
   int fd_ = -1;
};

bool isSameFile(struct stat const& before, struct stat const& after) {
   return before.st_ino == after.st_ino && before.st_size == after.st_size &&
          before.st_mtim.tv_sec == after.st_mtim.tv_sec &&
          before.st_mtim.tv_nsec == after.st_mtim.tv_nsec &&
          before.st_ctim.tv_sec == after.st_ctim.tv_sec &&
          before.st_ctim.tv_nsec == after.st_ctim.tv_nsec;
}

}  // namespace

void failFileChanged() {
   failFile("the file changed while it was read; try again once it is written");
}

FileBytes::FileBytes(FileBytes&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)),
      status_(other.status_),
      mappedFd_(std::exchange(other.mappedFd_, -1)),
      range_(std::move(other.range_)),
      mappedReleasedTo_(other.mappedReleasedTo_.load(std::memory_order_relaxed)) {}

// The range stops being watched only once its pages are gone.
FileBytes::~FileBytes() {
   if (data_) {
      ::munmap(data_, capacity_);
   }
   if (mappedFd_ >= 0) {
      ::close(mappedFd_);
   }
}

void FileBytes::release(std::size_t begin, std::size_t end) const noexcept {
   if (mappedFd_ >= 0) {
      releaseMappedBefore(end);
   } else {
      releaseWholePages(begin, end);
   }
}

// A page of a mapped file that goes too early is only read from the system's cache again, so
// those go a mebibyte at a time, a step behind the furthest end read. Each call makes every
// processor running the process drop its cached address translations; at one call for each small
// policy that was a tenth of the loader's time.
void FileBytes::releaseMappedBefore(std::size_t end) const noexcept {
   auto const upTo = end > kMappedReleaseStep
                         ? (end - kMappedReleaseStep) / kMappedReleaseStep * kMappedReleaseStep
                         : 0;
   auto from = mappedReleasedTo_.load(std::memory_order_relaxed);
   while (upTo > from) {
      if (mappedReleasedTo_.compare_exchange_weak(from, upTo, std::memory_order_relaxed)) {
         ::madvise(data_ + from, upTo - from, MADV_DONTNEED);
         return;
      }
   }
}

// Pages of our own read as zeros once given back.
void FileBytes::releaseWholePages(std::size_t begin, std::size_t end) const noexcept {
   auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
   auto const first = (begin + page - 1) / page * page;
   auto const last = end / page * page;
   if (first < last) {
      ::madvise(data_ + first, last - first, MADV_DONTNEED);
   }
}

bool FileBytes::isSameFileAs(FileBytes const& other) const noexcept {
   return isSameFile(status_, other.status_);
}

void FileBytes::failIfChanged() const {
   if (mappedFd_ < 0) {
      return;
   }
   struct stat now {};
   if (range_->cutShort() || ::fstat(mappedFd_, &now) != 0 || !isSameFile(status_, now)) {
      failFileChanged();
   }
}

// The file's pages, then anonymous zeros for the parser to read past the end: the part of the
// last page past the file's end reads as zeros too.
bool FileBytes::map(int fd, std::size_t padding) {
   auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
   auto const mapped = (size_ + page - 1) / page * page;
   capacityIs(mapped + (padding + page - 1) / page * page);
   range_ = std::make_unique<MappedRange>(data_, mapped);
   if (!range_->watched() ||
       ::mmap(data_, mapped, PROT_READ, MAP_PRIVATE | MAP_FIXED, fd, 0) == MAP_FAILED) {
      return false;
   }
   // Read ahead, not waited for: the loader reads the first sections while the rest comes in.
   ::madvise(data_, mapped, MADV_WILLNEED);
   mappedFd_ = fd;
   return true;
}

void FileBytes::capacityIs(std::size_t capacity) {
   void* const pages = data_ ? ::mremap(data_, capacity_, capacity, MREMAP_MAYMOVE)
                             : ::mmap(nullptr, capacity, PROT_READ | PROT_WRITE,
                                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
   if (pages == MAP_FAILED) {
      throw std::bad_alloc();
   }
   data_ = static_cast<char*>(pages);
   capacity_ = capacity;
}

FileBytes readStateFile(std::string const& path, std::size_t padding, std::size_t largest) {
   OpenFile file(path);
   auto const before = file.status();
   if (S_ISDIR(before.st_mode)) {
      failFile("is a directory, not a state file");
   }
   // Regular files of the kernel's own (under /proc) say they are empty: their size is not known.
   auto const expected = S_ISREG(before.st_mode) ? static_cast<std::size_t>(before.st_size) : 0;
   if (expected > largest) {
      failTooLarge(largest);
   }
   if (expected != 0) {
      FileBytes mapped;
      mapped.status_ = before;
      mapped.size_ = expected;
      if (mapped.map(file.fd(), padding)) {
         file.release();
         return mapped;
      }
   }
   // One byte more than a regular file holds, so that the read that sees its end is a full one.
   FileBytes bytes;
   bytes.capacityIs(expected != 0 ? expected + 1 + padding : kFirstBuffer);
   std::size_t& size = bytes.size_;
   bool const mayWait = !S_ISREG(before.st_mode);
   while (true) {
      if (bytes.capacity_ - size <= padding) {
         bytes.capacityIs(std::min(bytes.capacity_ * 2, largest + 1 + padding));
      }
      if (mayWait) {
         waitForBytes(file.fd());
      }
      auto const got = ::read(file.fd(), bytes.data_ + size, bytes.capacity_ - size - padding);
      if (got == 0) {
         break;
      }
      if (got < 0) {
         if (errno != EAGAIN && errno != EINTR) {
            failSystem("cannot read");
         }
         continue;
      }
      size += static_cast<std::size_t>(got);
      if (size > largest) {
         failTooLarge(largest);
      }
   }
   if (expected != 0 && (size != expected || !isSameFile(before, file.status()))) {
      failFileChanged();
   }
   if (size == 0) {
      failFile("the file is empty");
   }
   bytes.status_ = before;
   // The parser reads into the spare room, which fresh pages hold as zeros.
   return bytes;
}

}  // namespace StateLoader
