// One device's state as the show library sees it: the model entities that the command layer
// hands to the library's factories, filled from a state snapshot file.
#pragma once

#include "Classification/FieldSetConfig.h"
#include "Ip/AllVrfConfig.h"
#include "Kel/Ptr.h"
#include "L3/IntfStatus.h"
#include "PolicyMap/AttachmentConfig.h"
#include "PolicyMap/Counters.h"
#include "TrafficPolicy/Counter.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"

namespace StateLoader {

// Status, snapshot store and shared-memory counter table of one attachment point and direction.
struct DirectionState {
   Kel::Ptr<TrafficPolicy::Status> status;
   Kel::Ptr<TrafficPolicy::Counter> counter;
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters> counterTable;
};

// Every handle is set after a successful load (empty sections give empty entities).
struct DeviceState {
   Kel::Ptr<TrafficPolicy::TrafficPolicyConfig> config;
   Kel::Ptr<Classification::FieldSetConfig> fieldSetConfig;
   Kel::Ptr<PolicyMap::IntfConfig> intfConfigInput;
   Kel::Ptr<PolicyMap::IntfConfig> intfConfigOutput;
   Kel::Ptr<L3::Intf::StatusDir> l3IntfStatusDir;
   Kel::Ptr<PolicyMap::VrfConfig> vrfConfig;
   Kel::Ptr<Ip::AllVrfConfig> allVrfConfig;
   Kel::Ptr<TrafficPolicy::HwStatus> hwStatus;
   Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus> intfParamStatus;
   DirectionState interfaceInput;
   DirectionState interfaceOutput;
   DirectionState cpu;
};

}  // namespace StateLoader
