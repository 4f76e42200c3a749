// The interface show object: its handles and the records it creates.
#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"

#include "Kel/Value.h"

namespace TrafficPolicyCli {

ShowTrafficPolicyInterface::ShowTrafficPolicyInterface(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                       TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS)
    : ShowTrafficPolicyBase(config, status, counter, policyName, summary, errors, detail, counters,
                            fifthFlag, fieldSetConfig, trafficPolicyHwStatus, counterTable),
      statusOutput_(statusOutput),
      counterOutput_(counterOutput),
      intfConfigInput_(intfConfigInput),
      intfConfigOutput_(intfConfigOutput),
      policyParamStatus_(policyParamStatus),
      counterStatusOutput_(counterStatusOutput),
      filterInputPolicies_(filterInputPolicies),
      filterOutputPolicies_(filterOutputPolicies) {}

Kel::TypeInfo const& ShowTrafficPolicyInterface::fwkType() const {
   using Self = ShowTrafficPolicyInterface;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::ShowTrafficPolicyInterface", &ShowTrafficPolicyBase::typeInfo(),
       {Kel::readOnly("statusOutput", &Self::statusOutput),
        Kel::readOnly("counterOutput", &Self::counterOutput),
        Kel::readOnly("intfConfigInput", &Self::intfConfigInput),
        Kel::readOnly("intfConfigOutput", &Self::intfConfigOutput),
        Kel::readOnly("policyParamStatus", &Self::policyParamStatus),
        Kel::readOnly("counterStatusOutput", &Self::counterStatusOutput),
        Kel::readOnly("filterInputPolicies", &Self::filterInputPolicies),
        Kel::readOnly("filterOutputPolicies", &Self::filterOutputPolicies),
        Kel::readOnly("outputCounterHelper", &Self::outputCounterHelper),
        Kel::scalar("cacheInputPolicy", &Self::cacheInputPolicy, &Self::cacheInputPolicyIs)});
   return info;
}

Kel::Ptr<PolicyState> ShowTrafficPolicyInterface::getOrCreatePolicyState(
    Kel::String const& policyName) {
   return policyStateOrCreate(policyName, &policyStateInterfaceFactory);
}

}  // namespace TrafficPolicyCli
