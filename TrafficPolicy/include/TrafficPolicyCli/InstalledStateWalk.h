// The installed-state walk that the interface variant (per direction) and the CPU variant (per
// VRF, over merged status) share: every name whose status is programmed for the option goes into
// the applied list, every failed one into the failed list, and the rest into neither.
#pragma once

#include "TrafficPolicyCli/InterfaceRecords.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

// Named after the step it is in traces; `addApplied` and `addFailed` take the name and create the
// option's list on first use.
template <typename StatusMap, typename AddApplied, typename AddFailed>
void _cacheInterfaceInstalledState(StatusMap const& statuses,
                                   PolicyMap::ClassMapMatchOption matchOption,
                                   AddApplied&& addApplied, AddFailed&& addFailed) {
   for (auto const& [name, status] : statuses) {
      if (status->isProgrammed(matchOption)) {
         TP_TRACE(7) << "Applied on " << name.view();
         addApplied(name);
      } else if (status->isFailed(matchOption)) {
         TP_TRACE(7) << "Failed on " << name.view();
         addFailed(name);
      } else {
         TP_TRACE(7) << name.view() << " is not processed";
      }
   }
}

}  // namespace TrafficPolicyCli
