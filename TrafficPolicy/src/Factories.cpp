// The exported factories. Until the interface, CPU and field-set views are built, every factory
// makes the base show object, which renders nothing.
#include "TrafficPolicyCli/Factories.h"

#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"

namespace TrafficPolicyCli {

namespace {

Kel::Ptr<ShowCommand> emptyShowCommand() {
   Kel::Ptr<ShowCommand> command =
       Kel::make<ShowTrafficPolicyBase>(nullptr, nullptr, nullptr, Kel::String(), false, false,
                                        false, false, false, nullptr, nullptr, nullptr);
   command->hasNotificationActiveIs(true);
   return command;
}

}  // namespace

Kel::Ptr<ShowCommand> showTrafficPolicyBaseFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS) {
   Kel::Ptr<ShowCommand> command = Kel::make<ShowTrafficPolicyBase>(
       config, status, counter, policyName, summary, errors, detail, counters, fifthFlag,
       fieldSetConfig, trafficPolicyHwStatus, counterTable);
   command->hasNotificationActiveIs(true);
   return command;
}

Kel::Ptr<ShowCommand> showTrafficPolicyInterfaceFactory(
    TRAFFIC_POLICY_CLI_BASE_ARGUMENTS, Handle<TrafficPolicy::Status>,
    Handle<TrafficPolicy::Counter>, Handle<PolicyMap::IntfConfig>, Handle<PolicyMap::IntfConfig>,
    Handle<TrafficPolicy::TrafficPolicyIntfParamStatus>,
    Handle<PolicyMap::Counters::PolicyMapTypeCounters>, bool, bool) {
   return showTrafficPolicyBaseFactory(config, status, counter, policyName, summary, errors, detail,
                                       counters, fifthFlag, fieldSetConfig, trafficPolicyHwStatus,
                                       counterTable);
}

Kel::Ptr<ShowCommand> showTrafficPolicyCpuFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                  Handle<PolicyMap::VrfConfig>,
                                                  Handle<Ip::AllVrfConfig>,
                                                  Handle<L3::Intf::StatusDir>) {
   return showTrafficPolicyBaseFactory(config, status, counter, policyName, summary, errors, detail,
                                       counters, fifthFlag, fieldSetConfig, trafficPolicyHwStatus,
                                       counterTable);
}

Kel::Ptr<ShowCommand> showTrafficPolicyPrefixFieldSetFactory(Handle<Classification::FieldSetConfig>,
                                                             Kel::String const&, bool, bool,
                                                             Quoll::IpGenPrefix const&, bool) {
   return emptyShowCommand();
}

Kel::Ptr<ShowCommand> showTrafficPolicyL4PortFieldSetFactory(Handle<Classification::FieldSetConfig>,
                                                             Kel::String const&, bool,
                                                             Classification::PortRange const&) {
   return emptyShowCommand();
}

Kel::Ptr<ShowCommand> showTrafficPolicyVlanFieldSetFactory(Handle<Classification::FieldSetConfig>,
                                                           Kel::String const&, bool,
                                                           Classification::VlanRange const&) {
   return emptyShowCommand();
}

}  // namespace TrafficPolicyCli
