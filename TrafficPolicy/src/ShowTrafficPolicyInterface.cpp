// The interface show object caches every policy twice, input then output. One switch,
// `cacheInputPolicy`, tells each overridden step which direction's sources and record halves to
// use.
#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"

#include "Kel/RobustWalk.h"
#include "Kel/Value.h"
#include "TrafficPolicyCli/InstalledStateWalk.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

ShowTrafficPolicyInterface::ShowTrafficPolicyInterface(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                       TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS)
    : ShowTrafficPolicyBase(TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES),
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

Kel::Ptr<PolicyStateInterface> ShowTrafficPolicyInterface::interfaceRecord(
    Kel::String const& policyName) {
   return Kel::ptrCast<PolicyStateInterface>(getOrCreatePolicyState(policyName));
}

void ShowTrafficPolicyInterface::cachePoliciesState() {
   cacheConfiguredInterfaces(intfConfigInput_, true);
   cacheConfiguredInterfaces(intfConfigOutput_, false);

   cacheInputPolicy_ = true;
   ShowTrafficPolicyBase::cachePoliciesState();

   cacheInputPolicy_ = false;
   outputCounterHelper_ = createCounterStatusHelper(false);
   if (statusOutput_) {
      Kel::robustWalk(statusOutput_->policyMapStatus(),
                      [this](Kel::String const& name, auto const&) { cachePolicyState(name); });
   }
}

void ShowTrafficPolicyInterface::cacheConfiguredInterfaces(
    Kel::Ptr<PolicyMap::IntfConfig const> const& intfConfig, bool isInput) {
   if (!intfConfig) {
      return;
   }
   for (auto const& [intfId, policyName] : intfConfig->intf()) {
      auto record = interfaceRecord(policyName);
      if (isInput) {
         record->configuredIntfInputIs(intfId.stringValue(), true);
      } else {
         record->configuredIntfOutputIs(intfId.stringValue(), true);
      }
   }
}

void ShowTrafficPolicyInterface::cachePolicyState(Kel::String const& policyName) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::cachePolicyState("
                  "const Kel::String&)policyName:"
               << policyName.view();
   ShowTrafficPolicyBase::cachePolicyState(policyName);
   auto record = interfaceRecord(policyName);
   record->filterInputPoliciesIs(filterInputPolicies_);
   record->filterOutputPoliciesIs(filterOutputPolicies_);
   record->counterOutputIs(counterOutput_);
   record->policyParamStatusIs(policyParamStatus_);
}

void ShowTrafficPolicyInterface::cacheIntfStatus(PolicyMapStatusPtr const& policyStatus) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::cacheIntfStatus("
                  "const PtrConst&)- isInput: "
               << cacheInputPolicy_;
   auto record = interfaceRecord(policyStatus->name());
   for (auto const& [intfId, intfStatus] : policyStatus->intfStatus()) {
      auto status = interfaceStatusFactory();
      status->intfStatusIs(intfStatus);
      if (cacheInputPolicy_) {
         record->interfaceStatusInputIs(intfId.stringValue(), std::move(status));
      } else {
         record->interfaceStatusOutputIs(intfId.stringValue(), std::move(status));
      }
   }
}

void ShowTrafficPolicyInterface::cacheInstalledState(PolicyMapStatusPtr const& policyStatus,
                                                     PolicyMap::ClassMapMatchOption matchOption) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::cacheInstalledState("
                  "const PtrConst&, PolicyMap::ClassMapMatchOption) matchOption "
               << matchOption << " isInput: " << cacheInputPolicy_;
   auto record = interfaceRecord(policyStatus->name());
   auto const& statuses =
       cacheInputPolicy_ ? record->interfaceStatusInput() : record->interfaceStatusOutput();
   bool const isInput = cacheInputPolicy_;
   _cacheInterfaceInstalledState(
       statuses, matchOption,
       [&](Kel::String const& intf) {
          (isInput ? record->appliedIntfInputIs(matchOption)
                   : record->appliedIntfOutputIs(matchOption))
              ->intfListIs(intf, true);
       },
       [&](Kel::String const& intf) {
          (isInput ? record->failedIntfInputIs(matchOption)
                   : record->failedIntfOutputIs(matchOption))
              ->intfListIs(intf, true);
       });
}

void ShowTrafficPolicyInterface::cacheInstallError(PolicyMapStatusPtr const& policyStatus,
                                                   PolicyMap::ClassMapMatchOption matchOption) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::cacheInstallError("
                  "const PtrConst&, PolicyMap::ClassMapMatchOption), option:"
               << matchOption << ", isInput: " << cacheInputPolicy_;
   auto record = interfaceRecord(policyStatus->name());
   auto const failed = record->getFailedIntfList(matchOption, cacheInputPolicy_);
   if (!failed) {
      TP_TRACE(8) << "No failures for option: " << matchOption;
      return;
   }
   auto errors = record->createInstallErrorColl(matchOption, cacheInputPolicy_);
   for (auto const& [intfName, listed] : failed->intfList()) {
      auto const status = record->getInterfaceStatus(intfName, cacheInputPolicy_);
      errors->intfErrorIs(intfName, getInstalledErrorString(status, matchOption));
   }
}

void ShowTrafficPolicyInterface::cacheCounters(Kel::String const& policyName) {
   cacheCountersThrough(getCounterStatusHelper(cacheInputPolicy_), policyName, cacheInputPolicy_);
}

Kel::Ptr<ShowTrafficPolicyBase::CounterReader const>
ShowTrafficPolicyInterface::createCounterStatusHelper(bool isInput) {
   return isInput ? counterReaderOver(status(), counterTable())
                  : counterReaderOver(statusOutput_, counterStatusOutput_);
}

Kel::Ptr<ShowTrafficPolicyBase::CounterReader const>
ShowTrafficPolicyInterface::getCounterStatusHelper(bool isInput) const {
   return isInput ? inputCounterHelper() : outputCounterHelper_;
}

ShowTrafficPolicyBase::PolicyMapStatusPtr ShowTrafficPolicyInterface::getPolicyMapStatus(
    Kel::String const& policyName) {
   if (cacheInputPolicy_) {
      return ShowTrafficPolicyBase::getPolicyMapStatus(policyName);
   }
   if (!statusOutput_) {
      return nullptr;
   }
   auto const* found = statusOutput_->policyMapStatus().lookup(policyName);
   return found ? *found : nullptr;
}

void ShowTrafficPolicyInterface::cachePolicyMapStatus(PolicyMapStatusPtr const& policyStatus) {
   if (cacheInputPolicy_ || !policyStatus) {
      ShowTrafficPolicyBase::cachePolicyMapStatus(policyStatus);
      return;
   }
   auto record = interfaceRecord(policyStatus->name());
   if (record->policyMapStatusOutput() != policyStatus) {
      record->policyMapStatusOutputIs(policyStatus);
   }
}

void ShowTrafficPolicyInterface::cacheClassMapStatus(
    Kel::String const& policyName, std::uint32_t ruleIndex,
    Kel::Ptr<PolicyMap::ClassMapStatus const> const& classMapStatus) {
   if (cacheInputPolicy_ || !classMapStatus) {
      ShowTrafficPolicyBase::cacheClassMapStatus(policyName, ruleIndex, classMapStatus);
      return;
   }
   interfaceRecord(policyName)->classMapStatusOutputIs(ruleIndex, classMapStatus);
}

}  // namespace TrafficPolicyCli
