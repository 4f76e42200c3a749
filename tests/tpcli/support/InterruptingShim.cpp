// Preloaded into tpcli by the tests: right before tpcli opens the file named by
// $TPCLI_TEST_INTERRUPT, it gets SIGINT, as from a Ctrl-C typed a moment after the command: the
// handler has noted it, and the open that comes next must not wait for a writer all the same.
//
// The file is opened by the system call itself, so that nothing here depends on how the C
// library names its variants of open.
#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace {

int openInterrupted(char const* path, int flags, va_list rest) {
   static char const* const interrupted = std::getenv("TPCLI_TEST_INTERRUPT");
   if (interrupted && std::strcmp(path, interrupted) == 0) {
      raise(SIGINT);
   }
   auto const mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, int) : 0;
   return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

}  // namespace

extern "C" int open(char const* path, int flags, ...) {
   va_list rest;
   va_start(rest, flags);
   auto const fd = openInterrupted(path, flags, rest);
   va_end(rest);
   return fd;
}

// The same function under the name that large-file builds call.
extern "C" [[gnu::alias("open")]] int open64(char const* path, int flags, ...);
