// Each check names the keys involved, so that the message says what to remove.
#include "FilterChecks.h"

#include <array>
#include <string>
#include <string_view>

#include "StateError.h"

namespace StateLoader {

namespace {

using Classification::StructuredFilter;
using Classification::TcpFlagGroup;

struct AddressKind {
   std::string_view key;
   bool given;
};

void checkOneKind(std::array<AddressKind, 4> const& kinds, std::string_view direction,
                  Where const& where) {
   AddressKind const* first = nullptr;
   for (AddressKind const& kind : kinds) {
      if (!kind.given) {
         continue;
      }
      if (first) {
         fail(where, quoted(first->key) + " and " + quoted(kind.key) +
                         " exclude each other: a rule matches its " + std::string(direction) +
                         " addresses one way only");
      }
      first = &kind;
   }
}

void refuseLongestPrefixMatch(bool given, std::string_view key, Where const& where) {
   if (given) {
      fail(where.member(key), "longest-prefix match is not possible in an inner header");
   }
}

// Connection states are not header bits: such a flag stands alone and is always set.
void checkConnectionState(TcpFlagGroup const& group, std::uint16_t bit, std::string_view name,
                          Where const& where) {
   if (!(group.mask & bit)) {
      return;
   }
   if (group.mask != bit) {
      fail(where, quoted(name) + " is a connection state and must be alone in its flag group");
   }
   if (!(group.value & bit)) {
      fail(where, quoted(name) + " can only be true");
   }
}

}  // namespace

void checkAddressKinds(StructuredFilter const& filter, Where const& where) {
   checkOneKind({{{"sources", !filter.sources().empty()},
                  {"sourcePrefixSets", !filter.srcPrefixSets().empty()},
                  {"sourceLpms", !filter.sourceLpms().empty()},
                  {"sourceLpmPrefixSets", !filter.srcLpmPrefixSets().empty()}}},
                "source", where);
   checkOneKind({{{"destinations", !filter.destinations().empty()},
                  {"destinationPrefixSets", !filter.dstPrefixSets().empty()},
                  {"destinationLpms", !filter.destinationLpms().empty()},
                  {"destinationLpmPrefixSets", !filter.dstLpmPrefixSets().empty()}}},
                "destination", where);
}

void checkInnerHeader(StructuredFilter const& inner, Where const& where) {
   refuseLongestPrefixMatch(!inner.sourceLpms().empty(), "sourceLpms", where);
   refuseLongestPrefixMatch(!inner.srcLpmPrefixSets().empty(), "sourceLpmPrefixSets", where);
   refuseLongestPrefixMatch(!inner.destinationLpms().empty(), "destinationLpms", where);
   refuseLongestPrefixMatch(!inner.dstLpmPrefixSets().empty(), "destinationLpmPrefixSets", where);
   checkAddressKinds(inner, where);
}

void checkVlanTag(Classification::VlanRangeSet const& tag, Where const& where) {
   if (!tag.vlans().empty() && !tag.vlanFieldSets().empty()) {
      fail(where,
           "\"vlans\" and \"vlanFieldSets\" exclude each other: a VLAN tag holds one or "
           "the other");
   }
   if (tag.vlans().empty() && tag.vlanFieldSets().empty()) {
      fail(where, "a VLAN tag needs \"vlans\" or \"vlanFieldSets\"");
   }
}

void checkTcpFlagGroup(TcpFlagGroup const& group, Where const& where) {
   if (group.mask == 0) {
      fail(where, "a TCP flag group needs at least one flag");
   }
   checkConnectionState(group, Classification::tcpInitialSyn, "initialSyn", where);
   checkConnectionState(group, Classification::tcpEstablished, "established", where);
}

}  // namespace StateLoader
