// The VRFs configured on the system.
#pragma once

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "L3/VrfName.h"

namespace Ip {

class AllVrfConfig : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   Kel::OrderedSet<L3::VrfName> const& vrf() const noexcept { return vrf_; }
   Kel::OrderedSet<L3::VrfName>& vrf() noexcept { return vrf_; }

 private:
   Kel::OrderedSet<L3::VrfName> vrf_;
};

}  // namespace Ip
