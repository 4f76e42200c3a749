// Numeric ranges of match criteria and field sets: ports, VLANs, protocols, ICMP types and
// codes, lengths, fragment offsets, DSCP and TTL values. A range is inclusive at both ends and
// orders by its low end, then its high end.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace Classification {

struct NumericalRange {
   std::uint32_t low = 0;
   std::uint32_t high = 0;

   // "80" for a single value, "1000-2000" for a true range.
   std::string stringValue() const;
   bool overlaps(NumericalRange const& other) const noexcept {
      return low <= other.high && other.low <= high;
   }
   // How many values the range covers.
   std::uint64_t width() const noexcept { return std::uint64_t{high} - low + 1; }

   friend auto operator<=>(NumericalRange const&, NumericalRange const&) = default;
};

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
