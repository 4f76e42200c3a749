// Loading a state snapshot file. The loader is the only place that reads input, so it checks
// everything the show library would otherwise assert on: no file can reach an assertion.
#pragma once

#include <string>

#include "Kel/Expected.h"
#include "StateLoader/DeviceState.h"

namespace StateLoader {

// On failure the reason is one line: "FILE: /json/pointer: what is wrong", where the pointer
// (RFC 6901) names the value at fault; problems of the file as a whole or of its top-level value
// (a missing file, an empty one, a top level that is not an object) read "FILE: what is wrong".
// The loader prints nothing itself.
Kel::Expected<DeviceState> loadState(std::string const& path);

}  // namespace StateLoader
