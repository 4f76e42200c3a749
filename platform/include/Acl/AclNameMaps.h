// Acl::AclNameMaps holds the names that show commands print instead of numbers: DSCP code points
// and IP protocol numbers (one map for IPv4 protocols, one for IPv6 next headers, since the two
// families do not share every protocol). There is one instance per process, made on first use and
// never changed after, so any thread may read it without a lock. It is an entity so that the maps
// can be read through reflection like any other platform state.
#pragma once

#include <cstdint>

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"

namespace Acl {

class AclNameMaps : public Kel::Entity {
 public:
   using NameMap = Kel::OrderedMap<std::uint32_t, Kel::String>;

   static Kel::Ptr<AclNameMaps const> instance();

   Kel::TypeInfo const& fwkType() const override;

   NameMap const& dscp() const noexcept { return dscp_; }
   NameMap const& ipProto() const noexcept { return ipProto_; }
   NameMap const& ip6Proto() const noexcept { return ip6Proto_; }

   // The name of a number, or the empty string when it has none.
   Kel::String dscpName(std::uint32_t dscp) const;
   Kel::String ipProtoName(std::uint32_t protocol) const;
   Kel::String ip6ProtoName(std::uint32_t nextHeader) const;

 private:
   AclNameMaps();

   NameMap dscp_;
   NameMap ipProto_;
   NameMap ip6Proto_;
};

}  // namespace Acl
