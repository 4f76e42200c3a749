// Numeric ranges of match criteria and field sets: ports, VLANs, protocols, ICMP types and
// codes, lengths, fragment offsets, DSCP and TTL values. A range is inclusive at both ends and
// orders by its low end, then its high end.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Kel {
class Value;
}

namespace Classification {

struct NumericalRange {
   std::uint32_t low = 0;
   std::uint32_t high = 0;

   // "4294967295-4294967295".
   static constexpr std::size_t kMaxTextLength = 21;

   // "80" for a single value, "1000-2000" for a true range.
   std::string stringValue() const;
   // Writes the text form without a terminator and returns its length; `out` must have room for
   // kMaxTextLength characters.
   std::size_t format(char* out) const noexcept;
   bool overlaps(NumericalRange const& other) const noexcept {
      return low <= other.high && other.low <= high;
   }
   // How many values the range covers.
   std::uint64_t width() const noexcept { return std::uint64_t{high} - low + 1; }

   friend auto operator<=>(NumericalRange const&, NumericalRange const&) = default;
};

// Its text form.
Kel::Value toValue(NumericalRange const& range);

// The values that port and VLAN ranges may hold, wherever one is read: a state file or a command.
// VLAN 4095 is reserved on the wire but may still stand in a set.
inline constexpr std::uint32_t kHighestPort = 65535;
inline constexpr std::uint32_t kLowestVlan = 1;
inline constexpr std::uint32_t kHighestVlan = 4095;

using PortRange = NumericalRange;
using VlanRange = NumericalRange;
using ProtocolRange = NumericalRange;
using IcmpTypeRange = NumericalRange;
using IcmpCodeRange = NumericalRange;
using PacketLengthRange = NumericalRange;
using FragmentOffsetRange = NumericalRange;
using DscpRange = NumericalRange;
using TtlRange = NumericalRange;

}  // namespace Classification
