// Copying live prefix sets with the activity lock yielded, and the ring that records it.
#include "TrafficPolicyCli/PrefixCopy.h"

#include <time.h>

#include <string>

#include "Kel/ActivityLock.h"
#include "Kel/RobustWalk.h"

namespace TrafficPolicyCli {

namespace {

constexpr std::size_t kRingMessages = 256;

void note(std::string_view message, std::size_t count) {
   fieldSetRingBuf().push(std::string(message) + std::to_string(count));
}

}  // namespace

Glint::RingBuf& fieldSetRingBuf() {
   static Glint::RingBuf ring(kRingMessages);
   return ring;
}

void yieldActivityLock(std::string_view label) {
   auto& lock = Kel::ActivityLock::instance();
   if (!lock.heldByThisThread()) {
      return;
   }
   fieldSetRingBuf().push("yielding activing lock: " + std::string(label));
   lock.unlock();
   timespec const oneMillisecond{0, 1000000};
   nanosleep(&oneMillisecond, nullptr);
   lock.lock();
   fieldSetRingBuf().push("resuming");
}

std::vector<Quoll::IpGenPrefix> sortedPrefixCopy(Classification::PrefixSet const& live,
                                                 CopyMessages const& messages) {
   note(messages.begin, live.size());
   std::vector<Quoll::IpGenPrefix> copy;
   copy.reserve(live.size());
   Kel::robustWalk(live, [&copy, &messages](Quoll::IpGenPrefix const& prefix) {
      copy.push_back(prefix);
      if (copy.size() % kInsertionsPerYield == 0) {
         yieldActivityLock(messages.yieldLabel);
      }
   });
   if (!messages.sorted.empty()) {
      note(messages.sorted, copy.size());
   }
   note(messages.end, copy.size());
   return copy;
}

}  // namespace TrafficPolicyCli
