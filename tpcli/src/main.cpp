// tpcli: shows the traffic policies of a device state through the show library.
#include "tpcli/Application.h"

#if TPCLI_WITH_MIMALLOC
#include <mimalloc.h>
#endif

int main(int argc, char** argv) {
#if TPCLI_WITH_MIMALLOC
   // Large pages where the system offers them, and committed at once for the loader's threads,
   // which fill whole segments within milliseconds. The environment (MIMALLOC_LARGE_OS_PAGES,
   // MIMALLOC_EAGER_COMMIT_DELAY) still overrides both.
   mi_option_set_enabled_default(mi_option_large_os_pages, true);
   mi_option_set_default(mi_option_eager_commit_delay, 0);
#endif
   return tpcli::run(argc, argv);
}
