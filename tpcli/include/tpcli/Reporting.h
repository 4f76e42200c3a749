// The failures that end a command, each reported as one line on standard error with its exit
// code. The one-shot form ends the process with that code; the shell reports and goes on.
#pragma once

#include <functional>
#include <string_view>

#include "tpcli/ExitCode.h"

namespace tpcli {

// Runs `work` and returns its exit code, or the code of the failure that ended it, whose line
// starts with `prefix` ("tpcli: " for the one-shot form, "% " in the shell).
ExitCode runReported(std::function<ExitCode()> const& work, std::string_view prefix) noexcept;

}  // namespace tpcli
