// The exported factories: each makes its show object, switches its notifications on and hands
// it over as a counted reference.
#include "TrafficPolicyCli/Factories.h"

#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"
#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"

namespace TrafficPolicyCli {

namespace {

template <typename Command, typename... Args>
Kel::Ptr<ShowCommand> made(Args const&... args) {
   Kel::Ptr<ShowCommand> command = Kel::make<Command>(args...);
   command->hasNotificationActiveIs(true);
   return command;
}

// Until the field-set listings are built, their commands list nothing: a base object without
// policies to cache.
Kel::Ptr<ShowCommand> fieldSetListing(Handle<Classification::FieldSetConfig> fieldSetConfig) {
   return made<ShowTrafficPolicyBase>(nullptr, nullptr, nullptr, Kel::String(), false, false, false,
                                      false, false, fieldSetConfig, nullptr, nullptr);
}

}  // namespace

Kel::Ptr<ShowCommand> showTrafficPolicyBaseFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS) {
   return made<ShowTrafficPolicyBase>(config, status, counter, policyName, summary, errors, detail,
                                      counters, fifthFlag, fieldSetConfig, trafficPolicyHwStatus,
                                      counterTable);
}

Kel::Ptr<ShowCommand> showTrafficPolicyInterfaceFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                        TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS) {
   return made<ShowTrafficPolicyInterface>(
       config, status, counter, policyName, summary, errors, detail, counters, fifthFlag,
       fieldSetConfig, trafficPolicyHwStatus, counterTable, statusOutput, counterOutput,
       intfConfigInput, intfConfigOutput, policyParamStatus, counterStatusOutput,
       filterInputPolicies, filterOutputPolicies);
}

Kel::Ptr<ShowCommand> showTrafficPolicyCpuFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                  TRAFFIC_POLICY_CLI_CPU_ARGUMENTS) {
   return made<ShowTrafficPolicyCpu>(config, status, counter, policyName, summary, errors, detail,
                                     counters, fifthFlag, fieldSetConfig, trafficPolicyHwStatus,
                                     counterTable, vrfConfig, allVrfConfig, l3IntfStatusDir);
}

Kel::Ptr<ShowCommand> showTrafficPolicyPrefixFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const&, bool, bool,
    Quoll::IpGenPrefix const&, bool) {
   return fieldSetListing(fieldSetConfig);
}

Kel::Ptr<ShowCommand> showTrafficPolicyL4PortFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const&, bool,
    Classification::PortRange const&) {
   return fieldSetListing(fieldSetConfig);
}

Kel::Ptr<ShowCommand> showTrafficPolicyVlanFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const&, bool,
    Classification::VlanRange const&) {
   return fieldSetListing(fieldSetConfig);
}

}  // namespace TrafficPolicyCli
