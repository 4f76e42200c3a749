#include "support/CapturedTrace.h"

#include <algorithm>

namespace testing_support {

CapturedTrace::CapturedTrace(Kel::TraceFacility& facility, int level)
    : facility_(facility), previousLevel_(facility.level()) {
   facility_.levelIs(level);
   previousSink_ = Kel::traceSinkIs(
       [this](Kel::TraceFacility const& source, int lineLevel, std::string_view line) {
          if (&source == &facility_) {
             lines_.push_back(std::to_string(lineLevel) + " " + std::string(line));
          }
       });
}

CapturedTrace::~CapturedTrace() {
   Kel::traceSinkIs(previousSink_);
   facility_.levelIs(previousLevel_);
}

bool CapturedTrace::anyEndsWith(std::string_view ending) const {
   return std::ranges::any_of(lines_,
                              [ending](std::string const& line) { return line.ends_with(ending); });
}

}  // namespace testing_support
