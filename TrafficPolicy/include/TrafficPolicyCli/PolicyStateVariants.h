// The interface and control-plane (CPU) variants of the policy record. The interface record keeps
// an input and an output half of everything direction-specific; the CPU record keeps its
// interfaces' status regrouped by VRF. Both are final, so that the checked downcast a rule's count
// line makes is one comparison of types.
#pragma once

#include "TrafficPolicyCli/PolicyState.h"

namespace TrafficPolicyCli {

class PolicyStateInterface final : public PolicyState {
 public:
   using PtrConst = Kel::Ptr<PolicyStateInterface const>;
   using OptionIntfLists = Kel::OrderedMap<PolicyMap::ClassMapMatchOption, Kel::Ptr<PerAfIntfList>>;
   using OptionIntfErrors =
       Kel::OrderedMap<PolicyMap::ClassMapMatchOption, Kel::Ptr<InterfaceInstallError>>;
   using IntfStatusMap = Kel::OrderedMap<Kel::String, Kel::Ptr<InterfaceStatus>>;

   using PolicyState::PolicyState;
   Kel::TypeInfo const& fwkType() const override;

   bool filterInputPolicies() const noexcept { return filterInputPolicies_; }
   void filterInputPoliciesIs(bool filter) noexcept { filterInputPolicies_ = filter; }
   bool filterOutputPolicies() const noexcept { return filterOutputPolicies_; }
   void filterOutputPoliciesIs(bool filter) noexcept { filterOutputPolicies_ = filter; }
   Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus const> const& policyParamStatus()
       const noexcept {
      return policyParamStatus_;
   }
   void policyParamStatusIs(Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus const> status) {
      policyParamStatus_ = std::move(status);
   }
   Kel::Ptr<PolicyMap::PolicyMapStatus const> const& policyMapStatusOutput() const noexcept {
      return policyMapStatusOutput_;
   }
   void policyMapStatusOutputIs(Kel::Ptr<PolicyMap::PolicyMapStatus const> status) {
      policyMapStatusOutput_ = std::move(status);
   }
   Kel::Ptr<TrafficPolicy::Counter const> const& counterOutput() const noexcept {
      return counterOutput_;
   }
   void counterOutputIs(Kel::Ptr<TrafficPolicy::Counter const> counter) {
      counterOutput_ = std::move(counter);
   }

   Kel::DenseArray<Kel::Ptr<PolicyMap::ClassMapStatus const>> const& classMapStatusOutput()
       const noexcept {
      return classMapStatusOutput_;
   }
   void classMapStatusOutputIs(std::uint32_t index,
                               Kel::Ptr<PolicyMap::ClassMapStatus const> status) {
      classMapStatusOutput_.set(index, std::move(status));
   }

   Kel::OrderedMap<Kel::String, bool> const& configuredIntfInput() const noexcept {
      return configuredIntf_[input];
   }
   Kel::OrderedMap<Kel::String, bool> const& configuredIntfOutput() const noexcept {
      return configuredIntf_[output];
   }
   void configuredIntfInputIs(Kel::String const& intf, bool configured) {
      configuredIntf_[input].insertOrAssign(intf, configured);
   }
   void configuredIntfOutputIs(Kel::String const& intf, bool configured) {
      configuredIntf_[output].insertOrAssign(intf, configured);
   }

   OptionIntfLists const& appliedIntfInput() const noexcept { return appliedIntf_[input]; }
   OptionIntfLists const& appliedIntfOutput() const noexcept { return appliedIntf_[output]; }
   // Create the option's list when it is missing.
   Kel::Ptr<PerAfIntfList> appliedIntfInputIs(PolicyMap::ClassMapMatchOption option) {
      return listIs(appliedIntf_[input], option);
   }
   Kel::Ptr<PerAfIntfList> appliedIntfOutputIs(PolicyMap::ClassMapMatchOption option) {
      return listIs(appliedIntf_[output], option);
   }
   OptionIntfLists const& failedIntfInput() const noexcept { return failedIntf_[input]; }
   OptionIntfLists const& failedIntfOutput() const noexcept { return failedIntf_[output]; }
   Kel::Ptr<PerAfIntfList> failedIntfInputIs(PolicyMap::ClassMapMatchOption option) {
      return listIs(failedIntf_[input], option);
   }
   Kel::Ptr<PerAfIntfList> failedIntfOutputIs(PolicyMap::ClassMapMatchOption option) {
      return listIs(failedIntf_[output], option);
   }

   OptionIntfErrors const& installErrorCollInput() const noexcept { return installError_[input]; }
   OptionIntfErrors const& installErrorCollOutput() const noexcept { return installError_[output]; }

   IntfStatusMap const& interfaceStatusInput() const noexcept { return interfaceStatus_[input]; }
   IntfStatusMap const& interfaceStatusOutput() const noexcept { return interfaceStatus_[output]; }
   void interfaceStatusInputIs(Kel::String const& intf, Kel::Ptr<InterfaceStatus> status) {
      interfaceStatus_[input].insertOrAssign(intf, std::move(status));
   }
   void interfaceStatusOutputIs(Kel::String const& intf, Kel::Ptr<InterfaceStatus> status) {
      interfaceStatus_[output].insertOrAssign(intf, std::move(status));
   }

   bool countersPerInterfaceInput() const noexcept { return countersPerInterface_[input]; }
   void countersPerInterfaceInputIs(bool perInterface) noexcept {
      countersPerInterface_[input] = perInterface;
   }
   bool countersPerInterfaceOutput() const noexcept { return countersPerInterface_[output]; }
   void countersPerInterfaceOutputIs(bool perInterface) noexcept {
      countersPerInterface_[output] = perInterface;
   }

