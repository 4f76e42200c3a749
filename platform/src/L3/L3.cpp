// Type descriptors of the layer-3 and IP entities.
#include "Ip/AllVrfConfig.h"
#include "Kel/Value.h"
#include "L3/IntfStatus.h"

namespace L3::Intf {

Kel::TypeInfo const& Status::fwkType() const {
   static Kel::TypeInfo const info(
       "L3::Intf::Status", nullptr,
       {Kel::readOnly("intfId", &Status::intfId), Kel::readOnly("vrf", &Status::vrf)});
   return info;
}

Kel::TypeInfo const& StatusDir::fwkType() const {
   static Kel::TypeInfo const info("L3::Intf::StatusDir", nullptr,
                                   {Kel::readOnly("intfStatus", &StatusDir::intfStatus)});
   return info;
}

}  // namespace L3::Intf

namespace Ip {

Kel::TypeInfo const& AllVrfConfig::fwkType() const {
   static Kel::TypeInfo const info("Ip::AllVrfConfig", nullptr,
                                   {Kel::readOnly("vrf", &AllVrfConfig::vrf)});
   return info;
}

}  // namespace Ip
