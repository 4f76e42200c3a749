// Reading the members of a large object on every processor. Policies, and the rules of one
// policy, are independent of one another until they are entered into the model, and building
// their entities is most of the loader's time, so the members are read by a few threads, each
// taking the next unread run of members (parsed together), while the entering stays on the calling
// thread in document order. A member whose reading fails keeps its fault until the walk in order
// reaches it: the file is refused for the same problem, with the same place, as a reading on one
// thread would give.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <barrier>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "Node.h"
#include "TextMembers.h"

namespace StateLoader {

namespace detail {

// Below this many members a second thread costs more than it saves.
inline constexpr std::size_t kMembersPerThread = 64;
inline constexpr unsigned kMaxThreads = 8;
// Members are read and entered at most this many at a time, so that the results waiting to be
// entered do not grow with the object.
inline constexpr std::size_t kWindow = 4096;
// The first window is small, for the threads to start on it as soon as its text has come in from
// the disk: a few runs of small members, or a mebibyte of large ones (some thirty policies of a
// hundred rules, where a count alone would wait for a quarter of a typical state's policies).
// Each later window holds twice as many members as the one before, up to kWindow.
inline constexpr std::size_t kFirstWindow = 4 * kMembersPerThread;
inline constexpr std::size_t kFirstWindowBytes = std::size_t{1} << 20;

unsigned readingThreads(std::size_t members, std::size_t runs);

// An object parsed already that one thread reads best: its members are read and entered in turn,
// without lists of them.
bool isSmall(Node const& object);

// The threads that read windows of members with the calling thread. They live as long as the walk
// over the object: a thread started per window would set up its allocator's heap again each time.
// The walk does not wait for them to end, only to stop reading: a thread's end hands its
// allocator's heap back, about a millisecond on the calling thread's path at every large object.
class ReadingCrew {
 public:
   // Starts up to `threads` - 1 helpers (fewer only make the reading slower); each of them, and
   // the calling thread, call `readRuns` once per window with its own number below `threads`
   // (the calling thread's is 0).
   ReadingCrew(unsigned threads, std::function<void(unsigned)> readRuns);
   // Waits for a window that is still being read, then lets the helpers go.
   ~ReadingCrew();
   ReadingCrew(ReadingCrew const&) = delete;
   ReadingCrew& operator=(ReadingCrew const&) = delete;

   // The helpers start reading a window, while the calling thread may do other work.
   void startWindow();
   // The calling thread reads what is left of the window; returns once every thread has read
   // what it could of it.
   void finishWindow();

 private:
   // Held by the helpers too, as they may still be leaving the last barrier when the walk is over.
   struct Shared {
      Shared(std::function<void(unsigned)> reading, unsigned threads)
          : readRuns(std::move(reading)), started(threads), finished(threads) {}
      std::function<void(unsigned)> readRuns;
      std::barrier<> started;
      std::barrier<> finished;
      bool over = false;
   };
   std::shared_ptr<Shared> shared_;
   bool reading_ = false;
};

// One window's reading: threads take its runs in turn and read them into `results`, leaving in
// `faults` the fault of each run that failed, at the member it failed at.
template <typename Result>
struct WindowReading {
   std::vector<Result> results;
   std::vector<std::exception_ptr> faults;
   std::atomic<std::size_t> next{0};
   // Runs after a failed one are not read: the walk in order stops at the first fault.
   std::atomic<std::size_t> firstFault{0};

   void reset(MemberList const& members) {
      results.clear();
      results.resize(members.size());
      faults.assign(members.size(), nullptr);
      next = 0;
      firstFault = members.runs();
   }

   template <typename Read>
   void readRuns(MemberList const& members, Read& readOne) {
      PieceParser parser;
      for (auto run = next++; run < firstFault.load(); run = next++) {
         auto index = members.runStart(run);
         auto readInto = [&](std::string_view key, Node const& value) {
            results[index] = readOne(key, value);
            ++index;
         };
         try {
            members.visitRun(run, parser, readInto);
            members.release(run);
         } catch (...) {
            faults[index] = std::current_exception();
            for (auto seen = firstFault.load(); run < seen;) {
               firstFault.compare_exchange_weak(seen, run);
            }
         }
      }
   }
};

// Enters a window's members in document order, up to the first that failed to be read.
template <typename Result, typename Enter>
void enterWindow(Node const& object, std::vector<std::string> const& keys,
                 WindowReading<Result>& window, Enter& enter) {
   for (std::size_t index = 0; index < keys.size(); ++index) {
      if (window.faults[index]) {
         std::rethrow_exception(window.faults[index]);
      }
      Where const where = object.where.member(keys[index]);
      enter(std::string_view(keys[index]), where, std::move(window.results[index]));
   }
}

}  // namespace detail

// Calls read(key, node) for every member of an object, on any thread, then enter(key, where,
// result) on this thread for every member in document order. `read` must touch nothing that is
// shared but the document, nor anything that `enter` changes; what it keeps by value is its own
// on each thread, as a mutable lambda keeps it. While the helpers read a window, this thread finds
// the next one and enters the last one: skimming and entering into the model's ordered maps are
// about half as long as the reading.
template <typename Read, typename Enter>
void forEachMemberInParallel(Node const& object, Read&& read, Enter&& enter) {
   using Reader = std::remove_cvref_t<Read>;
   using Result = std::invoke_result_t<Reader&, std::string_view, Node const&>;
   if (detail::isSmall(object)) {
      Reader reader = read;
      forEachMember(object, [&](std::string_view key, Node const& value) {
         enter(key, value.where, reader(key, value));
      });
      return;
   }
   MemberList members(object);
   if (!members.findWindow(detail::kFirstWindow, detail::kFirstWindowBytes)) {
      return;
   }
   members.nextWindow();
   std::size_t window = members.size();
   std::array<detail::WindowReading<Result>, 2> windows;
   auto* reading = &windows[0];
   std::vector<std::string> keys;
   // Each thread reads with a copy of `read` of its own, kept from window to window. When more
   // members follow, the first window's few runs do not say how many threads the later, larger
   // windows keep busy.
   auto const threads = members.allFound()
                            ? detail::readingThreads(members.size(), members.runs())
                            : detail::readingThreads(detail::kWindow, detail::kWindow);
   std::vector<Reader> readers(threads, read);
   detail::ReadingCrew crew(threads,
                            [&](unsigned thread) { reading->readRuns(members, readers[thread]); });
   reading->reset(members);
   crew.startWindow();
   auto const nextWindow = [&] {
      window = std::min(2 * window, detail::kWindow);
      return members.findWindow(window);
   };
   bool more = nextWindow();
   crew.finishWindow();
   for (;;) {
      auto& entering = *reading;
      members.takeKeys(keys);
      bool const last = !more;
      if (more) {
         members.nextWindow();
         reading = &windows[reading == &windows[0] ? 1 : 0];
         reading->reset(members);
         crew.startWindow();
         more = nextWindow();
      }
      detail::enterWindow(object, keys, entering, enter);
      if (last) {
         return;
      }
      crew.finishWindow();
   }
}

}  // namespace StateLoader
