// The readers of the top-level sections of a state file, each filling its part of the device
// state. Status is read last, since where live counters go depends on the hardware section.
#pragma once

#include "Node.h"
#include "StateLoader/DeviceState.h"

namespace StateLoader {

void readHardware(Node const& node, DeviceState& state);
void readFieldSets(Node const& node, DeviceState& state);
void readTrafficPolicies(Node const& node, DeviceState& state);
void readInterfaces(Node const& node, DeviceState& state);
void readVrfs(Node const& node, DeviceState& state);
void readStatus(Node const& node, DeviceState& state);

}  // namespace StateLoader
