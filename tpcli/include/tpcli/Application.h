// One run of tpcli from the command line to the exit code: options, command, show library, device
// state, output and rendering, with the exit code and the one line on standard error of whichever
// step ends the run early.
#pragma once

namespace tpcli {

int run(int argc, char const* const* argv);

}  // namespace tpcli
