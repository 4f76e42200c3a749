// The CPU show object: its handles and the records it creates.
#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"

#include "Kel/Value.h"

namespace TrafficPolicyCli {

ShowTrafficPolicyCpu::ShowTrafficPolicyCpu(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                           TRAFFIC_POLICY_CLI_CPU_ARGUMENTS)
    : ShowTrafficPolicyBase(config, status, counter, policyName, summary, errors, detail, counters,
                            fifthFlag, fieldSetConfig, trafficPolicyHwStatus, counterTable),
      vrfConfig_(vrfConfig),
      allVrfConfig_(allVrfConfig),
      l3IntfStatusDir_(l3IntfStatusDir) {}

Kel::TypeInfo const& ShowTrafficPolicyCpu::fwkType() const {
   using Self = ShowTrafficPolicyCpu;
   static Kel::TypeInfo const info("TrafficPolicyCli::ShowTrafficPolicyCpu",
                                   &ShowTrafficPolicyBase::typeInfo(),
                                   {Kel::readOnly("vrfConfig", &Self::vrfConfig),
                                    Kel::readOnly("allVrfConfig", &Self::allVrfConfig),
                                    Kel::readOnly("l3IntfStatusDir", &Self::l3IntfStatusDir)});
   return info;
}

Kel::Ptr<PolicyState> ShowTrafficPolicyCpu::getOrCreatePolicyState(Kel::String const& policyName) {
   return policyStateOrCreate(policyName, &policyStateCpuFactory);
}

}  // namespace TrafficPolicyCli
