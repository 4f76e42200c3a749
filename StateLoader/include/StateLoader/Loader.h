// Loading a state snapshot file. The loader is the only place that reads input, so it checks
// everything the show library would otherwise assert on: no file can reach an assertion.
#pragma once

#include <string>

#include "Kel/Expected.h"
#include "StateLoader/DeviceState.h"

namespace StateLoader {

// On failure the reason is one line: "FILE: /json/pointer: what is wrong" (the pointer is empty
// for problems of the file as a whole, such as a missing file).
Kel::Expected<DeviceState> loadState(std::string const& path);

}  // namespace StateLoader
