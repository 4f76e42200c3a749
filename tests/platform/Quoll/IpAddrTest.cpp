// Address text both ways at its edges (zero-group compression, dotted tails, faults that the quick
// reading of a dotted quad must not miss; the rows of data/addresses.txt) and the order that
// sorted listings rely on.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Kel/Value.h"
#include "Quoll/IpAddr.h"
#include "TextCases.h"

namespace Quoll {
namespace {

TEST(IpAddrParse, TextCasesOfTheDataFile) {
   expectTextCases<IpAddr>("addresses.txt");
   EXPECT_FALSE(IpAddr::parse("1.2.3.4 "));
   EXPECT_FALSE(IpAddr::parse("1.2.3.\x01"));
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

// Null first, then IPv4, then IPv6, each by address.
constexpr std::string_view kAscending[] = {"",   "0.0.0.0",        "10.0.0.1",   "255.255.255.255",
                                           "::", "::ffff:0.0.0.0", "2001:db8::", "ffff::"};

constexpr auto addressOf = valueOf<IpAddr>;

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
