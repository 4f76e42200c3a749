// Writing and flushing standard output with the errors told apart.
#include "tpcli/StandardOutput.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

namespace tpcli {

CommandError outputFailure(int error) {
   return CommandError(ExitCode::failed,
                       std::string("cannot write output: ") + std::strerror(error));
}

void writeStandardOutput(std::string_view text) {
   flushStandardOutput();
   while (!text.empty()) {
      auto const written = ::write(STDOUT_FILENO, text.data(), text.size());
      if (written >= 0) {
         text.remove_prefix(static_cast<std::size_t>(written));
      } else if (errno == EPIPE) {
         return;
      } else if (errno != EINTR) {
         throw outputFailure(errno);
      }
   }
}

void flushStandardOutput() {
   if (std::fflush(stdout) != 0 && errno != EPIPE) {
      throw outputFailure(errno);
   }
}

}  // namespace tpcli
