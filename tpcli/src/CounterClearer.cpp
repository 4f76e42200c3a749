// Which directions a clear covers, and which helper clears each.
#include "tpcli/CounterClearer.h"

#include <vector>

#include "Kel/ActivityLock.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"

namespace tpcli {

namespace {

using Directions = std::vector<StateLoader::DirectionState const*>;

Directions directionsOf(StateLoader::DeviceState const& state,
                        ClearCountersRequest const& request) {
   switch (request.scope) {
      case ClearScope::all:
         return {&state.interfaceInput, &state.interfaceOutput, &state.cpu};
      case ClearScope::cpu:
         return {&state.cpu};
      case ClearScope::interface:
         break;
   }
   switch (request.direction) {
      case Direction::input:
         return {&state.interfaceInput};
      case Direction::output:
         return {&state.interfaceOutput};
      case Direction::both:
         break;
   }
   return {&state.interfaceInput, &state.interfaceOutput};
}

// The same back end as the show commands read: the shared-memory table where the hardware
// publishes counters there, else the status. Named counters are snapshotted per interface where
// the direction keeps them so.
void clearDirection(FactoryTable const& factories, StateLoader::DeviceState const& state,
                    StateLoader::DirectionState const& direction) {
   if (TrafficPolicy::counterBackEndOf(state.hwStatus.get()) ==
       TrafficPolicy::CounterBackEnd::pylon) {
      factories
          .pylonSnapshotHelper(direction.counterTable, direction.counter,
                               direction.status->perInterfaceCounters())
          ->clearCounter();
   } else {
      factories.ledgerSnapshotHelper(direction.status, direction.counter)->clearCounter();
   }
}

}  // namespace

void clearCounters(FactoryTable const& factories, StateLoader::DeviceState const& state,
                   ClearCountersRequest const& request) {
   Kel::ActivityLockGuard const lock(Kel::ActivityLock::instance());
   for (auto const* direction : directionsOf(state, request)) {
      clearDirection(factories, state, *direction);
   }
}

}  // namespace tpcli
