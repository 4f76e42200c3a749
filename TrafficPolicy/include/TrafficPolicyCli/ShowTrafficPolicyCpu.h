// The show object for policies applied to the control plane, per VRF.
#pragma once

#include "TrafficPolicyCli/PolicyStateVariants.h"
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"

namespace TrafficPolicyCli {

class ShowTrafficPolicyCpu : public ShowTrafficPolicyBase {
 public:
   ShowTrafficPolicyCpu(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS, TRAFFIC_POLICY_CLI_CPU_ARGUMENTS);

   Kel::TypeInfo const& fwkType() const override;

   void renderTrafficPolicy(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override;
   void renderTrafficPolicyCounters(std::uint32_t fd, std::uint32_t fmt,
                                    std::uint32_t revision) override;

   // Configured VRFs first, so that a policy without status still has a record; then the status.
   void cachePoliciesState() override;
   // Interface status regrouped by the VRF of each interface.
   void cacheIntfStatus(PolicyMapStatusPtr const& policyStatus) override;
   void cacheInstalledState(PolicyMapStatusPtr const& policyStatus,
                            PolicyMap::ClassMapMatchOption matchOption) override;
   void cacheInstallError(PolicyMapStatusPtr const& policyStatus,
                          PolicyMap::ClassMapMatchOption matchOption) override;
   Kel::Ptr<PolicyState> getOrCreatePolicyState(Kel::String const& policyName) override;
   void renderCountAction(vellum::RendererV2* renderer, std::uint32_t ruleIndex,
                          PolicyState::PtrConst const& policyState,
                          Kel::Ptr<PolicyMap::CountAction const> const& action,
                          std::uint32_t indent) override;

   Kel::Ptr<PolicyMap::VrfConfig const> const& vrfConfig() const noexcept { return vrfConfig_; }
   Kel::Ptr<Ip::AllVrfConfig const> const& allVrfConfig() const noexcept { return allVrfConfig_; }
   Kel::Ptr<L3::Intf::StatusDir const> const& l3IntfStatusDir() const noexcept {
      return l3IntfStatusDir_;
   }

 private:
   Kel::Ptr<PolicyStateCpu> cpuRecord(Kel::String const& policyName);

   Kel::Ptr<PolicyMap::VrfConfig const> vrfConfig_;
   Kel::Ptr<Ip::AllVrfConfig const> allVrfConfig_;
   Kel::Ptr<L3::Intf::StatusDir const> l3IntfStatusDir_;
};

}  // namespace TrafficPolicyCli
