// The text of a snapshot file: every direction's snapshot store as JSON, one counter a line.
#pragma once

#include <string>

#include "StateLoader/DeviceState.h"

namespace StateLoader {

std::string snapshotsText(DeviceState const& state);

}  // namespace StateLoader
