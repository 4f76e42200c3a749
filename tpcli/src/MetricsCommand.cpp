// Telling the metrics command apart from the show and clear grammar, and writing it out.
#include "tpcli/MetricsCommand.h"

#include <string_view>

#include "tpcli/ExitCode.h"
#include "tpcli/MetricsWriter.h"
#include "tpcli/StandardOutput.h"
#include "vellum/SigIntException.h"
#include "vellum/VellumBuffer.h"

namespace tpcli {

namespace {

constexpr std::string_view kMetrics = "metrics";
constexpr std::size_t kBufferSize = 1 << 20;

}  // namespace

bool isMetricsCommand(Options const& options) {
   auto const& words = options.commandWords;
   bool const metrics =
       !words.empty() && !words.front().empty() && kMetrics.starts_with(words.front());
   if (metrics && words.size() > 1) {
      throw CommandError(ExitCode::usage,
                         "metrics takes no more words; options such as --listen "
                         "start with \"--\"");
   }
   if (!metrics && options.listen) {
      throw CommandError(ExitCode::usage, "--listen goes only with the metrics command");
   }
   return metrics;
}

void writeMetricsOnto(int fd, StateLoader::DeviceState const& state) {
   try {
      vellum::VellumBuffer buffer(fd, kBufferSize, 1);
      writeMetrics(state, buffer);
   } catch (vellum::SigIntException const&) {
      // The reader went away or the user interrupted; the caller tells which by the flag.
   } catch (vellum::WriteError const& error) {
      throw outputFailure(error.code().value());
   }
}

}  // namespace tpcli
