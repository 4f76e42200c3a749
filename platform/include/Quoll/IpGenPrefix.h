// Quoll::IpGenPrefix is an IPv4 or IPv6 prefix (an address and a length), or the null prefix that a
// default-constructed one holds. It is what rules match on and what prefix field sets list, so it
// carries the operations show commands need: the text form, a total order (prefix lists print
// sorted), and the containment and overlap tests behind `field-set ... contains PREFIX`. The
// address never has bits set beyond the length, which keeps equality and ordering meaningful.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "Kel/Expected.h"
#include "Quoll/IpAddr.h"

namespace Quoll {

class IpGenPrefix {
 public:
   // The longest address text and "/128".
   static constexpr std::size_t kMaxTextLength = IpAddr::kMaxTextLength + 4;

   IpGenPrefix() = default;
   // Clears the address bits beyond `length`; a length beyond the family's width means the whole
   // address. A null address gives the null prefix.
   IpGenPrefix(IpAddr address, std::uint8_t length) noexcept;

   // "ADDRESS/LENGTH", or a bare address for its host prefix (/32 or /128). Refuses text with bits
   // set beyond the length rather than silently changing what the user wrote.
   static Kel::Expected<IpGenPrefix> parse(std::string_view text);

   IpAddr const& address() const noexcept { return address_; }
   std::uint8_t length() const noexcept { return length_; }
   AddressFamily family() const noexcept { return address_.family(); }
   bool isV4() const noexcept { return address_.isV4(); }
   bool isV6() const noexcept { return address_.isV6(); }
   bool isNullPrefix() const noexcept { return address_.isNull(); }

   // The highest address the prefix covers (the broadcast address for IPv4).
   IpAddr lastAddress() const noexcept;
   // False across families and for the null prefix.
   bool contains(IpAddr const& address) const noexcept;
   // True when every address of `other` is in this prefix.
   bool contains(IpGenPrefix const& other) const noexcept;
   // Prefixes of one family overlap exactly when one contains the other.
   bool overlaps(IpGenPrefix const& other) const noexcept;

   // Writes "ADDRESS/LENGTH" (nothing for the null prefix) without a terminator and returns its
   // length; `out` must have room for kMaxTextLength characters.
   std::size_t format(char* out) const noexcept;
   std::string stringValue() const;

   // By family, then address, then length: 10.0.0.0/8 < 10.0.0.0/16 < 10.1.0.0/16.
   friend bool operator==(IpGenPrefix const&, IpGenPrefix const&) = default;
   friend std::strong_ordering operator<=>(IpGenPrefix const&, IpGenPrefix const&) = default;

   std::size_t hash() const noexcept;

 private:
   IpAddr address_;
   std::uint8_t length_ = 0;
};

std::ostream& operator<<(std::ostream& stream, IpGenPrefix const& prefix);
Kel::Value toValue(IpGenPrefix const& prefix);

}  // namespace Quoll

template <>
struct std::hash<Quoll::IpGenPrefix> {
   std::size_t operator()(Quoll::IpGenPrefix const& prefix) const noexcept { return prefix.hash(); }
};
