// Collects one trace facility's lines as "LEVEL TEXT" while it is alive, with the facility switched
// on up to a chosen level; the facility's level and the sink are put back afterwards.
#pragma once

#include <string>
#include <vector>

#include "Kel/Trace.h"

namespace testing_support {

class TraceCapture {
 public:
   TraceCapture(Kel::TraceFacility& facility, int level);
   ~TraceCapture();
   TraceCapture(TraceCapture const&) = delete;
   TraceCapture& operator=(TraceCapture const&) = delete;

   std::vector<std::string> const& lines() const noexcept { return lines_; }
   bool traced(std::string const& line) const;

 private:
   Kel::TraceFacility& facility_;
   int savedLevel_;
   Kel::TraceSink savedSink_;
   std::vector<std::string> lines_;
};

}  // namespace testing_support
