// One rule's match criteria for one match option: addresses, VLAN tags, protocols with their
// ports, ICMP types and TCP flags, lengths, fragments, DSCP, TTL, protocol flags and an
// encapsulated inner header. Prefixes must be of the match option's family.
#pragma once

#include "Classification/StructuredFilter.h"
#include "Kel/Ptr.h"
#include "Node.h"
#include "Quoll/IpAddr.h"

namespace StateLoader {

Kel::Ptr<Classification::StructuredFilter> readFilter(Node const& node,
                                                      Quoll::AddressFamily family);

}  // namespace StateLoader
