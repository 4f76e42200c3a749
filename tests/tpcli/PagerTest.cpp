// Paging: when a pager is used at all, that the output reaches it through standard output, and
// that a pager quitting early or failing to run ends the command as documented.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tpcli/ExitCode.h"
#include "tpcli/Pager.h"
#include "tpcli/StandardOutput.h"

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

// Lets a write to a pager that has gone return EPIPE in this process, as in tpcli.
class PagerProcessTest : public ::testing::Test {
 protected:
   void SetUp() override { previous_ = std::signal(SIGPIPE, SIG_IGN); }
   void TearDown() override { std::signal(SIGPIPE, previous_); }

 private:
   void (*previous_)(int) = nullptr;
};

TEST_F(PagerProcessTest, StandardOutputReachesThePager) {
   auto const paged = std::filesystem::path(::testing::TempDir()) / "tpcli-paged";
   Pager pager("cat > '" + paged.string() + "'");
   writeStandardOutput("first line\n");
   std::printf("second line\n");
   pager.finish();
   std::ifstream file(paged);
   std::stringstream contents;
   contents << file.rdbuf();
   EXPECT_EQ(contents.str(), "first line\nsecond line\n");
}

TEST_F(PagerProcessTest, APagerQuitEarlyEndsTheOutputQuietly) {
   Pager pager("exit 0");
   EXPECT_NO_THROW(writeStandardOutput(std::string(1 << 20, 'x')));
   EXPECT_NO_THROW(pager.finish());
}

TEST_F(PagerProcessTest, APagerThatCannotRunIsAnError) {
   Pager pager("exec /nonexistent/pager 2>/dev/null");
   try {
      pager.finish();
      ADD_FAILURE() << "the missing pager was not reported";
   } catch (CommandError const& error) {
      EXPECT_EQ(error.code(), ExitCode::failed);
      EXPECT_STREQ(error.what(),
                   "cannot run the pager \"exec /nonexistent/pager 2>/dev/null\" (set PAGER, or "
                   "use --no-pager)");
   }
}

}  // namespace
}  // namespace tpcli
