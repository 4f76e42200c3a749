// `tpcli shell`: the state loaded once, then commands typed at a prompt that names the state file
// ("lab#" for lab.json), as on a device. Each line is one command of the one-shot form, or
// `reload` (read the state file again) or `exit`; mistakes and failures are reported and the
// prompt comes back.
#pragma once

#include <string>

#include "tpcli/ExitCode.h"
#include "tpcli/Options.h"

namespace tpcli {

// Ends at `exit` or the end of input: done. CommandError when the state cannot be loaded.
ExitCode runShell(Options const& options);

std::string promptFor(std::string const& statePath);

}  // namespace tpcli
