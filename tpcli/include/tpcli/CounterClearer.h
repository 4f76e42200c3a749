// Running a clear request against a device state: for each direction the request covers, the
// library's snapshot helper of the state's counter back end records the direction's live counters
// in its snapshot store. Storing the snapshots is the caller's part.
#pragma once

#include "StateLoader/DeviceState.h"
#include "tpcli/Command.h"
#include "tpcli/FactoryTable.h"

namespace tpcli {

void clearCounters(FactoryTable const& factories, StateLoader::DeviceState const& state,
                   ClearCountersRequest const& request);

}  // namespace tpcli
