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
    : shared_(std::make_shared<Shared>(std::move(readRuns), threads)) {
   for (unsigned thread = 1; thread < threads; ++thread) {
      try {
         std::thread([shared = shared_, thread] {
            for (;;) {
               shared->started.arrive_and_wait();
               if (shared->over) {
                  return;
               }
               shared->readRuns(thread);
               shared->finished.arrive_and_wait();
            }
         }).detach();
      } catch (std::system_error const&) {
         // The thread that did not start no longer counts.
         shared_->started.arrive_and_drop();
         shared_->finished.arrive_and_drop();
      }
   }
}

ReadingCrew::~ReadingCrew() {
   // A fault found while entering the last window leaves the helpers reading the next one.
   if (reading_) {
      shared_->finished.arrive_and_wait();
   }
   shared_->over = true;
   shared_->started.arrive_and_wait();
}

void ReadingCrew::startWindow() {
   shared_->started.arrive_and_wait();
   reading_ = true;
}

void ReadingCrew::finishWindow() {
   shared_->readRuns(0);
   shared_->finished.arrive_and_wait();
   reading_ = false;
}

}  // namespace StateLoader::detail
