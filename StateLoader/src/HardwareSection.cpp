// "hardware": whether the platform publishes policy counters in the shared-memory table, and how
// finely counters are kept on ingress and egress.
#include <array>

#include "Choice.h"
#include "Members.h"
#include "Sections.h"

namespace StateLoader {

namespace {

using TrafficPolicy::TrafficPolicyIntfParamStatus;

constexpr std::array kGranularities = {
    Choice<std::uint8_t>{"notEnabled", TrafficPolicy::counterNotEnabled},
    Choice<std::uint8_t>{"perPolicy", TrafficPolicy::counterPerPolicy},
    Choice<std::uint8_t>{"perInterface", TrafficPolicy::counterPerInterface},
};

template <void (TrafficPolicyIntfParamStatus::*set)(std::uint8_t) noexcept>
void readGranularity(Node const& value, DeviceState& state) {
   ((*state.intfParamStatus).*set)(readChoice(value, kGranularities, "counter granularity"));
}

constexpr MemberTable kHardwareMembers = std::array{
    Member<DeviceState>{"sharedMemoryCounters",
                        [](Node const& value, DeviceState& state) {
                           state.hwStatus->sharedMemoryCountersIs(asBool(value));
                        }},
    Member<DeviceState>{
        "ingressCounterGranularity",
        readGranularity<&TrafficPolicyIntfParamStatus::ingressCounterGranularityIs>},
    Member<DeviceState>{"egressCounterGranularity",
                        readGranularity<&TrafficPolicyIntfParamStatus::egressCounterGranularityIs>},
};

}  // namespace

void readHardware(Node const& node, DeviceState& state) {
   readMembers(node, kHardwareMembers, state);
}

}  // namespace StateLoader
