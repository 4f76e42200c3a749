// tpcli: shows the traffic policies of a device state through the show library.
#include "tpcli/Application.h"

#if TPCLI_WITH_MIMALLOC
#include <mimalloc.h>

#include <new>

namespace {

// The allocator's defaults, set before any library's initialisation allocates so that the main
// thread's first segment has them too; the environment (MIMALLOC_LARGE_OS_PAGES,
// MIMALLOC_DECOMMIT_DELAY) still overrides them.
// - No 2 MiB pages: mimalloc never gives back memory that it holds in them, so every page that the
//   loader's temporary pieces or a half-used size class ever touched stays resident until the
//   end, and on this kind of machine the kernel took longer to zero them than to fault 4 KiB
//   pages one at a time.
// - Freed spans of a segment go back to the system at once rather than after 25 ms: one command
//   is done in well under a second, so a delay would keep nearly everything that was freed.
void setAllocatorDefaults() {
   mi_option_set_enabled_default(mi_option_large_os_pages, false);
   mi_option_set_default(mi_option_decommit_delay, 0);
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
