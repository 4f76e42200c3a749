// Prefix arithmetic and text. Every bit operation goes through one byte-wise helper that clears or
// sets the bits past a length, so /0, /32 and /128 need no special cases and no shift is ever as
// wide as its operand.
#include "Quoll/IpGenPrefix.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <ostream>

#include "Kel/Value.h"
#include "Strix/Printable.h"

namespace Quoll {

namespace {

enum class HostBits { cleared, set };

// The address with every bit past the first `length` cleared or set.
IpAddr withHostBits(IpAddr const& address, std::uint8_t length, HostBits hostBits) {
   auto const source = address.bytes();
   IpAddr::Bytes bytes{};
   std::copy(source.begin(), source.end(), bytes.begin());
   std::size_t const firstHostByte = length / 8u;
   for (std::size_t index = firstHostByte; index < source.size(); ++index) {
      auto const hostMask =
          static_cast<std::uint8_t>(index == firstHostByte ? 0xffu >> (length % 8u) : 0xffu);
      bytes[index] = static_cast<std::uint8_t>(
          hostBits == HostBits::set ? bytes[index] | hostMask : bytes[index] & ~hostMask);
   }
   return IpAddr::fromBytes(address.family(), bytes);
}

Kel::Failure failure(std::string const& what, std::string_view whole) {
   return {what + " in " + Strix::quoted(whole)};
}

Kel::Expected<std::uint8_t> parseLength(std::string_view text, std::uint8_t width,
                                        std::string_view whole) {
   if (text.empty()) {
      return failure("missing prefix length", whole);
   }
   auto const isDigit = [](char character) { return character >= '0' && character <= '9'; };
   if (!std::all_of(text.begin(), text.end(), isDigit)) {
      return failure("prefix length " + Strix::quoted(text) + " is not a number", whole);
   }
   unsigned long long value = 0;
   auto const parsed = std::from_chars(text.data(), text.data() + text.size(), value);
   if (parsed.ec != std::errc{} || value > width) {
      return failure(
          "prefix length " + std::string(text) + " out of range (0-" + std::to_string(width) + ")",
          whole);
   }
   return static_cast<std::uint8_t>(value);
}

// "0" to "32", without a leading zero.
std::optional<std::uint8_t> plainV4Length(std::string_view digits) {
   auto const digit = [&digits](std::size_t index) {
      return static_cast<unsigned>(digits[index]) - '0';
   };
   if (digits.size() == 1 && digit(0) <= 9) {
      return static_cast<std::uint8_t>(digit(0));
   }
   if (digits.size() == 2 && digit(0) - 1 <= 2 && digit(1) <= 9) {
      auto const length = digit(0) * 10 + digit(1);
      return length <= 32 ? std::optional(static_cast<std::uint8_t>(length)) : std::nullopt;
   }
   return std::nullopt;
}

// An IPv4 prefix written as the text form writes it ("10.1.0.0/16", or a bare address for /32),
// without host bits: what state files hold by the million, read in one pass. Nothing for any other
// text, which the field-by-field reading then accepts or refuses with its reason.
struct PlainV4Prefix {
   std::uint32_t address;
   std::uint8_t length;
};

std::optional<PlainV4Prefix> plainV4Prefix(std::string_view text) {
   auto rest = text;
   auto const address = IpAddr::readPlainV4(rest);
   if (!address) {
      return std::nullopt;
   }
   std::uint8_t length = 32;
   if (!rest.empty()) {
      auto const written = rest.front() == '/' ? plainV4Length(rest.substr(1)) : std::nullopt;
      if (!written) {
         return std::nullopt;
      }
      length = *written;
   }
   std::uint32_t const hostMask = length == 32 ? 0 : ~std::uint32_t{0} >> length;
   if (*address & hostMask) {
      return std::nullopt;
   }
   return PlainV4Prefix{*address, length};
}

}  // namespace

IpGenPrefix::IpGenPrefix(IpAddr address, std::uint8_t length) noexcept
    : length_(std::min(length, addressBits(address.family()))) {
   address_ = withHostBits(address, length_, HostBits::cleared);
}

Kel::Expected<IpGenPrefix> IpGenPrefix::parse(std::string_view text) {
   if (auto const plain = plainV4Prefix(text)) {
      // Without host bits, so without the constructor's masking.
      IpGenPrefix prefix;
      prefix.address_ = IpAddr::v4(plain->address);
      prefix.length_ = plain->length;
      return prefix;
   }
   auto const slash = text.find('/');
   if (text.empty()) {
      return Kel::Failure{"empty prefix"};
   }
   if (slash == 0) {
      return failure("missing address", text);
   }
   auto address = IpAddr::parse(text.substr(0, slash));
   if (!address) {
      return Kel::Failure{address.reason()};
   }
   auto const width = addressBits(address->family());
   if (slash == std::string_view::npos) {
      return IpGenPrefix(address.value(), width);
   }
   auto length = parseLength(text.substr(slash + 1), width, text);
   if (!length) {
      return Kel::Failure{length.reason()};
   }
   IpGenPrefix prefix(address.value(), length.value());
   if (prefix.address() != address.value()) {
      return Kel::Failure{failure("host bits set", text).reason + " (did you mean " +
                          prefix.stringValue() + "?)"};
   }
   return prefix;
}

IpAddr IpGenPrefix::lastAddress() const noexcept {
   return withHostBits(address_, length_, HostBits::set);
}

bool IpGenPrefix::contains(IpAddr const& address) const noexcept {
   return !isNullPrefix() && address.family() == family() &&
          withHostBits(address, length_, HostBits::cleared) == address_;
}

bool IpGenPrefix::contains(IpGenPrefix const& other) const noexcept {
   return other.length_ >= length_ && contains(other.address_);
}

bool IpGenPrefix::overlaps(IpGenPrefix const& other) const noexcept {
   return contains(other) || other.contains(*this);
}

std::size_t IpGenPrefix::format(char* out) const noexcept {
   if (isNullPrefix()) {
      return 0;
   }
   char* cursor = out + address_.format(out);
   *cursor++ = '/';
   cursor = std::to_chars(cursor, cursor + 3, unsigned{length_}).ptr;
   return static_cast<std::size_t>(cursor - out);
}

std::string IpGenPrefix::stringValue() const {
   char text[kMaxTextLength];
   return std::string(text, format(text));
}

std::size_t IpGenPrefix::hash() const noexcept {
   return address_.hash() * 131 + length_;
}

std::ostream& operator<<(std::ostream& stream, IpGenPrefix const& prefix) {
   char text[IpGenPrefix::kMaxTextLength];
   return stream << std::string_view(text, prefix.format(text));
}

Kel::Value toValue(IpGenPrefix const& prefix) {
   return Kel::Value(Kel::String(prefix.stringValue()));
}

}  // namespace Quoll
