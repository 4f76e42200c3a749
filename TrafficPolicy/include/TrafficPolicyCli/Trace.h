// The library's trace facility ("TrafficPolicyCli"): level 8 on entry to a step, 7 for things not
// found, 4 for summaries, 1 for configuration problems and counters that moved backwards.
#pragma once

#include "Kel/Trace.h"

namespace TrafficPolicyCli {

// In line: the renderers test a level several times a rule, and a call for each test cost more
// than the test. Forced, because the compiler keeps a function with a guarded static out of line
// where it sees several tests in one function, as in the caching of each rule.
[[gnu::always_inline]] inline Kel::TraceFacility& traceFacility() {
   static Kel::TraceFacility facility("TrafficPolicyCli");
   return facility;
}

}  // namespace TrafficPolicyCli

#define TP_TRACE(level) KEL_TRACE(::TrafficPolicyCli::traceFacility(), level)
