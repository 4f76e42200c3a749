// Prefix text both ways at its edges (the rows of data/prefixes.txt), masking at the edges (/0, a
// partial byte, the full width), text into a poisoned buffer, the order that prefix listings print
// in, and the containment and overlap tests behind field-set filters. The IPv4-only Prefix is
// checked here too: it is a shell over IpGenPrefix and must agree with it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "Kel/Value.h"
#include "Quoll/IpGenPrefix.h"
#include "Quoll/Prefix.h"
#include "TextCases.h"

namespace Quoll {
namespace {

constexpr auto prefixOf = valueOf<IpGenPrefix>;
constexpr auto addressOf = valueOf<IpAddr>;

TEST(IpGenPrefixParse, TextCasesOfTheDataFile) {
   expectTextCases<IpGenPrefix>("prefixes.txt");
}

struct MaskCase {
   std::string_view address;
   std::uint8_t length;
   std::string_view prefix;
   std::string_view lastAddress;
};

constexpr MaskCase kMaskCases[] = {
    {"10.1.2.3", 0, "0.0.0.0/0", "255.255.255.255"},
    {"10.1.2.3", 31, "10.1.2.2/31", "10.1.2.3"},
    {"10.1.2.3", 200, "10.1.2.3/32", "10.1.2.3"},
    {"2001:db8:ffff::", 33, "2001:db8:8000::/33", "2001:db8:ffff:ffff:ffff:ffff:ffff:ffff"},
    {"2001:db8::1", 127, "2001:db8::/127", "2001:db8::1"},
    {"", 8, "", ""},
};

TEST(IpGenPrefixValue, ConstructionMasksHostBitsAtEveryWidth) {
   for (auto const& row : kMaskCases) {
      IpGenPrefix const prefix(addressOf(row.address), row.length);
      EXPECT_EQ(prefix.stringValue(), row.prefix) << row.address << "/" << int{row.length};
      EXPECT_EQ(prefix.lastAddress(), addressOf(row.lastAddress))
          << row.address << "/" << int{row.length};
   }
}

// Text of every IPv4 length reads as the prefix the constructor makes, and one host bit more is
// refused with the prefix meant.
TEST(IpGenPrefixParse, EveryIpv4LengthAndItsFirstHostBit) {
   auto const allOnes = addressOf("255.255.255.255");
   for (unsigned length = 0; length <= 32; ++length) {
      IpGenPrefix const masked(allOnes, static_cast<std::uint8_t>(length));
      auto const text = masked.stringValue();
      auto const parsed = IpGenPrefix::parse(text);
      ASSERT_TRUE(parsed) << text << ": " << parsed.reason();
      EXPECT_EQ(*parsed, masked) << text;
      if (length < 32) {
         auto const withHostBit =
             IpGenPrefix(allOnes, static_cast<std::uint8_t>(length + 1)).address().stringValue() +
             "/" + std::to_string(length);
         auto const refused = IpGenPrefix::parse(withHostBit);
         EXPECT_FALSE(refused) << withHostBit;
         EXPECT_TRUE(refused || refused.reason().ends_with("(did you mean " + text + "?)"))
             << withHostBit;
      }
   }
}

// Into a poisoned buffer: the longest texts, and not a byte more.
TEST(IpGenPrefixFormat, WritesExactlyTheReturnedLength) {
   auto const expectExact = [](std::string_view text, auto const& value) {
      char buffer[IpGenPrefix::kMaxTextLength + 8];
      std::memset(buffer, '#', sizeof buffer);
      auto const length = value.format(buffer);
      EXPECT_EQ(std::string_view(buffer, length), text);
      EXPECT_TRUE(std::all_of(buffer + length, std::end(buffer), [](char c) { return c == '#'; }))
          << text;
   };
   expectExact("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff/128",
               prefixOf("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff/128"));
   for (std::string_view text :
        {"0.0.0.0", "10.2.3.4", "255.255.255.255", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff",
         "::ffff:255.255.255.255"}) {
      expectExact(text, addressOf(text));
   }
}

// Null first, then by family, address and length.
constexpr std::string_view kAscending[] = {
    "",     "0.0.0.0/0",     "10.0.0.0/8",   "10.0.0.0/16", "10.1.0.0/16", "255.255.255.255/32",
    "::/0", "2001:db8::/32", "2001:db8::/48"};

TEST(IpGenPrefixOrder, SortsByFamilyAddressThenLength) {
   for (std::size_t i = 0; i < std::size(kAscending); ++i) {
      for (std::size_t j = 0; j < std::size(kAscending); ++j) {
         EXPECT_EQ(prefixOf(kAscending[i]) <=> prefixOf(kAscending[j]), i <=> j)
             << kAscending[i] << " vs " << kAscending[j];
      }
   }
}

struct RelationCase {
   std::string_view left;
   std::string_view right;
   bool leftContainsRight;
   bool rightContainsLeft;
};

constexpr RelationCase kRelationCases[] = {
    {"10.0.0.0/8", "10.1.0.0/16", true, false},
    {"10.0.0.0/8", "10.0.0.0/8", true, true},
    {"10.0.0.0/9", "10.128.0.0/9", false, false},
    {"0.0.0.0/0", "::/0", false, false},
    {"2001:db8::/31", "2001:db9::/32", true, false},
    {"::ffff:0.0.0.0/96", "0.0.0.0/0", false, false},
    {"", "", false, false},
};

TEST(IpGenPrefixRelations, ContainsAndOverlaps) {
   for (auto const& row : kRelationCases) {
      auto const left = prefixOf(row.left);
      auto const right = prefixOf(row.right);
      bool const overlap = row.leftContainsRight || row.rightContainsLeft;
      EXPECT_EQ(left.contains(right), row.leftContainsRight)
          << row.left << " contains " << row.right;
      EXPECT_EQ(right.contains(left), row.rightContainsLeft)
          << row.right << " contains " << row.left;
      EXPECT_EQ(left.overlaps(right), overlap) << row.left << " overlaps " << row.right;
      EXPECT_EQ(right.overlaps(left), overlap) << row.right << " overlaps " << row.left;
   }
}

TEST(IpGenPrefixRelations, ContainsAddressOfItsFamilyOnly) {
   EXPECT_FALSE(prefixOf("0.0.0.0/0").contains(addressOf("::1")));
   EXPECT_TRUE(prefixOf("::/0").contains(addressOf("::ffff:1.2.3.4")));
   EXPECT_FALSE(prefixOf("2001:db8::/127").contains(addressOf("2001:db8::2")));
   EXPECT_FALSE(prefixOf("").contains(addressOf("0.0.0.0")));
}

TEST(Prefix, ReadsIpv4OnlyAndAgreesWithIpGenPrefix) {
   EXPECT_EQ(Prefix::parse("10.1.0.0/16")->address(), 0x0a010000u);
   EXPECT_EQ(Prefix::parse("2001:db8::/32").reason(), "\"2001:db8::/32\" is not an IPv4 prefix");
   EXPECT_EQ(Prefix::parse("10.0.0.1/8").reason(), IpGenPrefix::parse("10.0.0.1/8").reason());
   EXPECT_FALSE(Prefix::fromGenPrefix(IpGenPrefix()));
   EXPECT_EQ(Prefix(0xffffffff, 40).stringValue(), "255.255.255.255/32");
   EXPECT_EQ(Prefix().stringValue(), "0.0.0.0/0");

   constexpr std::string_view kIpv4[] = {"0.0.0.0/0", "10.0.0.0/8", "10.0.0.0/16", "10.1.0.0/16"};
   for (auto const left : kIpv4) {
      EXPECT_EQ(Prefix::parse(left)->genPrefix(), prefixOf(left));
      for (auto const right : kIpv4) {
         auto const a = *Prefix::parse(left);
         auto const b = *Prefix::parse(right);
         EXPECT_EQ(a <=> b, prefixOf(left) <=> prefixOf(right)) << left << " vs " << right;
         EXPECT_EQ(a.contains(b), prefixOf(left).contains(prefixOf(right)))
             << left << " contains " << right;
      }
   }
}

}  // namespace
}  // namespace Quoll
