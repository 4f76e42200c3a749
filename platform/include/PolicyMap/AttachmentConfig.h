// Where policies are attached: on interfaces (one map per direction) and, for the control plane,
// on VRFs.
#pragma once

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/String.h"
#include "L3/VrfName.h"
#include "Quoll/IntfId.h"

namespace PolicyMap {

class IntfConfig : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   // Interface to the name of the policy map configured on it.
   Kel::OrderedMap<Quoll::IntfId, Kel::String> const& intf() const noexcept { return intf_; }
   Kel::OrderedMap<Quoll::IntfId, Kel::String>& intf() noexcept { return intf_; }

 private:
   Kel::OrderedMap<Quoll::IntfId, Kel::String> intf_;
};

class VrfConfig : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   // VRF to the name of the policy map configured on its control plane.
   Kel::OrderedMap<L3::VrfName, Kel::String> const& vrf() const noexcept { return vrf_; }
   Kel::OrderedMap<L3::VrfName, Kel::String>& vrf() noexcept { return vrf_; }

 private:
   Kel::OrderedMap<L3::VrfName, Kel::String> vrf_;
};

}  // namespace PolicyMap
