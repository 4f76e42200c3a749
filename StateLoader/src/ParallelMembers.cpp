// How many threads read an object's members: one per processor, as far as the members keep
// them busy.
#include "ParallelMembers.h"

#include <algorithm>

namespace StateLoader::detail {

unsigned readingThreads(std::size_t members) {
   auto const processors = std::max(1u, std::thread::hardware_concurrency());
   auto const useful = std::max<std::size_t>(1, members / kMembersPerThread);
   return static_cast<unsigned>(std::min<std::size_t>({processors, kMaxThreads, useful}));
}

}  // namespace StateLoader::detail
