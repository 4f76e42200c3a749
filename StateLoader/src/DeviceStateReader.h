// The whole device state from a state document: the top-level sections, each read by its own
// reader, in the order their dependencies need.
#pragma once

#include "Node.h"
#include "StateLoader/DeviceState.h"

namespace StateLoader {

// Throws StateError.
DeviceState readDeviceState(Node const& root);

}  // namespace StateLoader
