// How tpcli ends: the exit codes that scripts rely on, and the exception that carries one of them
// together with the line for standard error out of whichever step failed.
#pragma once

#include <stdexcept>
#include <string>

namespace tpcli {

enum class ExitCode : int {
   done = 0,
   failed = 1,  // the command could not act, e.g. the library or the output is unusable
   usage = 2,
   invalidState = 3,
   internalError = 70,
   interrupted = 130,
};

// Ends the command with its exit code; the message is the line printed after "tpcli: ".
class CommandError : public std::runtime_error {
 public:
   CommandError(ExitCode code, std::string const& message)
       : std::runtime_error(message), code_(code) {}
   ExitCode code() const noexcept { return code_; }

 private:
   ExitCode code_;
};

}  // namespace tpcli
