// How tpcli ends: the exit codes that scripts rely on, and the exception that carries one of them
// together with the line for standard error out of whichever step failed.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "Kel/Expected.h"

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

// The value, or CommandError with `code` and the reason there is none.
template <typename T>
T valueOr(Kel::Expected<T> expected, ExitCode code) {
   if (!expected) {
      throw CommandError(code, expected.reason());
   }
   return std::move(expected).value();
}

inline void failIf(std::optional<Kel::Failure> const& failure, ExitCode code) {
   if (failure) {
      throw CommandError(code, failure->reason);
   }
}

}  // namespace tpcli
