// Reading and writing address text. The parsers read the text field by field and stop at the
// first fault with a reason that quotes the whole input, since the user may have typed the address
// inside a longer prefix or state-file value. Formatting writes straight into the caller's
// buffer with std::to_chars, because the renderer prints an address per prefix per rule.
#include "Quoll/IpAddr.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>
#include <ostream>

#include "Kel/Value.h"
#include "Strix/CopyBytes.h"
#include "Strix/Printable.h"

namespace Quoll {

namespace {

using Octets = std::array<std::uint8_t, 4>;
using Groups = std::array<std::uint16_t, 8>;

// The groups read from one side of a "::" (or from a whole address without one).
struct GroupList {
   Groups groups{};
   std::size_t count = 0;
};

// The span of zero groups that "::" stands for; length 0 when there is none.
struct ZeroRun {
   std::size_t start = 0;
   std::size_t length = 0;
};

Kel::Failure failure(std::string const& what, std::string_view whole) {
   return {what + " in " + Strix::quoted(whole)};
}

// Printable characters as themselves, anything else by its code, so reasons stay readable.
std::string describeCharacter(char character) {
   if (character >= ' ' && character <= '~') {
      return std::string{'\'', character, '\''};
   }
   char code[4] = {'0', 'x', '0', '0'};
   auto const value = static_cast<unsigned char>(character);
   std::to_chars(code + (value < 16 ? 3 : 2), code + 4, unsigned{value}, 16);
   return std::string(code, 4);
}

bool isDecimalDigit(char character) {
   return character >= '0' && character <= '9';
}

bool isHexDigit(char character) {
   auto const lower = static_cast<char>(character | 0x20);
   return isDecimalDigit(character) || (lower >= 'a' && lower <= 'f');
}

// Leading zeros are refused: other tools read "010" as octal, so the text would be ambiguous.
Kel::Expected<std::uint8_t> parseOctet(std::string_view field, std::string_view whole) {
   if (field.empty()) {
      return failure("empty octet", whole);
   }
   auto const junk = std::find_if_not(field.begin(), field.end(), isDecimalDigit);
   if (junk != field.end()) {
      return failure("invalid character " + describeCharacter(*junk), whole);
   }
   if (field.size() > 1 && field.front() == '0') {
      return failure("octet " + Strix::quoted(field) + " has a leading zero", whole);
   }
   unsigned value = 0;
   if (field.size() <= 3) {
      std::from_chars(field.data(), field.data() + field.size(), value);
   }
   if (field.size() > 3 || value > 255) {
      return failure("octet " + std::string(field) + " out of range", whole);
   }
   return static_cast<std::uint8_t>(value);
}

// Well-formed text, by far the most common, read in one pass without building any reason; it
// accepts exactly what the field-by-field reading below accepts.
std::optional<Octets> plainDottedQuad(std::string_view text) {
   auto const address = IpAddr::readPlainV4(text);
   if (!address || !text.empty()) {
      return std::nullopt;
   }
   return Octets{static_cast<std::uint8_t>(*address >> 24),
                 static_cast<std::uint8_t>(*address >> 16),
                 static_cast<std::uint8_t>(*address >> 8), static_cast<std::uint8_t>(*address)};
}

Kel::Expected<Octets> parseDottedQuad(std::string_view text, std::string_view whole) {
   if (auto const octets = plainDottedQuad(text)) {
      return *octets;
   }
   auto const fieldCount = std::count(text.begin(), text.end(), '.') + 1;
   if (fieldCount != 4) {
      return failure("expected 4 octets, found " + std::to_string(fieldCount), whole);
   }
   Octets octets{};
   std::size_t start = 0;
   for (auto& octet : octets) {
      auto const end = std::min(text.find('.', start), text.size());
      auto parsed = parseOctet(text.substr(start, end - start), whole);
      if (!parsed) {
         return Kel::Failure{parsed.reason()};
      }
      octet = parsed.value();
      start = end + 1;
   }
   return octets;
}

Kel::Expected<std::uint16_t> parseHexGroup(std::string_view field, std::string_view whole) {
   if (field.empty()) {
      return failure("empty group", whole);
   }
   auto const junk = std::find_if_not(field.begin(), field.end(), isHexDigit);
   if (junk != field.end()) {
      return failure("invalid character " + describeCharacter(*junk), whole);
   }
   if (field.size() > 4) {
      return failure("group " + Strix::quoted(field) + " has more than 4 hex digits", whole);
   }
   std::uint16_t value = 0;
   std::from_chars(field.data(), field.data() + field.size(), value, 16);
   return value;
}

// Appends the dotted-quad tail of an IPv6 address as the two groups it stands for.
Kel::Expected<GroupList> appendDottedQuad(GroupList list, std::string_view field,
                                          std::string_view whole) {
   if (list.count + 2 > list.groups.size()) {
      return failure("too many groups", whole);
   }
   auto octets = parseDottedQuad(field, whole);
   if (!octets) {
      return Kel::Failure{octets.reason()};
   }
   auto const& [a, b, c, d] = octets.value();
   list.groups[list.count++] = static_cast<std::uint16_t>(a << 8 | b);
   list.groups[list.count++] = static_cast<std::uint16_t>(c << 8 | d);
   return list;
}

Kel::Expected<GroupList> appendHexGroup(GroupList list, std::string_view field,
                                        std::string_view whole) {
   if (list.count == list.groups.size()) {
      return failure("too many groups", whole);
   }
   auto group = parseHexGroup(field, whole);
   if (!group) {
      return Kel::Failure{group.reason()};
   }
   list.groups[list.count++] = group.value();
   return list;
}

// Reads colon-separated groups; only the last field of the address may be a dotted quad.
Kel::Expected<GroupList> parseGroupList(std::string_view side, std::string_view whole,
                                        bool endsAddress) {
   GroupList list;
   if (side.empty()) {
      return list;
   }
   for (std::size_t start = 0;;) {
      auto const end = std::min(side.find(':', start), side.size());
      auto const field = side.substr(start, end - start);
      bool const lastField = end == side.size();
      bool const dotted = field.find('.') != std::string_view::npos;
      if (dotted && !(lastField && endsAddress)) {
         return failure("IPv4 tail " + Strix::quoted(field) + " must end the address", whole);
      }
      auto appended =
          dotted ? appendDottedQuad(list, field, whole) : appendHexGroup(list, field, whole);
      if (!appended || lastField) {
         return appended;
      }
      list = appended.value();
      start = end + 1;
   }
}

IpAddr addressOfGroups(Groups const& groups) {
   IpAddr::Bytes bytes{};
   for (std::size_t index = 0; index < groups.size(); ++index) {
      bytes[2 * index] = static_cast<std::uint8_t>(groups[index] >> 8);
      bytes[2 * index + 1] = static_cast<std::uint8_t>(groups[index] & 0xff);
   }
   return IpAddr::v6(bytes);
}

Kel::Expected<IpAddr> parseV6(std::string_view text) {
   auto const gap = text.find("::");
   if (gap == std::string_view::npos) {
      auto list = parseGroupList(text, text, true);
      if (!list) {
         return Kel::Failure{list.reason()};
      }
      if (list->count != 8) {
         return failure("expected 8 groups, found " + std::to_string(list->count), text);
      }
      return addressOfGroups(list->groups);
   }
   if (text.find("::", gap + 2) != std::string_view::npos) {
      return failure("more than one \"::\"", text);
   }
   auto head = parseGroupList(text.substr(0, gap), text, false);
   if (!head) {
      return Kel::Failure{head.reason()};
   }
   auto tail = parseGroupList(text.substr(gap + 2), text, true);
   if (!tail) {
      return Kel::Failure{tail.reason()};
   }
   if (head->count + tail->count > 7) {
      return failure("\"::\" must stand for at least one zero group", text);
   }
   Groups groups = head->groups;
   std::copy_n(tail->groups.begin(), tail->count, groups.end() - tail->count);
   return addressOfGroups(groups);
}

Kel::Expected<IpAddr> parseV4(std::string_view text) {
   auto octets = parseDottedQuad(text, text);
   if (!octets) {
      return Kel::Failure{octets.reason()};
   }
   IpAddr::Bytes bytes{};
   std::copy(octets->begin(), octets->end(), bytes.begin());
   return IpAddr::fromBytes(AddressFamily::ipv4, bytes);
}

char* writeText(char* out, std::string_view text) {
   return std::copy(text.begin(), text.end(), out);
}

// Room for the longest number written: "255" or "ffff".
constexpr std::size_t kMaxNumberLength = 4;

// The decimal text of every octet followed by a dot, four bytes each (the rest zeros), and its
// length without the dot. Rules and field sets show prefixes by the hundred thousand: an octet is
// one copy of a word from here instead of a conversion.
struct OctetText {
   std::array<char, 4> text;
   std::uint8_t length;
};
constexpr auto kOctetTexts = [] {
   std::array<OctetText, 256> texts{};
   for (unsigned octet = 0; octet < texts.size(); ++octet) {
      auto& entry = texts[octet];
      if (octet >= 100) {
         entry.text[entry.length++] = static_cast<char>('0' + octet / 100);
      }
      if (octet >= 10) {
         entry.text[entry.length++] = static_cast<char>('0' + octet / 10 % 10);
      }
      entry.text[entry.length++] = static_cast<char>('0' + octet % 10);
      entry.text[entry.length] = '.';
   }
   return texts;
}();

// The octets are written as whole entries into a scratch quad, each over the zeros of the one
// before, and the text (7 to 15 bytes) is copied out in line: the caller's buffer receives
// exactly the text.
char* writeDottedQuad(char* out, std::uint8_t const* octets) {
   std::array<char, 4 * sizeof(OctetText::text)> quad;
   char* end = quad.data();
   for (std::size_t index = 0; index < 4; ++index) {
      auto const& entry = kOctetTexts[octets[index]];
      std::memcpy(end, entry.text.data(), entry.text.size());
      end += entry.length + 1;
   }
   // No dot after the last octet. The bound is what the table gives anyway; stated, it lets GCC
   // see that the copy stays within the quad.
   auto const length = std::min(static_cast<std::size_t>(end - quad.data()) - 1, quad.size() - 1);
   Strix::copyBytes(out, quad.data(), length);
   return out + length;
}

bool isV4Mapped(IpAddr::Bytes const& bytes) {
   return std::all_of(bytes.begin(), bytes.begin() + 10, [](auto byte) { return byte == 0; }) &&
          bytes[10] == 0xff && bytes[11] == 0xff;
}

// The first of the longest runs of two or more zero groups.
ZeroRun longestZeroRun(Groups const& groups) {
   ZeroRun longest;
   ZeroRun current;
   for (std::size_t index = 0; index < groups.size(); ++index) {
      if (groups[index] != 0) {
         current.length = 0;
         continue;
      }
      if (current.length == 0) {
         current.start = index;
      }
      ++current.length;
      if (current.length > longest.length) {
         longest = current;
      }
   }
   return longest.length >= 2 ? longest : ZeroRun{};
}

char* writeV6(char* out, IpAddr::Bytes const& bytes) {
   if (isV4Mapped(bytes)) {
      return writeDottedQuad(writeText(out, "::ffff:"), bytes.data() + 12);
   }
   Groups groups{};
   for (std::size_t index = 0; index < groups.size(); ++index) {
      groups[index] = static_cast<std::uint16_t>(bytes[2 * index] << 8 | bytes[2 * index + 1]);
   }
   auto const run = longestZeroRun(groups);
   bool const hasRun = run.length > 0;
   for (std::size_t index = 0; index < groups.size();) {
      if (hasRun && index == run.start) {
         out = writeText(out, "::");
         index += run.length;
         continue;
      }
      bool const followsRun = hasRun && index == run.start + run.length;
      if (index > 0 && !followsRun) {
         *out++ = ':';
      }
      out = std::to_chars(out, out + kMaxNumberLength, unsigned{groups[index]}, 16).ptr;
      ++index;
   }
   return out;
}

}  // namespace

Kel::Expected<IpAddr> IpAddr::parse(std::string_view text) {
   if (text.empty()) {
      return Kel::Failure{"empty address"};
   }
   return text.find(':') == std::string_view::npos ? parseV4(text) : parseV6(text);
}

std::optional<std::uint32_t> IpAddr::readPlainV4(std::string_view& text) noexcept {
   char const* next = text.data();
   char const* const end = next + text.size();
   // 10 for the end of the text and any other non-digit.
   auto const digit = [end](char const* at) {
      return at != end ? static_cast<unsigned>(static_cast<unsigned char>(*at) - '0') : 10u;
   };
   std::uint32_t address = 0;
   for (std::size_t octet = 0; octet < 4; ++octet) {
      if (octet > 0 && (next == end || *next++ != '.')) {
         return std::nullopt;
      }
      unsigned value = digit(next);
      if (value > 9) {
         return std::nullopt;
      }
      if (auto const second = digit(++next); second <= 9) {
         if (value == 0) {
            return std::nullopt;
         }
         value = value * 10 + second;
         if (auto const third = digit(++next); third <= 9) {
            value = value * 10 + third;
            ++next;
         }
      }
      if (value > 255) {
         return std::nullopt;
      }
      address = address << 8 | value;
   }
   text.remove_prefix(static_cast<std::size_t>(next - text.data()));
   return address;
}

IpAddr IpAddr::v4(std::uint32_t hostOrder) noexcept {
   IpAddr address;
   address.family_ = AddressFamily::ipv4;
   for (std::size_t index = 0; index < 4; ++index) {
      address.bytes_[index] = static_cast<std::uint8_t>(hostOrder >> (24 - 8 * index));
   }
   return address;
}

IpAddr IpAddr::v6(Bytes const& networkOrder) noexcept {
   return fromBytes(AddressFamily::ipv6, networkOrder);
}

IpAddr IpAddr::fromBytes(AddressFamily family, Bytes const& networkOrder) noexcept {
   IpAddr address;
   address.family_ = family;
   std::copy_n(networkOrder.begin(), addressBits(family) / 8u, address.bytes_.begin());
   return address;
}

std::uint32_t IpAddr::v4Value() const noexcept {
   if (!isV4()) {
      return 0;
   }
   std::uint32_t value = 0;
   for (auto const byte : bytes()) {
      value = value << 8 | byte;
   }
   return value;
}

std::size_t IpAddr::format(char* out) const noexcept {
   switch (family_) {
      case AddressFamily::none:
         return 0;
      case AddressFamily::ipv4:
         return static_cast<std::size_t>(writeDottedQuad(out, bytes_.data()) - out);
      case AddressFamily::ipv6:
         return static_cast<std::size_t>(writeV6(out, bytes_) - out);
   }
   return 0;
}

std::string IpAddr::stringValue() const {
   char text[kMaxTextLength];
   return std::string(text, format(text));
}

std::size_t IpAddr::hash() const noexcept {
   auto const raw = std::string_view(reinterpret_cast<char const*>(bytes_.data()), bytes_.size());
   return std::hash<std::string_view>{}(raw) ^ static_cast<std::size_t>(family_);
}

std::ostream& operator<<(std::ostream& stream, IpAddr const& address) {
   char text[IpAddr::kMaxTextLength];
   return stream << std::string_view(text, address.format(text));
}

Kel::Value toValue(IpAddr const& address) {
   return Kel::Value(Kel::String(address.stringValue()));
}

}  // namespace Quoll
