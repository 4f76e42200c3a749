// How many threads read an object's members: one per processor, as far as the members keep
// them busy.
#include "ParallelMembers.h"

#include <algorithm>

namespace StateLoader::detail {

unsigned readingThreads(std::size_t members, std::size_t runs) {
   auto const processors = std::max(1u, std::thread::hardware_concurrency());
   auto const useful = std::max<std::size_t>(1, members / kMembersPerThread);
   return static_cast<unsigned>(std::min<std::size_t>({processors, kMaxThreads, useful, runs}));
}

bool isSmall(Node const& object) {
   return !object.unparsed && asObject(object).size() < 2 * kMembersPerThread;
}

ReadingCrew::ReadingCrew(unsigned threads, std::function<void(unsigned)> readRuns)
    : readRuns_(std::move(readRuns)), started_(threads), finished_(threads) {
   for (unsigned thread = 1; thread < threads; ++thread) {
      try {
         helpers_.emplace_back([this, thread] {
            for (;;) {
               started_.arrive_and_wait();
               if (over_) {
                  return;
               }
               readRuns_(thread);
               finished_.arrive_and_wait();
            }
         });
      } catch (std::system_error const&) {
         // The thread that did not start no longer counts.
         started_.arrive_and_drop();
         finished_.arrive_and_drop();
      }
   }
}

ReadingCrew::~ReadingCrew() {
   // A fault found while entering the last window leaves the helpers reading the next one.
   if (reading_) {
      finished_.arrive_and_wait();
   }
   over_ = true;
   started_.arrive_and_wait();
}

void ReadingCrew::startWindow() {
   started_.arrive_and_wait();
   reading_ = true;
}

void ReadingCrew::finishWindow() {
   readRuns_(0);
   finished_.arrive_and_wait();
   reading_ = false;
}

}  // namespace StateLoader::detail
