// Test support: the lines one trace facility writes while this object lives, each as "LEVEL TEXT",
// with the facility switched on up to a chosen level; the previous sink and level come back
// afterwards.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Kel/Trace.h"

namespace testing_support {

class CapturedTrace {
 public:
   CapturedTrace(Kel::TraceFacility& facility, int level);
   ~CapturedTrace();
   CapturedTrace(CapturedTrace const&) = delete;
   CapturedTrace& operator=(CapturedTrace const&) = delete;

   std::vector<std::string> const& lines() const noexcept { return lines_; }
   bool anyEndsWith(std::string_view ending) const;

 private:
   Kel::TraceFacility& facility_;
   int previousLevel_;
   Kel::TraceSink previousSink_;
   std::vector<std::string> lines_;
};

}  // namespace testing_support
