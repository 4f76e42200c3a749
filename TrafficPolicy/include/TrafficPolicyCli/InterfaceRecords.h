// Small records hung off a policy's record: the programming status of one interface (or of all
// interfaces of one VRF), the interfaces or VRFs where a policy is applied or failed per match
// option, and the installation error texts.
#pragma once

#include <cstdint>

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "L3/VrfName.h"
#include "PolicyMap/PolicyMapStatus.h"
#include "PolicyMap/Types.h"
#include "Quoll/IntfId.h"

namespace TrafficPolicyCli {

// The agents' status records of one interface, or of every interface of one VRF. Kept by
// interface so that "the first status that is not programmed" is the same on every run.
class InterfaceStatus : public Kel::Entity {
 public:
   using PtrConst = Kel::Ptr<InterfaceStatus const>;
   using StatusMap = Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<PolicyMap::IntfStatus const>>;

   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   StatusMap const& intfStatus() const noexcept { return intfStatus_; }
   void intfStatusIs(Kel::Ptr<PolicyMap::IntfStatus const> const& status);
   void intfStatusDel(Quoll::IntfId const& intf) { intfStatus_.erase(intf); }
   void intfStatusDelAll() { intfStatus_.clear(); }

   // True when at least one status has an entry for the option and every such entry is
   // programmed.
   bool isProgrammed(PolicyMap::ClassMapMatchOption option) const;
   // True when some status has a failed entry for the option.
   bool isFailed(PolicyMap::ClassMapMatchOption option) const;

 private:
   StatusMap intfStatus_;
};

class VrfIntfStatus : public InterfaceStatus {
 public:
   explicit VrfIntfStatus(L3::VrfName vrfName) : vrfName_(std::move(vrfName)) {}
   Kel::TypeInfo const& fwkType() const override;

   L3::VrfName const& vrfName() const noexcept { return vrfName_; }
   // How many interfaces of the VRF contributed a status.
   std::uint32_t intfCount() const noexcept { return intfCount_; }
   void intfCountIs(std::uint32_t count) noexcept { intfCount_ = count; }

 private:
   L3::VrfName vrfName_;
   std::uint32_t intfCount_ = 0;
};

// A list of names (interfaces or VRFs) for one match option.
template <typename Name>
class PerAfNameList : public Kel::Entity {
 public:
   using NameMap = Kel::OrderedMap<Name, bool>;

   explicit PerAfNameList(PolicyMap::ClassMapMatchOption matchOption) : matchOption_(matchOption) {}

   PolicyMap::ClassMapMatchOption matchOption() const noexcept { return matchOption_; }

 protected:
   NameMap names_;

 private:
   PolicyMap::ClassMapMatchOption matchOption_;
};

class PerAfIntfList : public PerAfNameList<Kel::String> {
 public:
   using PtrConst = Kel::Ptr<PerAfIntfList const>;
   using PerAfNameList::PerAfNameList;
   Kel::TypeInfo const& fwkType() const override;

   NameMap const& intfList() const noexcept { return names_; }
   void intfListIs(Kel::String const& name, bool listed) { names_.insertOrAssign(name, listed); }
   void intfListDel(Kel::String const& name) { names_.erase(name); }
   void intfListDelAll() { names_.clear(); }
};

class PerAfVrfList : public PerAfNameList<L3::VrfName> {
 public:
   using PtrConst = Kel::Ptr<PerAfVrfList const>;
   using PerAfNameList::PerAfNameList;
   Kel::TypeInfo const& fwkType() const override;

   NameMap const& vrfList() const noexcept { return names_; }
   void vrfListIs(L3::VrfName const& vrf, bool listed) { names_.insertOrAssign(vrf, listed); }
   void vrfListDel(L3::VrfName const& vrf) { names_.erase(vrf); }
   void vrfListDelAll() { names_.clear(); }
};

// Installation error texts for one match option, by interface or by VRF.
class InterfaceInstallError : public Kel::Entity {
 public:
   using PtrConst = Kel::Ptr<InterfaceInstallError const>;
   using ErrorMap = Kel::OrderedMap<Kel::String, Kel::String>;

