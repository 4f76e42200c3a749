// "fieldSets": named IPv4 and IPv6 prefix sets (with except-prefixes), L4-port sets and VLAN sets,
// each with where its contents came from.
#include <array>

#include "Choice.h"
#include "Members.h"
#include "Sections.h"
#include "TextValues.h"

namespace StateLoader {

namespace {

using Classification::ContentsSource;
using Classification::FieldSet;
using Classification::FieldSetMap;
using Classification::L4PortFieldSetSubConfig;
using Classification::PrefixFieldSetSubConfig;
using Classification::RangeFieldSetSubConfig;
using Classification::VlanFieldSetSubConfig;
using Quoll::AddressFamily;

constexpr std::array kSources = {
    Choice<ContentsSource>{"static", ContentsSource::staticSource},
    Choice<ContentsSource>{"bgp", ContentsSource::bgp},
    Choice<ContentsSource>{"controller", ContentsSource::controller},
};

template <typename SubConfig>
void readSource(Node const& value, SubConfig& contents) {
   contents.sourceIs(readChoice(value, kSources, "field-set source"));
}

template <AddressFamily family>
constexpr MemberTable kPrefixSetMembers = std::array{
    Member<PrefixFieldSetSubConfig>{"source", readSource<PrefixFieldSetSubConfig>},
    Member<PrefixFieldSetSubConfig>{"prefixes",
                                    [](Node const& value, PrefixFieldSetSubConfig& contents) {
                                       readPrefixList(value, family, contents.prefixes());
                                    }},
    Member<PrefixFieldSetSubConfig>{"exceptPrefixes",
                                    [](Node const& value, PrefixFieldSetSubConfig& contents) {
                                       readPrefixList(value, family, contents.exceptPrefixes());
                                    }},
};

template <std::string_view const& key, RangeKind const& kind>
constexpr MemberTable kRangeSetMembers = std::array{
    Member<RangeFieldSetSubConfig>{"source", readSource<RangeFieldSetSubConfig>},
    Member<RangeFieldSetSubConfig>{key,
                                   [](Node const& value, RangeFieldSetSubConfig& contents) {
                                      readRangeList(value, kind, contents.ranges());
                                   }},
};

constexpr std::string_view kPortsKey = "ports";
constexpr std::string_view kVlansKey = "vlans";

// Every set of one kind: its name as the key, its contents read by `members`.
template <typename SubConfig, typename Contents, std::size_t N>
void readNamedSets(Node const& node, FieldSetMap<SubConfig>& sets,
                   MemberTable<Contents, N> const& members) {
   forEachMember(node, [&sets, &members](std::string_view key, Node const& value) {
      auto const name = checkedName(key, "field-set name", value.where);
      auto contents = Kel::make<SubConfig>();
      readMembers(value, members, static_cast<Contents&>(*contents));
      auto set = Kel::make<FieldSet<SubConfig>>(name);
      set->currCfgIs(std::move(contents));
      if (!insertedNew(sets, name, std::move(set))) {
         failDuplicateKey(value.where, key);
      }
   });
}

constexpr MemberTable kFieldSetsMembers = std::array{
    Member<Classification::FieldSetConfig>{
        "ipv4Prefix",
        [](Node const& value, Classification::FieldSetConfig& config) {
           readNamedSets(value, config.fieldSetIpPrefix(), kPrefixSetMembers<AddressFamily::ipv4>);
        }},
    Member<Classification::FieldSetConfig>{
        "ipv6Prefix",
        [](Node const& value, Classification::FieldSetConfig& config) {
           readNamedSets(value, config.fieldSetIpv6Prefix(),
                         kPrefixSetMembers<AddressFamily::ipv6>);
        }},
    Member<Classification::FieldSetConfig>{
        "l4Port",
        [](Node const& value, Classification::FieldSetConfig& config) {
           readNamedSets(value, config.fieldSetL4Port(), kRangeSetMembers<kPortsKey, kPorts>);
        }},
    Member<Classification::FieldSetConfig>{
        "vlan",
        [](Node const& value, Classification::FieldSetConfig& config) {
           readNamedSets(value, config.fieldSetVlan(), kRangeSetMembers<kVlansKey, kVlans>);
        }},
};

}  // namespace

void readFieldSets(Node const& node, DeviceState& state) {
   readMembers(node, kFieldSetsMembers, *state.fieldSetConfig);
}

}  // namespace StateLoader
