// Address text both ways at its edges (zero-group compression, dotted tails, faults that the quick
// reading of a dotted quad must not miss) and the order that sorted listings rely on.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

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
    {"::", "::", AddressFamily::ipv6},
    {"2001:0db8:0000:0000:0000:0000:0000:0001", "2001:db8::1", AddressFamily::ipv6},
    // A single zero group is never compressed; the longest run is, and on a tie the first.
    {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1", AddressFamily::ipv6},
    {"1:2:3:4:5:6:7::", "1:2:3:4:5:6:7:0", AddressFamily::ipv6},
    {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1", AddressFamily::ipv6},
    {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1", AddressFamily::ipv6},
    // Only IPv4-mapped addresses keep a dotted tail.
    {"::FFFF:0102:0304", "::ffff:1.2.3.4", AddressFamily::ipv6},
    {"::1.2.3.4", "::102:304", AddressFamily::ipv6},
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

// Mostly text that the quick reading of a dotted quad must pass on to the careful one.
constexpr RefusedCase kRefusedCases[] = {
    {"1.2.3", "expected 4 octets, found 3 in \"1.2.3\""},
    {"1.2.3.4.", "expected 4 octets, found 5"},
    {"1.2.3.99999999999999999999", "octet 99999999999999999999 out of range"},
    {"1.2.3.", "empty octet"},
    {"01.2.3.4", "octet \"01\" has a leading zero"},
    {"1.2.3.256", "octet 256 out of range"},
    {"1.2.3.4 ", "invalid character ' '"},
    {"1.2.3.\x01", "invalid character 0x01"},
    {"1::2::3", "more than one \"::\""},
    {"12345::", "group \"12345\" has more than 4 hex digits"},
    {"1:2:3:4:5:6:7:1.2.3.4", "too many groups"},
    {"1:2:3:4::5:6:7:8", "\"::\" must stand for at least one zero group"},
    {"1.2.3.4::", "IPv4 tail \"1.2.3.4\" must end the address"},
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

// Null first, then IPv4, then IPv6, each by address.
constexpr std::string_view kAscending[] = {"",   "0.0.0.0",        "10.0.0.1",   "255.255.255.255",
                                           "::", "::ffff:0.0.0.0", "2001:db8::", "ffff::"};

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