   explicit InterfaceInstallError(PolicyMap::ClassMapMatchOption matchOption)
       : matchOption_(matchOption) {}
   Kel::TypeInfo const& fwkType() const override;

   PolicyMap::ClassMapMatchOption matchOption() const noexcept { return matchOption_; }
   ErrorMap const& intfError() const noexcept { return intfError_; }
   Kel::String const* intfError(Kel::String const& intf) const { return intfError_.lookup(intf); }
   void intfErrorIs(Kel::String const& intf, Kel::String const& text) {
      intfError_.insertOrAssign(intf, text);
   }
   void intfErrorDel(Kel::String const& intf) { intfError_.erase(intf); }
   void intfErrorDelAll() { intfError_.clear(); }

 private:
   PolicyMap::ClassMapMatchOption matchOption_;
   ErrorMap intfError_;
};

class InstallError : public Kel::Entity {
 public:
   using PtrConst = Kel::Ptr<InstallError const>;
   using ErrorMap = Kel::OrderedMap<L3::VrfName, Kel::String>;

   explicit InstallError(PolicyMap::ClassMapMatchOption matchOption) : matchOption_(matchOption) {}
   Kel::TypeInfo const& fwkType() const override;

   PolicyMap::ClassMapMatchOption matchOption() const noexcept { return matchOption_; }
   ErrorMap const& vrfError() const noexcept { return vrfError_; }
   Kel::String const* vrfError(L3::VrfName const& vrf) const { return vrfError_.lookup(vrf); }
   void vrfErrorIs(L3::VrfName const& vrf, Kel::String const& text) {
      vrfError_.insertOrAssign(vrf, text);
   }
   void vrfErrorDel(L3::VrfName const& vrf) { vrfError_.erase(vrf); }
   void vrfErrorDelAll() { vrfError_.clear(); }

 private:
   PolicyMap::ClassMapMatchOption matchOption_;
   ErrorMap vrfError_;
};

// The installation error text of a failed interface or VRF: the error of the first status that is
// not programmed, or the empty string.
Kel::String getInstalledErrorString(InterfaceStatus::PtrConst const& interfaceStatus,
                                    PolicyMap::ClassMapMatchOption matchOption);

// Factories and the object model's generated creators.
Kel::Ptr<InterfaceStatus> InterfaceStatusIs();
Kel::Ptr<InterfaceStatus> interfaceStatusFactory();
Kel::Ptr<VrfIntfStatus> VrfIntfStatusIs(L3::VrfName const& vrfName);
Kel::Ptr<VrfIntfStatus> vrfIntfStatusFactory(L3::VrfName const& vrfName);
Kel::Ptr<PerAfIntfList> PerAfIntfListIs(PolicyMap::ClassMapMatchOption matchOption);
Kel::Ptr<PerAfIntfList> perAfIntfListFactory(PolicyMap::ClassMapMatchOption matchOption);
Kel::Ptr<PerAfVrfList> PerAfVrfListIs(PolicyMap::ClassMapMatchOption matchOption);
Kel::Ptr<PerAfVrfList> perAfVrfListFactory(PolicyMap::ClassMapMatchOption matchOption);
Kel::Ptr<InterfaceInstallError> InterfaceInstallErrorIs(PolicyMap::ClassMapMatchOption matchOption);
Kel::Ptr<InterfaceInstallError> interfaceInstallErrorFactory(
    PolicyMap::ClassMapMatchOption matchOption);
Kel::Ptr<InstallError> InstallErrorIs(PolicyMap::ClassMapMatchOption matchOption);
Kel::Ptr<InstallError> installErrorFactory(PolicyMap::ClassMapMatchOption matchOption);

}  // namespace TrafficPolicyCli
