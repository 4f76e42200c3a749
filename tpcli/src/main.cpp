// tpcli: shows the traffic policies of a device state through the show library.
#include "tpcli/Application.h"

#if TPCLI_WITH_MIMALLOC
#include <mimalloc.h>

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

}  // namespace
#endif

int main(int argc, char** argv) {
   return tpcli::run(argc, argv);
}
