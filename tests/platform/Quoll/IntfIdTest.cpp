// Interface names from outside: which ones parse, and why the others do not. (Which characters a
// name may not hold, and where they are found, is the printable-text check's own table.)
#include <gtest/gtest.h>

#include <string_view>

#include "Quoll/IntfId.h"

namespace Quoll {
namespace {

struct ParseCase {
   std::string_view text;
   std::string_view reason;  // empty when the name is accepted
};

constexpr ParseCase kParseCases[] = {
    {"Ethernet1/2.100", ""},
    {"", "empty interface name"},
    {"Ethernet 1", "blank at position 9 in interface name"},
    {std::string_view("Eth\0", 4), "control character 0 at position 4 in interface name"},
    {"Eth\x7f", "control character 127 at position 4 in interface name"},
};

TEST(IntfIdParse, AcceptsPrintableNamesOnly) {
   for (auto const& row : kParseCases) {
      auto const parsed = IntfId::parse(row.text);
      if (row.reason.empty()) {
         EXPECT_TRUE(parsed && parsed->name().view() == row.text) << row.text;
      } else {
         EXPECT_TRUE(!parsed && parsed.reason() == row.reason) << row.text;
      }
   }
}

}  // namespace
}  // namespace Quoll
