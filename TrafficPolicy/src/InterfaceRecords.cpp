// Interface and VRF status records: programmed/failed decisions, error texts, type descriptors.
#include "TrafficPolicyCli/InterfaceRecords.h"

#include "Kel/Value.h"

namespace TrafficPolicyCli {

void InterfaceStatus::intfStatusIs(Kel::Ptr<PolicyMap::IntfStatus const> const& status) {
   intfStatus_.insertOrAssign(status->intfId(), status);
}

bool InterfaceStatus::isProgrammed(PolicyMap::ClassMapMatchOption option) const {
   bool found = false;
   for (auto const& [intf, status] : intfStatus_) {
      auto const* installed = status->installedStatus(option);
      if (!installed) {
         continue;
      }
      if (installed->state != PolicyMap::installProgrammed) {
         return false;
      }
      found = true;
   }
   return found;
}

bool InterfaceStatus::isFailed(PolicyMap::ClassMapMatchOption option) const {
   for (auto const& [intf, status] : intfStatus_) {
      auto const* installed = status->installedStatus(option);
      if (installed && installed->state == PolicyMap::installFailed) {
         return true;
      }
   }
   return false;
}

Kel::String getInstalledErrorString(InterfaceStatus::PtrConst const& interfaceStatus,
                                    PolicyMap::ClassMapMatchOption matchOption) {
   for (auto const& [intf, status] : interfaceStatus->intfStatus()) {
      auto const* installed = status->installedStatus(matchOption);
      if (!installed) {
         return Kel::String();
      }
      if (installed->state != PolicyMap::installProgrammed) {
         return installed->errorText;
      }
   }
   return Kel::String();
}

Kel::TypeInfo const& InterfaceStatus::typeInfo() {
   static Kel::TypeInfo const info("TrafficPolicyCli::InterfaceStatus", nullptr,
                                   {Kel::readOnly("intfStatus", &InterfaceStatus::intfStatus)});
   return info;
}

Kel::TypeInfo const& VrfIntfStatus::fwkType() const {
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::VrfIntfStatus", &InterfaceStatus::typeInfo(),
       {Kel::readOnly("vrfName", &VrfIntfStatus::vrfName),
        Kel::scalar("intfCount", &VrfIntfStatus::intfCount, &VrfIntfStatus::intfCountIs)});
   return info;
}

Kel::TypeInfo const& PerAfIntfList::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicyCli::PerAfIntfList", nullptr,
                                   {Kel::readOnly("matchOption", &PerAfIntfList::matchOption),
                                    Kel::readOnly("intfList", &PerAfIntfList::intfList)});
   return info;
}

Kel::TypeInfo const& PerAfVrfList::fwkType() const {
   static Kel::TypeInfo const info("TrafficPolicyCli::PerAfVrfList", nullptr,
                                   {Kel::readOnly("matchOption", &PerAfVrfList::matchOption),
                                    Kel::readOnly("vrfList", &PerAfVrfList::vrfList)});
   return info;
}

Kel::TypeInfo const& InterfaceInstallError::fwkType() const {
   using Self = InterfaceInstallError;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::InterfaceInstallError", nullptr,
       {Kel::readOnly("matchOption", &Self::matchOption),
        Kel::readOnly("intfError",
                      static_cast<ErrorMap const& (Self::*)() const>(&Self::intfError))});
   return info;
}

Kel::TypeInfo const& InstallError::fwkType() const {
   using Self = InstallError;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::InstallError", nullptr,
       {Kel::readOnly("matchOption", &Self::matchOption),
        Kel::readOnly("vrfError",
                      static_cast<ErrorMap const& (Self::*)() const>(&Self::vrfError))});
   return info;
}

Kel::Ptr<InterfaceStatus> InterfaceStatusIs() {
   return Kel::make<InterfaceStatus>();
}
Kel::Ptr<InterfaceStatus> interfaceStatusFactory() {
   return InterfaceStatusIs();
}

Kel::Ptr<VrfIntfStatus> VrfIntfStatusIs(L3::VrfName const& vrfName) {
   return Kel::make<VrfIntfStatus>(vrfName);
}
Kel::Ptr<VrfIntfStatus> vrfIntfStatusFactory(L3::VrfName const& vrfName) {
   return VrfIntfStatusIs(vrfName);
}

Kel::Ptr<PerAfIntfList> PerAfIntfListIs(PolicyMap::ClassMapMatchOption matchOption) {
   return Kel::make<PerAfIntfList>(matchOption);
}
Kel::Ptr<PerAfIntfList> perAfIntfListFactory(PolicyMap::ClassMapMatchOption matchOption) {
   return PerAfIntfListIs(matchOption);
}

Kel::Ptr<PerAfVrfList> PerAfVrfListIs(PolicyMap::ClassMapMatchOption matchOption) {
   return Kel::make<PerAfVrfList>(matchOption);
}
Kel::Ptr<PerAfVrfList> perAfVrfListFactory(PolicyMap::ClassMapMatchOption matchOption) {
   return PerAfVrfListIs(matchOption);
}

Kel::Ptr<InterfaceInstallError> InterfaceInstallErrorIs(
    PolicyMap::ClassMapMatchOption matchOption) {
   return Kel::make<InterfaceInstallError>(matchOption);
}
Kel::Ptr<InterfaceInstallError> interfaceInstallErrorFactory(
    PolicyMap::ClassMapMatchOption matchOption) {
   return InterfaceInstallErrorIs(matchOption);
}

Kel::Ptr<InstallError> InstallErrorIs(PolicyMap::ClassMapMatchOption matchOption) {
   return Kel::make<InstallError>(matchOption);
}
Kel::Ptr<InstallError> installErrorFactory(PolicyMap::ClassMapMatchOption matchOption) {
   return InstallErrorIs(matchOption);
}

}  // namespace TrafficPolicyCli
