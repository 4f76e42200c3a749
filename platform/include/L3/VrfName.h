// VRF names are plain strings in the object model.
#pragma once

#include "Kel/String.h"

namespace L3 {

using VrfName = Kel::String;

}  // namespace L3
