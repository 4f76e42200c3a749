// The show object for policies applied to interfaces, in the input and output directions.
#pragma once

#include "TrafficPolicyCli/PolicyStateVariants.h"
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"

namespace TrafficPolicyCli {

class ShowTrafficPolicyInterface : public ShowTrafficPolicyBase {
 public:
   ShowTrafficPolicyInterface(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                              TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS);

   Kel::TypeInfo const& fwkType() const override;

   void renderTrafficPolicy(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override;
   void renderTrafficPolicyCounters(std::uint32_t fd, std::uint32_t fmt,
                                    std::uint32_t revision) override;

   // Configured interfaces of both directions first, so that a policy without status still has
   // a record; then the input status, then the output status.
   void cachePoliciesState() override;
   void cachePolicyState(Kel::String const& policyName) override;
   void cacheIntfStatus(PolicyMapStatusPtr const& policyStatus) override;
   void cacheInstalledState(PolicyMapStatusPtr const& policyStatus,
                            PolicyMap::ClassMapMatchOption matchOption) override;
   void cacheInstallError(PolicyMapStatusPtr const& policyStatus,
                          PolicyMap::ClassMapMatchOption matchOption) override;
   void cacheCounters(Kel::String const& policyName) override;
   Kel::Ptr<PolicyState> getOrCreatePolicyState(Kel::String const& policyName) override;
   void renderCountAction(vellum::RendererV2* renderer, std::uint32_t ruleIndex,
                          PolicyState::PtrConst const& policyState,
                          Kel::Ptr<PolicyMap::CountAction const> const& action,
                          std::uint32_t indent) override;
   Kel::Ptr<CounterReader const> createCounterStatusHelper(bool isInput) override;
   PolicyMapStatusPtr getPolicyMapStatus(Kel::String const& policyName) override;
   void cachePolicyMapStatus(PolicyMapStatusPtr const& policyStatus) override;
   void cacheClassMapStatus(
       Kel::String const& policyName, std::uint32_t ruleIndex,
       Kel::Ptr<PolicyMap::ClassMapStatus const> const& classMapStatus) override;

   // The counter reader of one direction; null before caching created it.
   Kel::Ptr<CounterReader const> getCounterStatusHelper(bool isInput) const;

   Kel::Ptr<TrafficPolicy::Status const> const& statusOutput() const noexcept {
      return statusOutput_;
   }
   Kel::Ptr<TrafficPolicy::Counter const> const& counterOutput() const noexcept {
      return counterOutput_;
   }
   Kel::Ptr<PolicyMap::IntfConfig const> const& intfConfigInput() const noexcept {
      return intfConfigInput_;
   }
   Kel::Ptr<PolicyMap::IntfConfig const> const& intfConfigOutput() const noexcept {
      return intfConfigOutput_;
   }
   Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus const> const& policyParamStatus()
       const noexcept {
      return policyParamStatus_;
   }
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters const> const& counterStatusOutput()
       const noexcept {
      return counterStatusOutput_;
   }
   bool filterInputPolicies() const noexcept { return filterInputPolicies_; }
   bool filterOutputPolicies() const noexcept { return filterOutputPolicies_; }
   Kel::Ptr<CounterReader const> const& outputCounterHelper() const noexcept {
      return outputCounterHelper_;
   }
   bool cacheInputPolicy() const noexcept { return cacheInputPolicy_; }
   void cacheInputPolicyIs(bool input) noexcept { cacheInputPolicy_ = input; }

 private:
   Kel::Ptr<PolicyStateInterface> interfaceRecord(Kel::String const& policyName);
   void cacheConfiguredInterfaces(Kel::Ptr<PolicyMap::IntfConfig const> const& intfConfig,
                                  bool isInput);

   Kel::Ptr<TrafficPolicy::Status const> statusOutput_;
   Kel::Ptr<TrafficPolicy::Counter const> counterOutput_;
   Kel::Ptr<PolicyMap::IntfConfig const> intfConfigInput_;
   Kel::Ptr<PolicyMap::IntfConfig const> intfConfigOutput_;
   Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus const> policyParamStatus_;
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters const> counterStatusOutput_;
   bool filterInputPolicies_;
   bool filterOutputPolicies_;
   Kel::Ptr<CounterReader const> outputCounterHelper_;
   bool cacheInputPolicy_ = true;
};

}  // namespace TrafficPolicyCli
