// `tpcli [-s STATE] --complete WORD... PARTIAL`, which the bash completion script runs: the words
// that may stand where PARTIAL is being typed after the command's WORDs, one per line, from the
// same grammar as the shell's completion. The state is loaded only when names are asked for.
#pragma once

#include <string>

#include "tpcli/Options.h"

namespace tpcli {

std::string wordCompletions(Options const& options);

}  // namespace tpcli
