// Every operation converts to IpGenPrefix and back: an IPv4 prefix is a handful of bytes, and one
// implementation of parsing, masking and text keeps the two prefix types in step.
#include "Quoll/Prefix.h"

#include <ostream>

#include "Kel/Value.h"

namespace Quoll {

Prefix::Prefix(std::uint32_t hostOrderAddress, std::uint8_t length) noexcept {
   IpGenPrefix const masked(IpAddr::v4(hostOrderAddress), length);
   address_ = masked.address().v4Value();
   length_ = masked.length();
}

Kel::Expected<Prefix> Prefix::parse(std::string_view text) {
   auto parsed = IpGenPrefix::parse(text);
   if (!parsed) {
      return Kel::Failure{parsed.reason()};
   }
   return fromGenPrefix(parsed.value());
}

Kel::Expected<Prefix> Prefix::fromGenPrefix(IpGenPrefix const& prefix) {
   if (prefix.isNullPrefix()) {
      return Kel::Failure{"the null prefix is not an IPv4 prefix"};
   }
   if (!prefix.isV4()) {
      return Kel::Failure{"\"" + prefix.stringValue() + "\" is not an IPv4 prefix"};
   }
   return Prefix(prefix.address().v4Value(), prefix.length());
}

IpGenPrefix Prefix::genPrefix() const noexcept {
   return IpGenPrefix(IpAddr::v4(address_), length_);
}

bool Prefix::contains(IpAddr const& address) const noexcept {
   return genPrefix().contains(address);
}

bool Prefix::contains(Prefix const& other) const noexcept {
   return genPrefix().contains(other.genPrefix());
}

bool Prefix::overlaps(Prefix const& other) const noexcept {
   return genPrefix().overlaps(other.genPrefix());
}

std::size_t Prefix::format(char* out) const noexcept {
   return genPrefix().format(out);
}

std::string Prefix::stringValue() const {
   return genPrefix().stringValue();
}

std::ostream& operator<<(std::ostream& stream, Prefix const& prefix) {
   return stream << prefix.genPrefix();
}

Kel::Value toValue(Prefix const& prefix) {
   return toValue(prefix.genPrefix());
}

}  // namespace Quoll
