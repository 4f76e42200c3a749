// The output frame of one command.
#include "TrafficPolicyCli/CommandOutput.h"

namespace TrafficPolicyCli {

namespace {
constexpr std::size_t kPrintBufferSize = 1048576;
// The print buffer's only mode: blocking writes.
constexpr int kBlockingWrites = 1;
}  // namespace

CommandOutput::CommandOutput(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision)
    : buffer_(static_cast<int>(fd), kPrintBufferSize, kBlockingWrites),
      renderer_(vellum::outputContext(static_cast<vellum::OutputFormat_t>(fmt), revision), &buffer_,
                true) {
   if (renderer_.isJson()) {
      buffer_.append('{');
   }
}

CommandOutput::CommandOutput(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision,
                             std::string_view topLevelKey)
    : CommandOutput(fd, fmt, revision) {
   hasTopLevelObject_ = true;
   renderer_._startJsonObject(topLevelKey);
}

void CommandOutput::close() {
   if (renderer_.isJson()) {
      if (hasTopLevelObject_) {
         renderer_.endJsonDict();
      }
      buffer_.append("}\n");
   }
}

}  // namespace TrafficPolicyCli
