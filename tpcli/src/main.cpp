// tpcli: shows the traffic policies of a device state through the show library.
#include "tpcli/Application.h"

#if TPCLI_WITH_MIMALLOC
#include <mimalloc.h>

#include <new>

namespace {

// Large pages where the system offers them, committed at once: a command fills whole segments of
// model within milliseconds, and a 2 MiB page costs one fault where 4 KiB pages cost 512. The
// defaults are set before any library's initialisation allocates, so that the main thread's first
// segment has them too; the environment (MIMALLOC_LARGE_OS_PAGES, MIMALLOC_EAGER_COMMIT_DELAY)
// still overrides them.
void setAllocatorDefaults() {
   mi_option_set_enabled_default(mi_option_large_os_pages, true);
   mi_option_set_default(mi_option_eager_commit_delay, 0);
}

[[gnu::section(".preinit_array"),
  gnu::used]] void (*const allocatorDefaults)() = &setAllocatorDefaults;

// mimalloc's operator new aborts when memory runs out unless a new-handler is installed; this one
// makes it throw std::bad_alloc as the standard's does, so that the user is told.
[[noreturn]] void throwBadAlloc() {
   throw std::bad_alloc();
}

}  // namespace
#endif

int main(int argc, char** argv) {
#if TPCLI_WITH_MIMALLOC
   std::set_new_handler(&throwBadAlloc);
#endif
   return tpcli::run(argc, argv);
}
