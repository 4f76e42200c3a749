// The `metrics` command line: `tpcli [-s STATE] metrics [--listen ADDRESS:PORT]`.
#pragma once

#include <string>
#include <vector>

#include "StateLoader/DeviceState.h"
#include "tpcli/Options.h"

namespace tpcli {

// Whether the command's words ask for metrics ("metrics", or a prefix of it as any keyword may
// be shortened). Words after it, and --listen with another command, are CommandError "usage".
bool isMetricsCommand(Options const& options);

// Writes the state's metrics onto `fd` (standard output). A reader that went away ends it quietly;
// another failure to write is CommandError "cannot write output: ...".
void writeMetricsOnto(int fd, StateLoader::DeviceState const& state);

}  // namespace tpcli
