// The directions of a snapshot file, by the keys the file gives them: the same as in the state's
// status section.
#pragma once

#include <array>
#include <string_view>

#include "StateLoader/DeviceState.h"

namespace StateLoader {

struct SnapshotDirection {
   std::string_view key;
   DirectionState DeviceState::*direction;
};

inline constexpr std::array kSnapshotDirections = {
    SnapshotDirection{"interfaceInput", &DeviceState::interfaceInput},
    SnapshotDirection{"interfaceOutput", &DeviceState::interfaceOutput},
    SnapshotDirection{"cpu", &DeviceState::cpu},
};

}  // namespace StateLoader
