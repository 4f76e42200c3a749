// Preloaded into tpcli by the tests: the first time tpcli maps the file named by
// $TPCLI_TEST_TRUNCATE, the file is cut to half its size right after, as a writer that rewrites a
// state in place (`cat new.json > state.json`) would do in the middle of a show. The pages of the
// mapping past the new end then raise SIGBUS when read.
//
// The mapping is made by the system call itself: looking the C library's function up could
// allocate, and the allocator maps memory through this very function.
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace {

bool isTheFile(int fd, char const* path) {
   struct stat opened {};
   struct stat named {};
   return fstat(fd, &opened) == 0 && stat(path, &named) == 0 && opened.st_ino == named.st_ino &&
          opened.st_dev == named.st_dev;
}

}  // namespace

extern "C" void* mmap(void* address, size_t length, int protection, int flags, int fd,
                      off_t offset) noexcept {
   auto* const pages =
       reinterpret_cast<void*>(syscall(SYS_mmap, address, length, protection, flags, fd, offset));
   // Looked up at every call: the sanitizers' runtime maps memory before the environment is set.
   char const* const path = std::getenv("TPCLI_TEST_TRUNCATE");
   static bool done = false;
   if (!done && path && fd >= 0 && pages != MAP_FAILED && isTheFile(fd, path)) {
      done = true;
      struct stat named {};
      stat(path, &named);
      truncate(path, named.st_size / 2);
   }
   return pages;
}
