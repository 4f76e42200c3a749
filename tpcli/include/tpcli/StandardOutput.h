// tpcli's own writes to standard output (help, version, and the line the show library prints when
// it stops early). A reader that went away ends them quietly; any other failure to write, such as
// a full disk, is an error of the command.
#pragma once

#include <string_view>

#include "tpcli/ExitCode.h"

namespace tpcli {

// "cannot write output: REASON", exit code 1.
CommandError outputFailure(int error);

void writeStandardOutput(std::string_view text);
// Writes out what the C library holds for standard output.
void flushStandardOutput();

}  // namespace tpcli
