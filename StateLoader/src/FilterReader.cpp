// The keys of a match and of the objects inside it, each read straight into the structured filter.
// The checks that span several keys run once the whole object is read.
#include "FilterReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "Choice.h"
#include "FilterChecks.h"
#include "Members.h"
#include "StateError.h"
#include "TextValues.h"

namespace StateLoader {

namespace {

using Classification::NameSet;
using Classification::PortField;
using Classification::PrefixSet;
using Classification::ProtoField;
using Classification::RangeSet;
using Classification::StructuredFilter;
using Classification::TcpFlagGroup;
using Classification::VlanRangeSet;
using Quoll::AddressFamily;

constexpr std::string_view kFieldSetName = "field-set name";

struct FilterTarget {
   StructuredFilter& filter;
   AddressFamily family;
};

struct ProtocolTarget {
   ProtoField& proto;
   Classification::ProtocolRange range;
};

template <PrefixSet& (StructuredFilter::*collection)()>
void readPrefixes(Node const& value, FilterTarget& target) {
   readPrefixList(value, target.family, (target.filter.*collection)());
}

template <NameSet& (StructuredFilter::*collection)()>
void readPrefixSetNames(Node const& value, FilterTarget& target) {
   readNameList(value, kFieldSetName, (target.filter.*collection)());
}

template <RangeSet& (StructuredFilter::*collection)(), RangeKind const& kind>
void readFilterRanges(Node const& value, FilterTarget& target) {
   readRangeList(value, kind, (target.filter.*collection)());
}

template <void (StructuredFilter::*set)(bool) noexcept>
void readFlag(Node const& value, FilterTarget& target) {
   (target.filter.*set)(asBool(value));
}

constexpr MemberTable kVlanTagMembers = std::array{
    Member<VlanRangeSet>{
        "vlans",
        [](Node const& value, VlanRangeSet& tag) { readRangeList(value, kVlans, tag.vlans()); }},
    Member<VlanRangeSet>{"vlanFieldSets",
                         [](Node const& value, VlanRangeSet& tag) {
                            readNameList(value, kFieldSetName, tag.vlanFieldSets());
                         }},
};

void readVlanTags(Node const& value, FilterTarget& target) {
   forEachElement(value, [&target](Node const& element) {
      VlanRangeSet tag;
      readMembers(element, kVlanTagMembers, tag);
      checkVlanTag(tag, element.where);
      target.filter.vlanTags().push_back(std::move(tag));
   });
}

template <RangeSet& (PortField::*collection)()>
void readPorts(Node const& value, PortField& ports) {
   readRangeList(value, kPorts, (ports.*collection)());
}

template <NameSet& (PortField::*collection)()>
void readPortSetNames(Node const& value, PortField& ports) {
   readNameList(value, kFieldSetName, (ports.*collection)());
}

constexpr MemberTable kPortMembers = std::array{
    Member<PortField>{"sources", readPorts<&PortField::sport>},
    Member<PortField>{"destinations", readPorts<&PortField::dport>},
    Member<PortField>{"sourceFieldSets", readPortSetNames<&PortField::srcL4PortFieldSets>},
    Member<PortField>{"destinationFieldSets", readPortSetNames<&PortField::dstL4PortFieldSets>},
};

void readPortFields(Node const& value, ProtocolTarget& target) {
   forEachElement(value, [&target](Node const& element) {
      PortField ports;
      readMembers(element, kPortMembers, ports);
      target.proto.port().push_back(std::move(ports));
   });
}

void readIcmpTypes(Node const& value, ProtocolTarget& target) {
   forEachMember(value, [&target](std::string_view key, Node const& codes) {
      auto const type = checkedRange(key, kIcmpTypes, codes.where);
      Classification::TypeAndCode typeAndCode;
      readRangeList(codes, kIcmpCodes, typeAndCode.icmpCode());
      if (!insertedNew(target.proto.icmpType(), type, std::move(typeAndCode))) {
         fail(codes.where, "ICMP type " + quoted(key) + " is already listed");
      }
   });
}

template <std::uint16_t bit>
void readTcpFlag(Node const& value, TcpFlagGroup& group) {
   group.mask |= bit;
   if (asBool(value)) {
      group.value |= bit;
   }
}

constexpr MemberTable kTcpFlagMembers = std::array{
    Member<TcpFlagGroup>{"fin", readTcpFlag<Classification::tcpFin>},
    Member<TcpFlagGroup>{"syn", readTcpFlag<Classification::tcpSyn>},
    Member<TcpFlagGroup>{"rst", readTcpFlag<Classification::tcpRst>},
    Member<TcpFlagGroup>{"psh", readTcpFlag<Classification::tcpPsh>},
    Member<TcpFlagGroup>{"ack", readTcpFlag<Classification::tcpAck>},
    Member<TcpFlagGroup>{"urg", readTcpFlag<Classification::tcpUrg>},
    Member<TcpFlagGroup>{"established", readTcpFlag<Classification::tcpEstablished>},
    Member<TcpFlagGroup>{"initialSyn", readTcpFlag<Classification::tcpInitialSyn>},
};

// The show library prints flags only under TCP itself; anywhere else they would vanish.
void readTcpFlags(Node const& value, ProtocolTarget& target) {
   if (target.range != Classification::ProtocolRange{6, 6}) {
      fail(value.where, "TCP flags can only be matched under protocol \"6\"");
   }
   forEachElement(value, [&target](Node const& element) {
      TcpFlagGroup group;
      readMembers(element, kTcpFlagMembers, group);
      checkTcpFlagGroup(group, element.where);
      if (!target.proto.tcpFlag().insert(group)) {
         fail(element.where, "this TCP flag group is already listed");
      }
   });
}

constexpr MemberTable kProtocolMembers = std::array{
    Member<ProtocolTarget>{"ports", readPortFields},
    Member<ProtocolTarget>{"icmpTypes", readIcmpTypes},
    Member<ProtocolTarget>{"tcpFlags", readTcpFlags},
};

// Rules read one after the other often match the same ports, and often the same protocols, some
// with criteria that change from rule to rule (TCP to ports 1024, 1025, ...) and some with the same
// every time (UDP to any port): a protocol's criteria that equal the last ones this thread read for
// that protocol are shared with them, as neither changes once read. The last criteria of a few
// protocols are kept. That saves the protocol's entity, its ports and their collections, about a
// hundred bytes a rule; criteria are read on the stack, so that a shared one costs no allocation.
Kel::Ptr<ProtoField> sharedWithRecent(Classification::ProtocolRange range, ProtoField&& read) {
   struct Kept {
      Classification::ProtocolRange range;
      Kel::Ptr<ProtoField> proto;
   };
   thread_local std::array<Kept, 4> recent;
   thread_local std::size_t oldest = 0;
   auto kept = std::find_if(recent.begin(), recent.end(), [&range](Kept const& entry) {
      return entry.proto && entry.range == range;
   });
   if (kept != recent.end() && kept->proto->sameCriteria(read)) {
      return kept->proto;
   }
   if (kept == recent.end()) {
      kept = recent.begin() + oldest;
      oldest = (oldest + 1) % recent.size();
   }
   *kept = {range, Kel::make<ProtoField>(std::move(read))};
   return kept->proto;
}

void readProtocols(Node const& value, FilterTarget& target) {
   forEachMember(value, [&target](std::string_view key, Node const& entry) {
      ProtoField read;
      ProtocolTarget protocol{read, checkedRange(key, kProtocols, entry.where)};
      readMembers(entry, kProtocolMembers, protocol);
      auto proto = sharedWithRecent(protocol.range, std::move(read));
      if (!insertedNew(target.filter.proto(), protocol.range, proto)) {
         fail(entry.where, "protocol " + quoted(key) + " is already listed");
      }
   });
}

struct FragmentTarget {
   bool all = false;
   bool offsets = false;
   Classification::Fragment fragment;
};

constexpr MemberTable kFragmentMembers = std::array{
    Member<FragmentTarget>{
        "all", [](Node const& value, FragmentTarget& target) { target.all = asBool(value); }},
    Member<FragmentTarget>{"offsets",
                           [](Node const& value, FragmentTarget& target) {
                              target.offsets = true;
                              readRangeList(value, kFragmentOffsets, target.fragment.offset);
                           }},
};

void readFragment(Node const& value, FilterTarget& target) {
   FragmentTarget fragment;
   readMembers(value, kFragmentMembers, fragment);
   if (fragment.all == fragment.offsets) {
      fail(value.where, fragment.all ? "\"all\" and \"offsets\" exclude each other"
                                     : "a fragment match needs \"all\": true or \"offsets\"");
   }
   fragment.fragment.kind =
       fragment.all ? Classification::Fragment::matchAll : Classification::Fragment::matchOffsets;
   target.filter.fragmentIs(std::move(fragment.fragment));
}

constexpr std::array kAddressFamilies = {
    Choice<AddressFamily>{"ipv4", AddressFamily::ipv4},
    Choice<AddressFamily>{"ipv6", AddressFamily::ipv6},
};

constexpr MemberTable kAddressMembers = std::array{
    Member<FilterTarget>{"sources", readPrefixes<&StructuredFilter::sources>},
    Member<FilterTarget>{"sourcePrefixSets", readPrefixSetNames<&StructuredFilter::srcPrefixSets>},
    Member<FilterTarget>{"sourceLpms", readPrefixes<&StructuredFilter::sourceLpms>},
    Member<FilterTarget>{"sourceLpmPrefixSets",
                         readPrefixSetNames<&StructuredFilter::srcLpmPrefixSets>},
    Member<FilterTarget>{"destinations", readPrefixes<&StructuredFilter::destinations>},
    Member<FilterTarget>{"destinationPrefixSets",
                         readPrefixSetNames<&StructuredFilter::dstPrefixSets>},
    Member<FilterTarget>{"destinationLpms", readPrefixes<&StructuredFilter::destinationLpms>},
    Member<FilterTarget>{"destinationLpmPrefixSets",
                         readPrefixSetNames<&StructuredFilter::dstLpmPrefixSets>},
};

// Only the addresses of an inner header are shown, so only they may be given (the checks refuse
// longest-prefix match there). The family is read before the rest, since the prefixes are checked
// against it.
constexpr auto kInnerMembers =
    joined(std::array{Member<FilterTarget>{"addressFamily", [](Node const&, FilterTarget&) {}}},
           kAddressMembers);

// A filter of the given family read with `members`, then checked as a whole.
template <std::size_t N>
Kel::Ptr<StructuredFilter> readFilterWith(Node const& node, AddressFamily family,
                                          MemberTable<FilterTarget, N> const& members,
                                          void (*check)(StructuredFilter const&, Where const&)) {
   auto filter = Kel::make<StructuredFilter>();
   filter->addressFamilyIs(family);
   FilterTarget target{*filter, family};
   readMembers(node, members, target);
   check(*filter, node.where);
   return filter;
}

AddressFamily readInnerFamily(Node const& inner) {
   AddressFamily family{};
   if (!visitMember(inner, "addressFamily", [&family](Node const& value) {
          family = readChoice(value, kAddressFamilies, "address family");
       })) {
      failMissingKey(inner.where, "addressFamily");
   }
   return family;
}

Kel::Ptr<StructuredFilter> readInnerFilter(Node const& node) {
   return readFilterWith(node, readInnerFamily(node), kInnerMembers, checkInnerHeader);
}

constexpr std::array kEncapsulationTypes = {
    Choice<Classification::EncapsulationType>{"gtpv1", Classification::EncapsulationType::gtpv1},
};

constexpr MemberTable kEncapsulationMembers = std::array{
    Member<StructuredFilter>{"type",
                             [](Node const& value, StructuredFilter& filter) {
                                filter.encapFieldIs(
                                    {readChoice(value, kEncapsulationTypes, "encapsulation type")});
                             },
                             true},
    Member<StructuredFilter>{"inner",
                             [](Node const& value, StructuredFilter& filter) {
                                filter.innerMatchIs(readInnerFilter(value));
                             },
                             true},
};

void readEncapsulation(Node const& value, FilterTarget& target) {
   readMembers(value, kEncapsulationMembers, target.filter);
}

constexpr auto kFilterMembers = joined(
    kAddressMembers,
    std::array{
        Member<FilterTarget>{"vlanTags", readVlanTags},
        Member<FilterTarget>{"protocols", readProtocols},
        Member<FilterTarget>{"lengths", readFilterRanges<&StructuredFilter::length, kIpLengths>},
        Member<FilterTarget>{"fragment", readFragment},
        Member<FilterTarget>{"dscps", readFilterRanges<&StructuredFilter::dscp, kDscps>},
        Member<FilterTarget>{"ttls", readFilterRanges<&StructuredFilter::ttl, kTtls>},
        Member<FilterTarget>{"bgpNeighbors", readFlag<&StructuredFilter::matchBgpNeighborsIs>},
        Member<FilterTarget>{"bgpProtocol", readFlag<&StructuredFilter::matchBgpProtocolIs>},
        Member<FilterTarget>{"ipOptions", readFlag<&StructuredFilter::matchIpOptionsIs>},
        Member<FilterTarget>{"encapsulation", readEncapsulation},
    });

}  // namespace

Kel::Ptr<StructuredFilter> readFilter(Node const& node, AddressFamily family) {
   return readFilterWith(node, family, kFilterMembers, checkAddressKinds);
}

}  // namespace StateLoader
