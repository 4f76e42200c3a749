// Quoll::Prefix is an IPv4-only prefix: a host-order address and a length, for the models that can
// only ever hold IPv4. It is a thin shell over IpGenPrefix, which does its parsing, masking, text
// and containment, so the two can never disagree. The default prefix is 0.0.0.0/0.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "Kel/Expected.h"
#include "Quoll/IpGenPrefix.h"

namespace Quoll {

class Prefix {
 public:
   // "255.255.255.255/32".
   static constexpr std::size_t kMaxTextLength = 18;

   Prefix() = default;
   // Clears the address bits beyond `length`; a length beyond 32 means /32.
   Prefix(std::uint32_t hostOrderAddress, std::uint8_t length) noexcept;

   // As IpGenPrefix::parse, refusing IPv6.
   static Kel::Expected<Prefix> parse(std::string_view text);
   // Refuses IPv6 and null prefixes.
   static Kel::Expected<Prefix> fromGenPrefix(IpGenPrefix const& prefix);

   std::uint32_t address() const noexcept { return address_; }
   std::uint8_t length() const noexcept { return length_; }
   IpGenPrefix genPrefix() const noexcept;

   bool contains(IpAddr const& address) const noexcept;
   bool contains(Prefix const& other) const noexcept;
   bool overlaps(Prefix const& other) const noexcept;

   // Writes "ADDRESS/LENGTH" without a terminator and returns its length; `out` must have room
   // for kMaxTextLength characters.
   std::size_t format(char* out) const noexcept;
   std::string stringValue() const;

   // By address, then length: the order of the same prefixes as IpGenPrefix.
   friend bool operator==(Prefix const&, Prefix const&) = default;
   friend std::strong_ordering operator<=>(Prefix const&, Prefix const&) = default;

 private:
   std::uint32_t address_ = 0;
   std::uint8_t length_ = 0;
};

std::ostream& operator<<(std::ostream& stream, Prefix const& prefix);
Kel::Value toValue(Prefix const& prefix);

}  // namespace Quoll

template <>
struct std::hash<Quoll::Prefix> {
   std::size_t operator()(Quoll::Prefix const& prefix) const noexcept {
      return std::hash<std::uint64_t>{}(std::uint64_t{prefix.address()} << 8 | prefix.length());
   }
};
