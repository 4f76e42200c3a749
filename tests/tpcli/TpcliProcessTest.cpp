// tpcli as a process, one row per command line: its exit code, the single line it writes to
// standard error and, for help and version, how its output starts. Plain command lines are rows of
// data/command-lines.txt; here are those that need a setup of their own or bytes that a data file
// should not hold: tpcli's own output to a closed pipe or a full disk, command words that would
// steer a terminal (echoed escaped and cut short), the libraries that cannot serve, and the
// libraries a command maps.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/TpcliProcess.h"

namespace tpcli_test {
namespace {

TEST(TpcliProcessTest, EachCommandLineEndsWithItsExitCodeAndOneLine) {
   auto const noLibrary = TpcliSetup{{"TPCLI_LIBRARY=/nonexistent/libShow.so"}};
   auto const unknownAfterTrafficPolicy = [](std::string const& echoed) {
      return "unknown word \"" + echoed + "\" after \"traffic-policy\"";
   };
   expectRuns({
       {"--help", {}, 0, "", "Shows"},
       {"show -h", {}, 0, "", "Shows"},
       {"--version", {}, 0, "", "tpcli " TPCLI_VERSION "\n"},
       {"--help", {{}, Output::closedPipe}, 0, ""},
       {"--help", {{}, Output::fullDisk}, 1, "cannot write output: No space left on device"},
       {"show traffic-policy \x1b]0;owned\x07",
        {},
        2,
        unknownAfterTrafficPolicy("\\u001b]0;owned\\u0007")},
       {"show traffic-policy \x9b\xff", {}, 2, unknownAfterTrafficPolicy("\\x9b\\xff")},
       {"show traffic-policy " + std::string(130000, 'x'),
        {},
        2,
        unknownAfterTrafficPolicy(std::string(200, 'x') + "...")},
       {"--revision \xe2\x80\xae"
        "1 show traffic-policy cpu",
        {},
        2,
        "--revision: expected 1 or 2, not \"\\u202e1\""},
       {"show traffic-policy interface", noLibrary, 1,
        "cannot load the show library \"/nonexistent/libShow.so\""},
       {"--library " PLATFORM_LIBRARY " show traffic-policy cpu",
        {},
        1,
        "the show library \"" PLATFORM_LIBRARY "\" has no factory"},
   });
}

// The HTTP server module brings TLS and compression libraries that only `metrics --listen` needs,
// the line editor module the terminal libraries that only the shell needs; the dynamic loader
// names every library it maps.
TEST(TpcliProcessTest, EachCommandLoadsOnlyTheModulesItUses) {
   struct Row {
      std::vector<std::string> arguments;
      std::vector<char const*> loaded;
      std::vector<char const*> notLoaded;
   };
   std::vector<char const*> const serverAndEditor = {"tpcli-http", "libssl", "libcrypto",
                                                     "tpcli-line-editor", "libedit"};
   std::vector<Row> const rows = {
       {{"show", "traffic-policy", "interface", "detail"}, {"libsimdjson"}, serverAndEditor},
       {{"metrics"}, {"libsimdjson"}, serverAndEditor},
       {{"shell"}, {"tpcli-line-editor", "libedit"}, {"tpcli-http", "libssl", "libcrypto"}},
   };
   for (auto const& row : rows) {
      auto const run = runTpcli(row.arguments, {{"LD_DEBUG=files"}});
      EXPECT_EQ(run.exitCode, 0) << row.arguments.front();
      for (auto const* library : row.loaded) {
         EXPECT_NE(run.standardError.find(library), std::string::npos)
             << row.arguments.front() << " does not load " << library;
      }
      for (auto const* library : row.notLoaded) {
         EXPECT_EQ(run.standardError.find(library), std::string::npos)
             << row.arguments.front() << " loads " << library;
      }
   }
}

// The allocator's defaults are set before anything allocates, or they would not apply to the
// memory that is already taken; the allocator names the options it runs with.
TEST(TpcliProcessTest, TheAllocatorRunsWithTpclisDefaults) {
#if TPCLI_WITH_MIMALLOC
   auto const run = runTpcli({"show", "traffic-policy", "interface"}, {{"MIMALLOC_VERBOSE=1"}});
   ASSERT_EQ(run.exitCode, 0);
   for (auto const* option : {"'large_os_pages': 0", "'decommit_delay': 0"}) {
      EXPECT_NE(run.standardError.find(std::string("mimalloc: option ") + option + "\n"),
                std::string::npos)
          << option;
   }
#else
   GTEST_SKIP() << "tpcli uses the sanitizers' allocator";
#endif
}

TEST(TpcliProcessTest, EachCommandLineOfTheDataFileEndsAsItSays) {
   std::ifstream data(std::filesystem::path(DATA_DIR) / "command-lines.txt");
   ASSERT_TRUE(data.is_open());
   std::vector<ExpectedRun> rows;
   for (std::string line, outcome; std::getline(data, line);) {
      if (line.starts_with(">")) {
         std::getline(data, outcome);
         auto const blank = std::min(outcome.find(' '), outcome.size());
         rows.push_back({line.substr(1),
                         {},
                         std::stoi(outcome.substr(0, blank)),
                         outcome.substr(std::min(blank + 1, outcome.size()))});
      }
   }
   EXPECT_GT(rows.size(), 50u);
   expectRuns(rows);
}

}  // namespace
}  // namespace tpcli_test
