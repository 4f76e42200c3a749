// The whole device state from a parsed state document: the top-level sections, each read by its
// own reader, in the order their dependencies need.
#pragma once

#include <simdjson.h>

#include "StateLoader/DeviceState.h"

namespace StateLoader {

// Throws StateError.
DeviceState readDeviceState(simdjson::dom::element root);

}  // namespace StateLoader
