// tpcli: shows the traffic policies of a device state through the show library.
#include "tpcli/Application.h"

#if TPCLI_WITH_MIMALLOC
#include <mimalloc.h>
#endif

int main(int argc, char** argv) {
#if TPCLI_WITH_MIMALLOC
   // Large pages where the system offers them; MIMALLOC_LARGE_OS_PAGES=0 still turns them off.
   mi_option_set_enabled_default(mi_option_large_os_pages, true);
#endif
   return tpcli::run(argc, argv);
}
