// The names a loaded state offers to help and completion: its policies and its field sets of
// each type.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "StateLoader/DeviceState.h"
#include "tpcli/WordReader.h"

namespace tpcli {

// The names of `kind` that start with `prefix`, in order; none for NameKind::none.
std::vector<std::string> stateNames(StateLoader::DeviceState const& state, NameKind kind,
                                    std::string_view prefix);

}  // namespace tpcli
