// The interface and CPU policy records: per-direction lookups with their entry traces, creators
// of per-option lists and error records, and type descriptors.
#include "TrafficPolicyCli/PolicyStateVariants.h"

#include "Kel/Value.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

template <typename Record, typename Key>
Kel::Ptr<Record const> find(Kel::OrderedMap<Key, Kel::Ptr<Record>> const& records, Key const& key) {
   auto const* record = records.lookup(key);
   return record ? Kel::Ptr<Record const>(*record) : nullptr;
}

template <typename Record, typename Key, typename... Args>
Kel::Ptr<Record> findOrCreate(Kel::OrderedMap<Key, Kel::Ptr<Record>>& records, Key const& key,
                              Args const&... args) {
   auto& record = records.getOrCreate(key);
   if (!record) {
      record = Kel::make<Record>(args...);
   }
   return record;
}

}  // namespace

Kel::Ptr<PerAfIntfList> PolicyStateInterface::listIs(OptionIntfLists& lists,
                                                     PolicyMap::ClassMapMatchOption option) {
   return findOrCreate(lists, option, option);
}

PerAfIntfList::PtrConst PolicyStateInterface::getAppliedIntfList(
    PolicyMap::ClassMapMatchOption option, bool isInput) const {
   TP_TRACE(8) << "TrafficPolicyCli::PerAfIntfList::PtrConst "
                  "TrafficPolicyCli::PolicyStateInterface::getAppliedIntfList("
                  "PolicyMap::ClassMapMatchOption, bool) const, option:"
               << option << ", isInput: " << isInput;
   return find(appliedIntf_[direction(isInput)], option);
}

PerAfIntfList::PtrConst PolicyStateInterface::getFailedIntfList(
    PolicyMap::ClassMapMatchOption option, bool isInput) const {
   TP_TRACE(8) << "TrafficPolicyCli::PerAfIntfList::PtrConst "
                  "TrafficPolicyCli::PolicyStateInterface::getFailedIntfList("
                  "PolicyMap::ClassMapMatchOption, bool) const, option:"
               << option << ", isInput: " << isInput;
   return find(failedIntf_[direction(isInput)], option);
}

InterfaceInstallError::PtrConst PolicyStateInterface::getInstallErrorList(
    PolicyMap::ClassMapMatchOption option, bool isInput) const {
   TP_TRACE(8) << "TrafficPolicyCli::InterfaceInstallError::PtrConst "
                  "TrafficPolicyCli::PolicyStateInterface::getInstallErrorList("
                  "PolicyMap::ClassMapMatchOption, bool) const, option:"
               << option << ", isInput: " << isInput;
   return find(installError_[direction(isInput)], option);
}

InterfaceStatus::PtrConst PolicyStateInterface::getInterfaceStatus(Kel::String const& intfName,
                                                                   bool isInput) const {
   TP_TRACE(8) << "TrafficPolicyCli::InterfaceStatus::PtrConst "
                  "TrafficPolicyCli::PolicyStateInterface::getInterfaceStatus("
                  "const Kel::String&, bool) const, intfName:"
               << intfName.view() << ", isInput: " << isInput;
   return find(interfaceStatus_[direction(isInput)], intfName);
}

Kel::Ptr<InterfaceInstallError> PolicyStateInterface::createInstallErrorColl(
    PolicyMap::ClassMapMatchOption option, bool isInput) {
   return findOrCreate(installError_[direction(isInput)], option, option);
}

void PolicyStateInterface::cacheClassCounterData(
    Kel::Ptr<PolicyMap::PacketDataStatus const> const& status, bool isInput) {
   if (isInput) {
      inputClassCountersIs(status);
   } else {
      outputClassCountersIs(status);
   }
}

void PolicyStateInterface::cacheNamedCounterData(
    Kel::Ptr<PolicyMap::PacketDataStatus const> const& status, bool isInput) {
   if (isInput) {
      inputNamedCountersIs(status);
   } else {
      outputNamedCountersIs(status);
   }
}

