// Paging: when a pager is used at all. What reaches the pager, and how a pager that quits early
// or cannot run ends the command, is checked on tpcli as a process.
#include <gtest/gtest.h>

#include "tpcli/Pager.h"

namespace tpcli {
namespace {

TEST(PagerTest, PagesOnlyATerminalThatWantsIt) {
   struct Row {
      bool wanted;
      bool terminal;
      char const* pagerVariable;
      std::optional<std::string> expected;
   };
   Row const rows[] = {
       {true, true, nullptr, "less -FRX"},  {true, true, "more", "more"},
       {true, true, "", std::nullopt},      {true, false, "more", std::nullopt},
       {false, true, "more", std::nullopt},
   };
   for (auto const& row : rows) {
      EXPECT_EQ(pagerCommand(row.wanted, row.terminal, row.pagerVariable), row.expected)
          << "wanted " << row.wanted << ", terminal " << row.terminal << ", PAGER "
          << (row.pagerVariable ? row.pagerVariable : "unset");
   }
}

}  // namespace
}  // namespace tpcli
