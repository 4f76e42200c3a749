// Values written as text: names, interface names, free texts, IP prefixes and numeric ranges,
// one at a time and as lists. Each knows its limits and names the fault in words a user can act
// on; a list refuses an entry it already holds, since the model would silently keep one.
#pragma once

#include <cstdint>
#include <string_view>

#include "Classification/Range.h"
#include "Classification/StructuredFilter.h"
#include "Kel/String.h"
#include "Node.h"
#include "Quoll/IntfId.h"
#include "Quoll/IpGenPrefix.h"

namespace StateLoader {

// What a range holds and the values it may hold.
struct RangeKind {
   std::string_view what;
   std::uint32_t lowest;
   std::uint32_t highest;
};

inline constexpr RangeKind kPorts{"port", 0, Classification::kHighestPort};
inline constexpr RangeKind kVlans{"VLAN", Classification::kLowestVlan,
                                  Classification::kHighestVlan};
inline constexpr RangeKind kProtocols{"protocol", 0, 255};
inline constexpr RangeKind kIcmpTypes{"ICMP type", 0, 255};
inline constexpr RangeKind kIcmpCodes{"ICMP code", 0, 255};
inline constexpr RangeKind kIpLengths{"IP length", 0, 65535};
inline constexpr RangeKind kFragmentOffsets{"fragment offset", 0, 8191};
inline constexpr RangeKind kDscps{"DSCP value", 0, 63};
inline constexpr RangeKind kTtls{"TTL", 0, 255};

// Names (of policies, rules, sets, counters, VRFs, groups) must be non-empty and free of blanks,
// control characters, line separators and direction controls, which the command line could
// neither show nor read back. `what` says whose name it is, as in "policy name".
Kel::String checkedName(std::string_view text, std::string_view what, Where const& where);
Kel::String readName(Node const& node, std::string_view what);

Quoll::IntfId checkedIntfId(std::string_view text, Where const& where);

// Free text such as an error message: any characters a terminal shows as they are, and blanks.
Kel::String readText(Node const& node, std::string_view what);

// A prefix of the given family.
Quoll::IpGenPrefix readPrefix(Node const& node, Quoll::AddressFamily family);

// "80" or "1000-2000", within the kind's limits.
Classification::NumericalRange checkedRange(std::string_view text, RangeKind const& kind,
                                            Where const& where);

void readPrefixList(Node const& list, Quoll::AddressFamily family, Classification::PrefixSet& into);
void readRangeList(Node const& list, RangeKind const& kind, Classification::RangeSet& into);
void readNameList(Node const& list, std::string_view what, Classification::NameSet& into);
void readIntfNameList(Node const& list, Classification::NameSet& into);

}  // namespace StateLoader
