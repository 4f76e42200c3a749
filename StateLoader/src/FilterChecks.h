// The invariants of a rule's match that the show library relies on and asserts: one kind of
// address match per direction, no longest-prefix match in an inner header, a VLAN tag holding
// VLANs or VLAN field sets, and TCP flag groups the library can print. Refusing them here keeps
// every state file away from those assertions.
#pragma once

#include "Classification/StructuredFilter.h"
#include "JsonPointer.h"

namespace StateLoader {

void checkAddressKinds(Classification::StructuredFilter const& filter, Where const& where);
// Also checks the address kinds.
void checkInnerHeader(Classification::StructuredFilter const& inner, Where const& where);
void checkVlanTag(Classification::VlanRangeSet const& tag, Where const& where);
void checkTcpFlagGroup(Classification::TcpFlagGroup const& group, Where const& where);

}  // namespace StateLoader
