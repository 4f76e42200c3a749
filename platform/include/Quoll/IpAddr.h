// Quoll::IpAddr is one IP address of either family, or the null address that a default-constructed
// one holds. It is a small trivially copyable value (a family byte and 16 address bytes), so that
// records and sorted prefix lists can hold millions of them. Text goes both ways: `parse` reads the
// dotted-quad and RFC 4291 forms and names what is wrong with bad text; `format` writes the
// canonical form (RFC 5952 for IPv6) into a caller's buffer without allocating, for the renderer.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "Kel/Expected.h"

namespace Kel {
class Value;
}

namespace Quoll {

// Declared in the order that addresses and prefixes sort in.
enum class AddressFamily : std::uint8_t { none, ipv4, ipv6 };

// The number of bits of an address of the family: the longest prefix length it allows.
constexpr std::uint8_t addressBits(AddressFamily family) noexcept {
   switch (family) {
      case AddressFamily::none:
         return 0;
      case AddressFamily::ipv4:
         return 32;
      case AddressFamily::ipv6:
         return 128;
   }
   return 0;
}

class IpAddr {
 public:
   // The longest address text there is ("ffff:ffff:ffff:ffff:ffff:ffff:255.255.255.255"). Our
   // canonical form never needs more than 39, but buffers sized for any address text fit it.
   static constexpr std::size_t kMaxTextLength = 45;
   using Bytes = std::array<std::uint8_t, 16>;

   IpAddr() = default;

   // Text containing a colon is read as IPv6, any other text as a dotted quad.
   static Kel::Expected<IpAddr> parse(std::string_view text);
   // The dotted quad that `text` starts with, in host order, written as `format` writes it (no
   // leading zeros), and `text` moved past it; nothing, and `text` as it was, for any other text.
   // A one-pass reader for the common case: it builds no reason.
   static std::optional<std::uint32_t> readPlainV4(std::string_view& text) noexcept;
   static IpAddr v4(std::uint32_t hostOrder) noexcept;
   static IpAddr v6(Bytes const& networkOrder) noexcept;
   // The address of the family whose bytes lead `networkOrder`; the null address for `none`.
   static IpAddr fromBytes(AddressFamily family, Bytes const& networkOrder) noexcept;

   AddressFamily family() const noexcept { return family_; }
   bool isV4() const noexcept { return family_ == AddressFamily::ipv4; }
   bool isV6() const noexcept { return family_ == AddressFamily::ipv6; }
   bool isNull() const noexcept { return family_ == AddressFamily::none; }

   // In network order: 4 bytes for IPv4, 16 for IPv6, none for the null address.
   std::span<std::uint8_t const> bytes() const noexcept {
      return {bytes_.data(), addressBits(family_) / 8u};
   }
   // The IPv4 address in host order; 0 for the other families.
   std::uint32_t v4Value() const noexcept;

   // Writes the text form (nothing for the null address) without a terminator and returns its
   // length; `out` must have room for kMaxTextLength characters.
   std::size_t format(char* out) const noexcept;
   std::string stringValue() const;

   // Null before IPv4 before IPv6, then by address bytes.
   friend bool operator==(IpAddr const&, IpAddr const&) = default;
   friend std::strong_ordering operator<=>(IpAddr const&, IpAddr const&) = default;

   std::size_t hash() const noexcept;

 private:
   // Bytes past the family's size stay zero, so that comparing all 16 orders every family right.
   AddressFamily family_ = AddressFamily::none;
   Bytes bytes_{};
};

// Records and prefix lists hold addresses by the million: keep them plain bytes.
static_assert(std::is_trivially_copyable_v<IpAddr> && sizeof(IpAddr) == 17);

std::ostream& operator<<(std::ostream& stream, IpAddr const& address);
Kel::Value toValue(IpAddr const& address);

}  // namespace Quoll

template <>
struct std::hash<Quoll::IpAddr> {
   std::size_t operator()(Quoll::IpAddr const& address) const noexcept { return address.hash(); }
};
