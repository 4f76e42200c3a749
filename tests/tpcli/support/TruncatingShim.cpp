// Preloaded into tpcli by the tests: the first time tpcli reads from the file named by
// $TPCLI_TEST_TRUNCATE, the file is cut to half its size right after that read, as a writer that
// rewrites a state in place (`cat new.json > state.json`) would do in the middle of a show.
//
// The system headers that declare read are left out, so that its definition here need not repeat
// the C library's exception specifications.
#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstdlib>

extern "C" int truncate(char const* path, off_t length) noexcept;

namespace {

bool isTheFile(int fd, char const* path) {
   struct stat opened {};
   struct stat named {};
   return fstat(fd, &opened) == 0 && stat(path, &named) == 0 && opened.st_ino == named.st_ino &&
          opened.st_dev == named.st_dev;
}

}  // namespace

extern "C" ssize_t read(int fd, void* data, size_t size) {
   static auto const real =
       reinterpret_cast<ssize_t (*)(int, void*, size_t)>(dlsym(RTLD_NEXT, "read"));
   static char const* const path = std::getenv("TPCLI_TEST_TRUNCATE");
   static bool done = false;
   auto const got = real(fd, data, size);
   if (!done && path && got > 0 && isTheFile(fd, path)) {
      done = true;
      struct stat named {};
      stat(path, &named);
      truncate(path, named.st_size / 2);
   }
   return got;
}
