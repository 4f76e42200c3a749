// The loader with the text cut into pieces as `limits` say, so that tests can cut small files as
// finely as large ones are cut.
#pragma once

#include <string>

#include "Kel/Expected.h"
#include "StateLoader/DeviceState.h"
#include "TextPieces.h"

namespace StateLoader {

Kel::Expected<DeviceState> loadState(std::string const& path, PieceLimits const& limits);

}  // namespace StateLoader
