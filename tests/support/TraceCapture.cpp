#include "support/TraceCapture.h"

#include <algorithm>

namespace testing_support {

TraceCapture::TraceCapture(Kel::TraceFacility& facility, int level)
    : facility_(facility), savedLevel_(facility.level()) {
   facility_.levelIs(level);
   savedSink_ =
       Kel::traceSinkIs([this](Kel::TraceFacility const&, int lineLevel, std::string_view line) {
          lines_.push_back(std::to_string(lineLevel) + " " + std::string(line));
       });
}

TraceCapture::~TraceCapture() {
   Kel::traceSinkIs(savedSink_);
   facility_.levelIs(savedLevel_);
}

bool TraceCapture::traced(std::string const& line) const {
   return std::find(lines_.begin(), lines_.end(), line) != lines_.end();
}

}  // namespace testing_support
