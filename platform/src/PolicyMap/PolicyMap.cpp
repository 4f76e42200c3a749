// Text forms and type descriptors of the policy-map model.
#include "Kel/Value.h"
#include "PolicyMap/Actions.h"
#include "PolicyMap/AttachmentConfig.h"
#include "PolicyMap/Counters.h"
#include "PolicyMap/PolicyMapConfig.h"
#include "PolicyMap/PolicyMapStatus.h"
#include "PolicyMap/Types.h"

namespace PolicyMap {

std::ostream& operator<<(std::ostream& out, ClassMapMatchOption option) {
   switch (option) {
      case ClassMapMatchOption::ipv4:
         return out << "ipv4";
      case ClassMapMatchOption::ipv6:
         return out << "ipv6";
      case ClassMapMatchOption::mac:
         return out << "mac";
      case ClassMapMatchOption::mpls:
         return out << "mpls";
   }
   return out << static_cast<unsigned>(option);
}

std::string_view toString(RateUnit unit) noexcept {
   switch (unit) {
      case RateUnit::bps:
         return "bps";
      case RateUnit::kbps:
         return "kbps";
      case RateUnit::mbps:
         return "mbps";
      case RateUnit::gbps:
         return "gbps";
      case RateUnit::pps:
         return "pps";
   }
   return "unknown";
}

std::ostream& operator<<(std::ostream& out, RateUnit unit) {
   return out << toString(unit);
}

Kel::TypeInfo const& Action::typeInfo() {
   static Kel::TypeInfo const info("PolicyMap::Action", nullptr,
                                   {Kel::readOnly("actionType", &Action::actionType)});
   return info;
}

Kel::TypeInfo const& PolicyMapTypeStatus::typeInfo() {
   static Kel::TypeInfo const info(
       "PolicyMap::PolicyMapTypeStatus", nullptr,
       {Kel::readOnly("policyMapStatus", &PolicyMapTypeStatus::policyMapStatus),
        Kel::readOnly("byteCountersSupported", &PolicyMapTypeStatus::byteCountersSupported),
        Kel::readOnly("perInterfaceCounters", &PolicyMapTypeStatus::perInterfaceCounters)});
   return info;
}

Kel::TypeInfo const& SetDscpAction::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::SetDscpAction", &Action::typeInfo(),
                                   {Kel::readOnly("dscp", &SetDscpAction::dscp)});
   return info;
}

Kel::TypeInfo const& PoliceAction::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::PoliceAction", &Action::typeInfo(),
                                   {Kel::readOnly("rate", &PoliceAction::rate),
                                    Kel::readOnly("rateUnit", &PoliceAction::rateUnit)});
   return info;
}

Kel::TypeInfo const& CountAction::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::CountAction", &Action::typeInfo(),
                                   {Kel::readOnly("counterName", &CountAction::counterName)});
   return info;
}

Kel::TypeInfo const& GotoAction::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::GotoAction", &Action::typeInfo(),
                                   {Kel::readOnly("matchName", &GotoAction::matchName)});
   return info;
}

Kel::TypeInfo const& SetNexthopGroup::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::SetNexthopGroup", &Action::typeInfo(),
                                   {Kel::readOnly("nexthopGroup", &SetNexthopGroup::nexthopGroup)});
   return info;
}

Kel::TypeInfo const& ClassAction::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::ClassAction", nullptr,
                                   {Kel::readOnly("name", &ClassAction::name),
                                    Kel::readOnly("policyAction", &ClassAction::policyAction)});
   return info;
}

Kel::TypeInfo const& ClassMapMatch::fwkType() const {
   static Kel::TypeInfo const info(
       "PolicyMap::ClassMapMatch", nullptr,
       {Kel::readOnly("option", &ClassMapMatch::option),
        Kel::readOnly("structuredFilter", &ClassMapMatch::structuredFilter)});
   return info;
}

Kel::TypeInfo const& ClassMapConfig::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::ClassMapConfig", nullptr,
                                   {Kel::readOnly("name", &ClassMapConfig::name),
                                    Kel::readOnly("match", &ClassMapConfig::match)});
   return info;
}

Kel::TypeInfo const& PolicyMapSubConfig::fwkType() const {
   static Kel::TypeInfo const info(
       "PolicyMap::PolicyMapSubConfig", nullptr,
       {Kel::readOnly("name", &PolicyMapSubConfig::name),
        Kel::readOnly("rule", &PolicyMapSubConfig::rule),
        Kel::readOnly("classMap", &PolicyMapSubConfig::classMap),
        Kel::readOnly("classAction", &PolicyMapSubConfig::classAction),
        Kel::readOnly("namedCounter", &PolicyMapSubConfig::namedCounter)});
   return info;
}

Kel::TypeInfo const& PolicyMapConfig::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::PolicyMapConfig", nullptr,
                                   {Kel::readOnly("name", &PolicyMapConfig::name),
                                    Kel::readOnly("currCfg", &PolicyMapConfig::currCfg)});
   return info;
}

Kel::TypeInfo const& IntfStatus::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::IntfStatus", nullptr,
                                   {Kel::readOnly("intfId", &IntfStatus::intfId)});
   return info;
}

Kel::TypeInfo const& ClassMapStatus::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::ClassMapStatus", nullptr,
                                   {Kel::readOnly("name", &ClassMapStatus::name),
                                    Kel::readOnly("matchs", &ClassMapStatus::matchs)});
   return info;
}

Kel::TypeInfo const& PacketDataStatus::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::PacketDataStatus", nullptr,
                                   {Kel::readOnly("name", &PacketDataStatus::name),
                                    Kel::readOnly("instanceId", &PacketDataStatus::instanceId),
                                    Kel::readOnly("pkts", &PacketDataStatus::pkts),
                                    Kel::readOnly("bytes", &PacketDataStatus::bytes)});
   return info;
}

Kel::TypeInfo const& PolicyMapStatus::fwkType() const {
   static Kel::TypeInfo const info(
       "PolicyMap::PolicyMapStatus", nullptr,
       {Kel::readOnly("name", &PolicyMapStatus::name),
        Kel::readOnly("classMapStatus", &PolicyMapStatus::classMapStatus),
        Kel::readOnly("intfStatus", &PolicyMapStatus::intfStatus),
        Kel::readOnly("classCounter", &PolicyMapStatus::classCounter),
        Kel::readOnly("namedCounter", &PolicyMapStatus::namedCounter)});
   return info;
}

Kel::TypeInfo const& IntfConfig::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::IntfConfig", nullptr,
                                   {Kel::readOnly("intf", &IntfConfig::intf)});
   return info;
}

Kel::TypeInfo const& VrfConfig::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::VrfConfig", nullptr,
                                   {Kel::readOnly("vrf", &VrfConfig::vrf)});
   return info;
}

namespace Counters {

Kel::TypeInfo const& PolicyMapCounters::fwkType() const {
   static Kel::TypeInfo const info(
       "PolicyMap::Counters::PolicyMapCounters", nullptr,
       {Kel::readOnly("classCounter", &PolicyMapCounters::classCounter),
        Kel::readOnly("namedCounter", &PolicyMapCounters::namedCounter)});
   return info;
}

Kel::TypeInfo const& PolicyMapTypeCounters::fwkType() const {
   static Kel::TypeInfo const info("PolicyMap::Counters::PolicyMapTypeCounters", nullptr, {});
   return info;
}

}  // namespace Counters

}  // namespace PolicyMap
