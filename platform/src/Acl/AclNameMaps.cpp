// The name tables and the singleton. Each map comes from one constant table below, the only place
// a name is written down; names are the lowercase keywords a user would type in a rule.
#include "Acl/AclNameMaps.h"

#include <span>
#include <string_view>

namespace Acl {

namespace {

struct NamedNumber {
   std::uint32_t number;
   std::string_view name;
};

// Class selectors (RFC 2474), assured forwarding (RFC 2597) and expedited forwarding (RFC 3246).
constexpr NamedNumber kDscpNames[] = {
    {0, "cs0"},   {8, "cs1"},   {10, "af11"}, {12, "af12"}, {14, "af13"}, {16, "cs2"},
    {18, "af21"}, {20, "af22"}, {22, "af23"}, {24, "cs3"},  {26, "af31"}, {28, "af32"},
    {30, "af33"}, {32, "cs4"},  {34, "af41"}, {36, "af42"}, {38, "af43"}, {40, "cs5"},
    {46, "ef"},   {48, "cs6"},  {56, "cs7"},
};

// Assigned protocol numbers that can follow an IPv4 header.
constexpr NamedNumber kIpProtoNames[] = {
    {1, "icmp"},   {2, "igmp"},   {4, "ipip"},   {6, "tcp"},          {17, "udp"},  {41, "ipv6"},
    {46, "rsvp"},  {47, "gre"},   {50, "esp"},   {51, "ah"},          {89, "ospf"}, {103, "pim"},
    {112, "vrrp"}, {115, "l2tp"}, {132, "sctp"}, {137, "mpls-in-ip"},
};

// The same for the IPv6 next header: ICMPv6 instead of ICMP, and no IGMP (IPv6 uses ICMPv6 for
// group membership).
constexpr NamedNumber kIp6ProtoNames[] = {
    {4, "ipip"},  {6, "tcp"},    {17, "udp"},   {41, "ipv6"},   {46, "rsvp"},
    {47, "gre"},  {50, "esp"},   {51, "ah"},    {58, "icmpv6"}, {89, "ospf"},
    {103, "pim"}, {112, "vrrp"}, {115, "l2tp"}, {132, "sctp"},  {137, "mpls-in-ip"},
};

AclNameMaps::NameMap mapOf(std::span<NamedNumber const> table) {
   AclNameMaps::NameMap map;
   for (auto const& [number, name] : table) {
      map.insertOrAssign(number, Kel::String(name));
   }
   return map;
}

Kel::String nameIn(AclNameMaps::NameMap const& map, std::uint32_t number) {
   auto const* name = map.lookup(number);
   return name ? *name : Kel::String();
}

}  // namespace

AclNameMaps::AclNameMaps()
    : dscp_(mapOf(kDscpNames)), ipProto_(mapOf(kIpProtoNames)), ip6Proto_(mapOf(kIp6ProtoNames)) {}

Kel::Ptr<AclNameMaps const> AclNameMaps::instance() {
   // Held for the life of the process; C++ guarantees that only one thread builds it.
   static Kel::Ptr<AclNameMaps const> const theMaps(new AclNameMaps());
   return theMaps;
}

Kel::TypeInfo const& AclNameMaps::fwkType() const {
   static Kel::TypeInfo const type(
       "Acl::AclNameMaps", nullptr,
       {Kel::readOnly("dscp", &AclNameMaps::dscp), Kel::readOnly("ipProto", &AclNameMaps::ipProto),
        Kel::readOnly("ip6Proto", &AclNameMaps::ip6Proto)});
   return type;
}

Kel::String AclNameMaps::dscpName(std::uint32_t dscp) const {
   return nameIn(dscp_, dscp);
}

Kel::String AclNameMaps::ipProtoName(std::uint32_t protocol) const {
   return nameIn(ipProto_, protocol);
}

Kel::String AclNameMaps::ip6ProtoName(std::uint32_t nextHeader) const {
   return nameIn(ip6Proto_, nextHeader);
}

}  // namespace Acl