   CounterDataMap const& outputClassCounters() const noexcept { return outputClassCounters_; }
   void outputClassCountersIs(Kel::Ptr<PolicyMap::PacketDataStatus const> const& status) {
      outputClassCounters_.insertOrAssign(status->name(), status);
   }
   CounterDataMap const& outputNamedCounters() const noexcept { return outputNamedCounters_; }
   void outputNamedCountersIs(Kel::Ptr<PolicyMap::PacketDataStatus const> const& status) {
      outputNamedCounters_.insertOrAssign(status->name(), status);
   }

   // Per direction: the list, error record or status of an option or interface, or null.
   PerAfIntfList::PtrConst getAppliedIntfList(PolicyMap::ClassMapMatchOption option,
                                              bool isInput) const;
   PerAfIntfList::PtrConst getFailedIntfList(PolicyMap::ClassMapMatchOption option,
                                             bool isInput) const;
   InterfaceInstallError::PtrConst getInstallErrorList(PolicyMap::ClassMapMatchOption option,
                                                       bool isInput) const;
   InterfaceStatus::PtrConst getInterfaceStatus(Kel::String const& intfName, bool isInput) const;
   // Creates (or finds) the option's error record in the chosen direction.
   Kel::Ptr<InterfaceInstallError> createInstallErrorColl(PolicyMap::ClassMapMatchOption option,
                                                          bool isInput);
   void cacheClassCounterData(Kel::Ptr<PolicyMap::PacketDataStatus const> const& status,
                              bool isInput);
   void cacheNamedCounterData(Kel::Ptr<PolicyMap::PacketDataStatus const> const& status,
                              bool isInput);

 private:
   enum Direction { input = 0, output = 1 };
   static std::size_t direction(bool isInput) noexcept { return isInput ? input : output; }
   static Kel::Ptr<PerAfIntfList> listIs(OptionIntfLists& lists,
                                         PolicyMap::ClassMapMatchOption option);

   bool filterInputPolicies_ = false;
   bool filterOutputPolicies_ = false;
   Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus const> policyParamStatus_;
   Kel::Ptr<PolicyMap::PolicyMapStatus const> policyMapStatusOutput_;
   Kel::Ptr<TrafficPolicy::Counter const> counterOutput_;
   Kel::DenseArray<Kel::Ptr<PolicyMap::ClassMapStatus const>> classMapStatusOutput_;
   Kel::OrderedMap<Kel::String, bool> configuredIntf_[2];
   OptionIntfLists appliedIntf_[2];
   OptionIntfLists failedIntf_[2];
   OptionIntfErrors installError_[2];
   IntfStatusMap interfaceStatus_[2];
   bool countersPerInterface_[2] = {false, false};
   CounterDataMap outputClassCounters_;
   CounterDataMap outputNamedCounters_;
};

class PolicyStateCpu final : public PolicyState {
 public:
   using PtrConst = Kel::Ptr<PolicyStateCpu const>;
   using OptionVrfLists = Kel::OrderedMap<PolicyMap::ClassMapMatchOption, Kel::Ptr<PerAfVrfList>>;

   using PolicyState::PolicyState;
   Kel::TypeInfo const& fwkType() const override;

   Kel::OrderedMap<L3::VrfName, bool> const& configuredVrf() const noexcept {
      return configuredVrf_;
   }
   void configuredVrfIs(L3::VrfName const& vrf, bool configured) {
      configuredVrf_.insertOrAssign(vrf, configured);
   }
   OptionVrfLists const& appliedVrf() const noexcept { return appliedVrf_; }
   Kel::Ptr<PerAfVrfList> appliedVrfIs(PolicyMap::ClassMapMatchOption option) {
      return listIs(appliedVrf_, option);
   }
   OptionVrfLists const& failedVrf() const noexcept { return failedVrf_; }
   Kel::Ptr<PerAfVrfList> failedVrfIs(PolicyMap::ClassMapMatchOption option) {
      return listIs(failedVrf_, option);
   }
   Kel::OrderedMap<PolicyMap::ClassMapMatchOption, Kel::Ptr<InstallError>> const& installErrorColl()
       const noexcept {
      return installErrorColl_;
   }
   Kel::Ptr<InstallError> installErrorCollIs(PolicyMap::ClassMapMatchOption option);
   Kel::OrderedMap<L3::VrfName, Kel::Ptr<VrfIntfStatus>> const& vrfIntfStatus() const noexcept {
      return vrfIntfStatus_;
   }
   // The VRF's status record, created when missing.
   Kel::Ptr<VrfIntfStatus> vrfIntfStatusIs(L3::VrfName const& vrf);
   VrfIntfStatus const* vrfIntfStatus(L3::VrfName const& vrf) const;

 private:
   static Kel::Ptr<PerAfVrfList> listIs(OptionVrfLists& lists,
                                        PolicyMap::ClassMapMatchOption option);

   Kel::OrderedMap<L3::VrfName, bool> configuredVrf_;
   OptionVrfLists appliedVrf_;
   OptionVrfLists failedVrf_;
   Kel::OrderedMap<PolicyMap::ClassMapMatchOption, Kel::Ptr<InstallError>> installErrorColl_;
   Kel::OrderedMap<L3::VrfName, Kel::Ptr<VrfIntfStatus>> vrfIntfStatus_;
};

Kel::Ptr<PolicyStateInterface> PolicyStateInterfaceIs(Kel::String const& name);
Kel::Ptr<PolicyStateInterface> policyStateInterfaceFactory(Kel::String const& name);
Kel::Ptr<PolicyStateCpu> PolicyStateCpuIs(Kel::String const& name);
Kel::Ptr<PolicyStateCpu> policyStateCpuFactory(Kel::String const& name);

}  // namespace TrafficPolicyCli