Kel::TypeInfo const& PolicyStateInterface::fwkType() const {
   using Self = PolicyStateInterface;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::PolicyStateInterface", &PolicyState::typeInfo(),
       {Kel::scalar("filterInputPolicies", &Self::filterInputPolicies,
                    &Self::filterInputPoliciesIs),
        Kel::scalar("filterOutputPolicies", &Self::filterOutputPolicies,
                    &Self::filterOutputPoliciesIs),
        Kel::readOnly("policyParamStatus", &Self::policyParamStatus),
        Kel::readOnly("policyMapStatusOutput", &Self::policyMapStatusOutput),
        Kel::readOnly("counterOutput", &Self::counterOutput),
        Kel::readOnly("classMapStatusOutput", &Self::classMapStatusOutput),
        Kel::readOnly("configuredIntfInput", &Self::configuredIntfInput),
        Kel::readOnly("configuredIntfOutput", &Self::configuredIntfOutput),
        Kel::readOnly("appliedIntfInput", &Self::appliedIntfInput),
        Kel::readOnly("appliedIntfOutput", &Self::appliedIntfOutput),
        Kel::readOnly("failedIntfInput", &Self::failedIntfInput),
        Kel::readOnly("failedIntfOutput", &Self::failedIntfOutput),
        Kel::readOnly("installErrorCollInput", &Self::installErrorCollInput),
        Kel::readOnly("installErrorCollOutput", &Self::installErrorCollOutput),
        Kel::readOnly("interfaceStatusInput", &Self::interfaceStatusInput),
        Kel::readOnly("interfaceStatusOutput", &Self::interfaceStatusOutput),
        Kel::scalar("countersPerInterfaceInput", &Self::countersPerInterfaceInput,
                    &Self::countersPerInterfaceInputIs),
        Kel::scalar("countersPerInterfaceOutput", &Self::countersPerInterfaceOutput,
                    &Self::countersPerInterfaceOutputIs),
        Kel::readOnly("outputClassCounters", &Self::outputClassCounters),
        Kel::readOnly("outputNamedCounters", &Self::outputNamedCounters)});
   return info;
}

Kel::Ptr<PerAfVrfList> PolicyStateCpu::listIs(OptionVrfLists& lists,
                                              PolicyMap::ClassMapMatchOption option) {
   return findOrCreate(lists, option, option);
}

Kel::Ptr<InstallError> PolicyStateCpu::installErrorCollIs(PolicyMap::ClassMapMatchOption option) {
   return findOrCreate(installErrorColl_, option, option);
}

Kel::Ptr<VrfIntfStatus> PolicyStateCpu::vrfIntfStatusIs(L3::VrfName const& vrf) {
   return findOrCreate(vrfIntfStatus_, vrf, vrf);
}

VrfIntfStatus const* PolicyStateCpu::vrfIntfStatus(L3::VrfName const& vrf) const {
   auto const* status = vrfIntfStatus_.lookup(vrf);
   return status ? status->get() : nullptr;
}

Kel::TypeInfo const& PolicyStateCpu::fwkType() const {
   using Self = PolicyStateCpu;
   using VrfStatusMap = Kel::OrderedMap<L3::VrfName, Kel::Ptr<VrfIntfStatus>>;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::PolicyStateCpu", &PolicyState::typeInfo(),
       {Kel::readOnly("configuredVrf", &Self::configuredVrf),
        Kel::readOnly("appliedVrf", &Self::appliedVrf),
        Kel::readOnly("failedVrf", &Self::failedVrf),
        Kel::readOnly("installErrorColl", &Self::installErrorColl),
        Kel::readOnly("vrfIntfStatus",
                      static_cast<VrfStatusMap const& (Self::*)() const>(&Self::vrfIntfStatus))});
   return info;
}

Kel::Ptr<PolicyStateInterface> PolicyStateInterfaceIs(Kel::String const& name) {
   return Kel::make<PolicyStateInterface>(name);
}
Kel::Ptr<PolicyStateInterface> policyStateInterfaceFactory(Kel::String const& name) {
   return PolicyStateInterfaceIs(name);
}
Kel::Ptr<PolicyStateCpu> PolicyStateCpuIs(Kel::String const& name) {
   return Kel::make<PolicyStateCpu>(name);
}
Kel::Ptr<PolicyStateCpu> policyStateCpuFactory(Kel::String const& name) {
   return PolicyStateCpuIs(name);
}

}  // namespace TrafficPolicyCli
