// Preloaded into tpcli by the tests: counts the process's calls of the file operations that a clear
// makes, and kills the process without warning (SIGKILL, no clean-up of any kind) just before the
// call numbered by $TPCLI_TEST_KILL_AT. Running a clear with every number in turn stops it at each
// of its steps: before the lock, with the temporary file empty, written but not synced, synced but
// not renamed, renamed but the folder not synced.
//
// The system headers that declare these functions are left out, so that their definitions here
// need not repeat the C library's exception specifications.
#include <dlfcn.h>
#include <signal.h>
#include <sys/types.h>

#include <cstdlib>

namespace {

void countCall() {
   static long const killAt = [] {
      auto const* value = std::getenv("TPCLI_TEST_KILL_AT");
      return value ? std::atol(value) : 0L;
   }();
   static long calls = 0;
   if (++calls == killAt) {
      raise(SIGKILL);
   }
}

// The next definition of `name` after this library's: the C library's (or a sanitizer's).
template <typename Function>
Function next(char const* name) {
   return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

ssize_t write(int fd, void const* data, size_t size) {
   countCall();
   static auto const real = next<ssize_t (*)(int, void const*, size_t)>("write");
   return real(fd, data, size);
}

int fsync(int fd) {
   countCall();
   static auto const real = next<int (*)(int)>("fsync");
   return real(fd);
}

int close(int fd) {
   countCall();
   static auto const real = next<int (*)(int)>("close");
   return real(fd);
}

int rename(char const* from, char const* to) {
   countCall();
   static auto const real = next<int (*)(char const*, char const*)>("rename");
   return real(from, to);
}

int flock(int fd, int operation) {
   countCall();
   static auto const real = next<int (*)(int, int)>("flock");
   return real(fd, operation);
}

int unlink(char const* path) {
   countCall();
   static auto const real = next<int (*)(char const*)>("unlink");
   return real(path);
}

}  // extern "C"
