// Level-based tracing. A facility is a named switch with a level: lines of that level or below are
// written, everything above costs one comparison and builds no text. Levels run from 0 (always
// interesting) to 9 (everything). Lines go to the installed sink, standard error by default.
//
// Levels are set by traceLevelIs() or, at start-up, by the environment variable KEL_TRACE:
//   KEL_TRACE=8                      every facility up to level 8
//   KEL_TRACE=TrafficPolicy=8,Foo=1  per facility; "*" names all of them
#pragma once

#include <atomic>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>

#define KEL_TRACE(facility, level)   \
   if (!(facility).enabled(level)) { \
   } else                            \
      ::Kel::TraceLine((facility), (level)).stream()

namespace Kel {

inline constexpr int kTraceLevelOff = -1;
inline constexpr int kTraceLevelMax = 9;

class TraceFacility {
 public:
   // Registers the facility process-wide; its level starts from KEL_TRACE or traceLevelIs("*").
   explicit TraceFacility(std::string name);
   ~TraceFacility();
   TraceFacility(TraceFacility const&) = delete;
   TraceFacility& operator=(TraceFacility const&) = delete;

   bool enabled(int level) const noexcept {
      return level <= maxLevel_.load(std::memory_order_relaxed);
   }
   int level() const noexcept { return maxLevel_.load(std::memory_order_relaxed); }
   void levelIs(int level) noexcept;
   std::string const& name() const noexcept { return name_; }

 private:
   std::string name_;
   std::atomic<int> maxLevel_{kTraceLevelOff};
};

// Sets the level of the named facility, or of every facility (present and future) for "*".
// Returns false when no facility of that name exists.
bool traceLevelIs(std::string_view facilityName, int level);

// Applies a KEL_TRACE-style specification; returns false (and changes nothing) when it is
// malformed.
bool traceSpecIs(std::string_view spec);

using TraceSink = std::function<void(TraceFacility const&, int level, std::string_view line)>;
// Installs a sink and returns the previous one; an empty sink restores standard error.
TraceSink traceSinkIs(TraceSink sink);

// One trace line under construction; written to the sink when it goes out of scope.
class TraceLine {
 public:
   TraceLine(TraceFacility const& facility, int level) : facility_(facility), level_(level) {}
   ~TraceLine();
   TraceLine(TraceLine const&) = delete;
   TraceLine& operator=(TraceLine const&) = delete;

   std::ostream& stream() { return text_; }

 private:
   TraceFacility const& facility_;
   int level_;
   std::ostringstream text_;
};

}  // namespace Kel
