// Members are entered in the order of their names, sorted by merging the runs they come in: the
// order must be the standard stable sort's, however the runs fall.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "NameOrder.h"

namespace {

std::vector<std::uint32_t> stableOrder(std::vector<std::string_view> const& names) {
   std::vector<std::uint32_t> order(names.size());
   std::iota(order.begin(), order.end(), std::uint32_t{0});
   std::stable_sort(order.begin(), order.end(),
                    [&names](auto left, auto right) { return names[left] < names[right]; });
   return order;
}

TEST(NameOrder, MergedRunsGiveTheStableOrder) {
   std::vector<std::string> ruleNames;
   for (int rule = 0; rule < 1200; ++rule) {
      ruleNames.push_back("rule-" + std::to_string(rule));
   }
   std::vector<std::string> shuffled = ruleNames;
   std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(16));
   std::vector<std::string> repeated;
   for (int name = 0; name < 300; ++name) {
      repeated.push_back(std::string(1 + name % 3, static_cast<char>('a' + name % 7)));
   }
   struct Case {
      std::string_view name;
      std::vector<std::string> const& names;
   };
   std::vector<std::string> const empty;
   std::vector<std::string> const descending = {"e", "d", "c", "b", "a"};
   std::vector<std::string> const bytes = {"a\xff", "a", "a\x01", "", "b", "A", "a"};
   Case const cases[] = {
       {"none", empty},
       {"rule order: one run per number of digits", ruleNames},
       {"descending: a run per name", descending},
       {"bytes above 0x7f and empty names", bytes},
       {"shuffled", shuffled},
       {"many repeats", repeated},
   };
   for (Case const& row : cases) {
      std::vector<std::string_view> const names(row.names.begin(), row.names.end());
      std::vector<std::uint32_t> order;
      StateLoader::sortByName(names, order);
      EXPECT_EQ(order, stableOrder(names)) << row.name;
   }
}

}  // namespace
