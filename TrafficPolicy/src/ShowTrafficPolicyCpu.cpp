// The CPU show object. Policies are configured per VRF but their status comes per interface, so
// the status is regrouped by each interface's VRF before the applied and failed VRFs are decided.
#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"

#include "Kel/Value.h"
#include "TrafficPolicyCli/InstalledStateWalk.h"

namespace TrafficPolicyCli {

ShowTrafficPolicyCpu::ShowTrafficPolicyCpu(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                           TRAFFIC_POLICY_CLI_CPU_ARGUMENTS)
    : ShowTrafficPolicyBase(TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES),
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

Kel::Ptr<PolicyStateCpu> ShowTrafficPolicyCpu::cpuRecord(Kel::String const& policyName) {
   return Kel::ptrCast<PolicyStateCpu>(getOrCreatePolicyState(policyName));
}

void ShowTrafficPolicyCpu::cachePoliciesState() {
   if (vrfConfig_) {
      for (auto const& [vrfName, policyName] : vrfConfig_->vrf()) {
         cpuRecord(policyName)->configuredVrfIs(vrfName, true);
      }
   }
   ShowTrafficPolicyBase::cachePoliciesState();
}

void ShowTrafficPolicyCpu::cacheIntfStatus(PolicyMapStatusPtr const& policyStatus) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyCpu::cacheIntfStatus("
                  "const PtrConst&)";
   auto record = cpuRecord(policyStatus->name());
   if (!l3IntfStatusDir_) {
      return;
   }
   auto const& l3Statuses = l3IntfStatusDir_->intfStatus();
   for (auto const& [intfId, intfStatus] : policyStatus->intfStatus()) {
      auto const* l3Status = l3Statuses.lookup(intfId);
      if (!l3Status) {
         continue;
      }
      auto vrfStatus = record->vrfIntfStatusIs((*l3Status)->vrf());
      vrfStatus->intfStatusIs(intfStatus);
      vrfStatus->intfCountIs(vrfStatus->intfCount() + 1);
   }
}

void ShowTrafficPolicyCpu::cacheInstalledState(PolicyMapStatusPtr const& policyStatus,
                                               PolicyMap::ClassMapMatchOption matchOption) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyCpu::cacheInstalledState("
                  "const PtrConst&, PolicyMap::ClassMapMatchOption) matchOption "
               << matchOption;
   auto record = cpuRecord(policyStatus->name());
   _cacheInterfaceInstalledState(
       record->vrfIntfStatus(), matchOption,
       [&](L3::VrfName const& vrf) { record->appliedVrfIs(matchOption)->vrfListIs(vrf, true); },
       [&](L3::VrfName const& vrf) { record->failedVrfIs(matchOption)->vrfListIs(vrf, true); });
}

void ShowTrafficPolicyCpu::cacheInstallError(PolicyMapStatusPtr const& policyStatus,
                                             PolicyMap::ClassMapMatchOption matchOption) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyCpu::cacheInstallError("
                  "const PtrConst&, PolicyMap::ClassMapMatchOption), option:"
               << matchOption;
   auto record = cpuRecord(policyStatus->name());
   auto const* failed = record->failedVrf().lookup(matchOption);
   if (!failed) {
      TP_TRACE(8) << "No failures for option: " << matchOption;
      return;
   }
   auto errors = record->installErrorCollIs(matchOption);
   for (auto const& [vrf, listed] : (*failed)->vrfList()) {
      // A VRF is in the failed list only because it has a merged status.
      InterfaceStatus::PtrConst const status(record->vrfIntfStatus(vrf));
      errors->vrfErrorIs(vrf, getInstalledErrorString(status, matchOption));
   }
}
}  // namespace TrafficPolicyCli
