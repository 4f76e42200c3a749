// Layer-3 interface status: which VRF each routed interface belongs to.
#pragma once

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "L3/VrfName.h"
#include "Quoll/IntfId.h"

namespace L3::Intf {

class Status : public Kel::Entity {
 public:
   Status(Quoll::IntfId intfId, VrfName vrf) : intfId_(std::move(intfId)), vrf_(std::move(vrf)) {}
   Kel::TypeInfo const& fwkType() const override;

   Quoll::IntfId const& intfId() const noexcept { return intfId_; }
   VrfName const& vrf() const noexcept { return vrf_; }

 private:
   Quoll::IntfId intfId_;
   VrfName vrf_;
};

class StatusDir : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<Status const>> const& intfStatus() const noexcept {
      return intfStatus_;
   }
   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<Status const>>& intfStatus() noexcept {
      return intfStatus_;
   }

 private:
   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<Status const>> intfStatus_;
};

}  // namespace L3::Intf
