// The exported factories: each makes its show object, switches its notifications on and hands
// it over as a counted reference.
#include "TrafficPolicyCli/Factories.h"

#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"
#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"
#include "TrafficPolicyCli/ShowTrafficPolicyPrefixFieldSet.h"
#include "TrafficPolicyCli/ShowTrafficPolicyRangeFieldSets.h"

namespace TrafficPolicyCli {

namespace {

template <typename Command, typename... Args>
Kel::Ptr<ShowCommand> made(Args const&... args) {
   Kel::Ptr<ShowCommand> command = Kel::make<Command>(args...);
   command->hasNotificationActiveIs(true);
   return command;
}

}  // namespace

Kel::Ptr<ShowCommand> showTrafficPolicyBaseFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS) {
   return made<ShowTrafficPolicyBase>(TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES);
}

Kel::Ptr<ShowCommand> showTrafficPolicyInterfaceFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                        TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS) {
   return made<ShowTrafficPolicyInterface>(TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES,
                                           TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENT_NAMES);
}

Kel::Ptr<ShowCommand> showTrafficPolicyCpuFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                  TRAFFIC_POLICY_CLI_CPU_ARGUMENTS) {
   return made<ShowTrafficPolicyCpu>(TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES,
                                     TRAFFIC_POLICY_CLI_CPU_ARGUMENT_NAMES);
}

Kel::Ptr<ShowCommand> showTrafficPolicyPrefixFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool ipv4, bool filterPrefix, Quoll::IpGenPrefix const& prefix, bool exact) {
   return made<ShowTrafficPolicyPrefixFieldSet>(fieldSetConfig, fieldSetName, ipv4, filterPrefix,
                                                prefix, exact);
}

Kel::Ptr<ShowCommand> showTrafficPolicyL4PortFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool filterPorts, Classification::PortRange const& ports) {
   return made<ShowTrafficPolicyL4PortFieldSet>(fieldSetConfig, fieldSetName, filterPorts, ports);
}

Kel::Ptr<ShowCommand> showTrafficPolicyVlanFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool filterVlans, Classification::VlanRange const& vlans) {
   return made<ShowTrafficPolicyVlanFieldSet>(fieldSetConfig, fieldSetName, filterVlans, vlans);
}

}  // namespace TrafficPolicyCli
