// Address text both ways (every accepted form and its canonical text, every refused form and its
// reason), the buffer contract of format, and the order that sorted listings rely on.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "Kel/Value.h"
#include "Quoll/IpAddr.h"

namespace Quoll {
namespace {

struct CanonicalCase {
   std::string_view text;
   std::string_view canonical;
   AddressFamily family;
};

constexpr CanonicalCase kCanonicalCases[] = {
    {"0.0.0.0", "0.0.0.0", AddressFamily::ipv4},
    {"10.0.0.1", "10.0.0.1", AddressFamily::ipv4},
    {"255.255.255.255", "255.255.255.255", AddressFamily::ipv4},
    {"::", "::", AddressFamily::ipv6},
    {"::1", "::1", AddressFamily::ipv6},
    {"1::", "1::", AddressFamily::ipv6},
    {"2001:DB8::1", "2001:db8::1", AddressFamily::ipv6},
    {"2001:0db8:0000:0000:0000:0000:0000:0001", "2001:db8::1", AddressFamily::ipv6},
    // A single zero group is never compressed.
    {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1", AddressFamily::ipv6},
    {"1:2:3:4:5:6:7::", "1:2:3:4:5:6:7:0", AddressFamily::ipv6},
    {"::2:3:4:5:6:7:8", "0:2:3:4:5:6:7:8", AddressFamily::ipv6},
    // The longest run is compressed; on a tie, the first.
    {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1", AddressFamily::ipv6},
    {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1", AddressFamily::ipv6},
    {"fe80:0:0:0:1:0:0:0", "fe80::1:0:0:0", AddressFamily::ipv6},
    {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff",
     AddressFamily::ipv6},
    // Only IPv4-mapped addresses keep a dotted tail.
    {"::ffff:1.2.3.4", "::ffff:1.2.3.4", AddressFamily::ipv6},
    {"::FFFF:0102:0304", "::ffff:1.2.3.4", AddressFamily::ipv6},
    {"::1.2.3.4", "::102:304", AddressFamily::ipv6},
    {"64:ff9b::192.0.2.33", "64:ff9b::c000:221", AddressFamily::ipv6},
    {"1:2:3:4:5:6:1.2.3.4", "1:2:3:4:5:6:102:304", AddressFamily::ipv6},
};

TEST(IpAddrParse, AcceptedTextGivesCanonicalTextThatReadsBack) {
   for (auto const& row : kCanonicalCases) {
      auto const parsed = IpAddr::parse(row.text);
      if (!parsed) {
         ADD_FAILURE() << "\"" << row.text << "\" refused: " << parsed.reason();
         continue;
      }
      EXPECT_EQ(parsed->stringValue(), row.canonical) << row.text;
      EXPECT_EQ(parsed->family(), row.family) << row.text;
      auto const reread = IpAddr::parse(row.canonical);
      EXPECT_TRUE(reread && *reread == *parsed) << row.text;
   }
}

// Every octet value in every place, through the quick reading of well-formed text.
TEST(IpAddrParse, EveryOctetValueReadsBackInEveryPlace) {
   for (unsigned value = 0; value <= 255; ++value) {
      auto const octet = std::to_string(value);
      std::string const texts[] = {octet + ".1.2.3", "1." + octet + ".2.3", "1.2." + octet + ".3",
                                   "1.2.3." + octet};
      for (auto const& text : texts) {
         auto const parsed = IpAddr::parse(text);
         ASSERT_TRUE(parsed) << text << ": " << parsed.reason();
         EXPECT_EQ(parsed->stringValue(), text);
      }
   }
}

struct RefusedCase {
   std::string_view text;
   std::string_view reason;
};

constexpr RefusedCase kRefusedCases[] = {
    {"", "empty address"},
    {"1.2.3", "expected 4 octets, found 3 in \"1.2.3\""},
    {"1.2.3.4.5", "expected 4 octets, found 5"},
    {"10.0.300.1", "octet 300 out of range in \"10.0.300.1\""},
    {"1.2.3.1000", "octet 1000 out of range"},
    {"1.2.3.99999999999999999999", "octet 99999999999999999999 out of range"},
    {"1..3.4", "empty octet"},
    {"1.2.3.", "empty octet"},
    {"01.2.3.4", "octet \"01\" has a leading zero"},
    {"1.2.00.4", "octet \"00\" has a leading zero"},
    {"1.2.3.256", "octet 256 out of range"},
    {"1.2.3.4.", "expected 4 octets, found 5"},
    {"1.2.3.a", "invalid character 'a'"},
    {"1.2.3.4 ", "invalid character ' '"},
    {"+1.2.3.4", "invalid character '+'"},
    {"1.2.3.\x01", "invalid character 0x01"},
    {"1::2::3", "more than one \"::\""},
    {"12345::", "group \"12345\" has more than 4 hex digits"},
    {"::g", "invalid character 'g'"},
    {"fe80::1%eth0", "invalid character '%'"},
    {"1:2:3:4:5:6:7", "expected 8 groups, found 7"},
    {"1:2:3:4:5:6:7:8:9", "too many groups"},
    {"1:2:3:4:5:6:7:1.2.3.4", "too many groups"},
    {"1:2:3:4::5:6:7:8", "\"::\" must stand for at least one zero group"},
    {":1:2:3:4:5:6:7", "empty group"},
    {"1:2:3:4:5:6:7:", "empty group"},
    {"1:::2", "empty group"},
    {"1.2.3.4::", "IPv4 tail \"1.2.3.4\" must end the address"},
    {"::1.2.3.4:5", "IPv4 tail \"1.2.3.4\" must end the address"},
    {"::1.2.3", "expected 4 octets, found 3"},
    {"::ffff:1.2.3.256", "octet 256 out of range"},
};

TEST(IpAddrParse, RefusedTextNamesTheFault) {
   for (auto const& row : kRefusedCases) {
      auto const parsed = IpAddr::parse(row.text);
      if (parsed) {
         ADD_FAILURE() << "\"" << row.text << "\" accepted as " << parsed->stringValue();
         continue;
      }
      EXPECT_NE(parsed.reason().find(row.reason), std::string::npos)
          << "\"" << row.text << "\" gave: " << parsed.reason();
   }
}

TEST(IpAddrFormat, WritesExactlyTheReturnedLength) {
   for (std::string_view text :
        {"255.255.255.255", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", "::ffff:255.255.255.255"}) {
      char buffer[IpAddr::kMaxTextLength + 8];
      std::memset(buffer, '#', sizeof buffer);
      auto const length = IpAddr::parse(text)->format(buffer);
      EXPECT_EQ(std::string_view(buffer, length), text);
      EXPECT_TRUE(std::all_of(buffer + length, std::end(buffer), [](char c) { return c == '#'; }))
          << text;
   }
}

// Null first, then IPv4, then IPv6, each by address.
constexpr std::string_view kAscending[] = {
    "",   "0.0.0.0", "1.2.3.4",        "10.0.0.1",   "255.255.255.255",
    "::", "::1",     "::ffff:0.0.0.0", "2001:db8::", "ffff::"};

IpAddr addressOf(std::string_view text) {
   return text.empty() ? IpAddr() : *IpAddr::parse(text);
}

TEST(IpAddrOrder, SortsByFamilyThenBytes) {
   for (std::size_t i = 0; i < std::size(kAscending); ++i) {
      for (std::size_t j = 0; j < std::size(kAscending); ++j) {
         auto const left = addressOf(kAscending[i]);
         auto const right = addressOf(kAscending[j]);
         EXPECT_EQ(left <=> right, i <=> j) << kAscending[i] << " vs " << kAscending[j];
         EXPECT_EQ(left == right, i == j) << kAscending[i] << " vs " << kAscending[j];
      }
   }
}

}  // namespace
}  // namespace Quoll
