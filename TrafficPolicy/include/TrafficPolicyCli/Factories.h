// The library's exported factories, found by name with dlsym. Each returns a new show object; the
// arguments are read-only handles to the device's model entities and the command's options.
#pragma once

#include "Classification/FieldSetConfig.h"
#include "Classification/Range.h"
#include "Ip/AllVrfConfig.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "L3/IntfStatus.h"
#include "PolicyMap/AttachmentConfig.h"
#include "PolicyMap/Counters.h"
#include "Quoll/IpGenPrefix.h"
#include "TrafficPolicy/Counter.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"
#include "TrafficPolicyCli/CounterSnapshotHelpers.h"
#include "TrafficPolicyCli/Export.h"
#include "TrafficPolicyCli/ShowCommand.h"

namespace TrafficPolicyCli {

template <typename T>
using Handle = Kel::Ptr<T const> const&;

// The arguments every policy show object takes, in order.
#define TRAFFIC_POLICY_CLI_BASE_ARGUMENTS                                                   \
   Handle<TrafficPolicy::TrafficPolicyConfig> config, Handle<TrafficPolicy::Status> status, \
       Handle<TrafficPolicy::Counter> counter, Kel::String const &policyName, bool summary, \
       bool errors, bool detail, bool counters, bool fifthFlag,                             \
       Handle<Classification::FieldSetConfig> fieldSetConfig,                               \
       Handle<TrafficPolicy::HwStatus> trafficPolicyHwStatus,                               \
       Handle<PolicyMap::Counters::PolicyMapTypeCounters> counterTable

// What the interface show object takes after the base arguments.
#define TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS                                               \
   Handle<TrafficPolicy::Status> statusOutput, Handle<TrafficPolicy::Counter> counterOutput, \
       Handle<PolicyMap::IntfConfig> intfConfigInput,                                        \
       Handle<PolicyMap::IntfConfig> intfConfigOutput,                                       \
       Handle<TrafficPolicy::TrafficPolicyIntfParamStatus> policyParamStatus,                \
       Handle<PolicyMap::Counters::PolicyMapTypeCounters> counterStatusOutput,               \
       bool filterInputPolicies, bool filterOutputPolicies

// What the CPU show object takes after the base arguments.
#define TRAFFIC_POLICY_CLI_CPU_ARGUMENTS                                          \
   Handle<PolicyMap::VrfConfig> vrfConfig, Handle<Ip::AllVrfConfig> allVrfConfig, \
       Handle<L3::Intf::StatusDir> l3IntfStatusDir

// The same three lists as arguments, for passing them on unchanged.
#define TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES                                        \
   config, status, counter, policyName, summary, errors, detail, counters, fifthFlag, \
       fieldSetConfig, trafficPolicyHwStatus, counterTable
#define TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENT_NAMES                                   \
   statusOutput, counterOutput, intfConfigInput, intfConfigOutput, policyParamStatus, \
       counterStatusOutput, filterInputPolicies, filterOutputPolicies
#define TRAFFIC_POLICY_CLI_CPU_ARGUMENT_NAMES vrfConfig, allVrfConfig, l3IntfStatusDir

// The factories have C names so that the command layer finds them with dlsym, but C++ on both sides
// of the call: both are built by the same compiler against the same platform, so returning C++
// types is safe, which clang would otherwise question.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" {

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<ShowCommand> showTrafficPolicyBaseFactory(
    TRAFFIC_POLICY_CLI_BASE_ARGUMENTS);

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<ShowCommand> showTrafficPolicyInterfaceFactory(
    TRAFFIC_POLICY_CLI_BASE_ARGUMENTS, TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS);

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<ShowCommand> showTrafficPolicyCpuFactory(
    TRAFFIC_POLICY_CLI_BASE_ARGUMENTS, TRAFFIC_POLICY_CLI_CPU_ARGUMENTS);

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<ShowCommand> showTrafficPolicyPrefixFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool ipv4, bool filterPrefix, Quoll::IpGenPrefix const& prefix, bool exact);

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<ShowCommand> showTrafficPolicyL4PortFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool filterPorts, Classification::PortRange const& ports);

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<ShowCommand> showTrafficPolicyVlanFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool filterVlans, Classification::VlanRange const& vlans);

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<TrafficPolicyLedgerCounterSnapshotHelper>
trafficPolicyLedgerCounterSnapshotHelperFactory(Handle<PolicyMap::PolicyMapTypeStatus> typeStatus,
                                                Kel::Ptr<TrafficPolicy::Counter> const& counter);

TRAFFIC_POLICY_CLI_EXPORT Kel::Ptr<TrafficPolicyPylonCounterSnapshotHelper>
trafficPolicyPylonCounterSnapshotHelperFactory(
    Handle<PolicyMap::Counters::PolicyMapTypeCounters> typeCounters,
    Kel::Ptr<TrafficPolicy::Counter> const& counter, bool perInterface);

}  // extern "C"
#ifdef __clang__
#pragma clang diagnostic pop
#endif

// The factories' types, for finding them with dlsym.
using ShowTrafficPolicyInterfaceFactory = decltype(&showTrafficPolicyInterfaceFactory);
using ShowTrafficPolicyCpuFactory = decltype(&showTrafficPolicyCpuFactory);
using ShowTrafficPolicyPrefixFieldSetFactory = decltype(&showTrafficPolicyPrefixFieldSetFactory);
using ShowTrafficPolicyL4PortFieldSetFactory = decltype(&showTrafficPolicyL4PortFieldSetFactory);
using ShowTrafficPolicyVlanFieldSetFactory = decltype(&showTrafficPolicyVlanFieldSetFactory);
using TrafficPolicyLedgerCounterSnapshotHelperFactory =
    decltype(&trafficPolicyLedgerCounterSnapshotHelperFactory);
using TrafficPolicyPylonCounterSnapshotHelperFactory =
    decltype(&trafficPolicyPylonCounterSnapshotHelperFactory);

}  // namespace TrafficPolicyCli
