// tpcli as a process, for what needs no device state: help and version, and the exit code and
// single line of each kind of failure, including tpcli's own output to a closed pipe or a full
// disk.
#include <gtest/gtest.h>

#include "support/TpcliProcess.h"
#include "support/Words.h"

namespace tpcli_test {
namespace {

TEST(TpcliProcessTest, HelpAndVersionPrintAndSucceed) {
   struct Row {
      std::string line;
      std::string outputStart;
   };
   for (auto const& row : {Row{"--help", "Shows"}, Row{"show -h", "Shows"},
                           Row{"--version", "tpcli " TPCLI_VERSION "\n"}}) {
      auto const run = runTpcli(wordsOf(row.line));
      EXPECT_EQ(run.exitCode, 0) << row.line;
      EXPECT_EQ(run.standardError, "") << row.line;
      EXPECT_TRUE(run.standardOutput.starts_with(row.outputStart)) << row.line;
   }
}

TEST(TpcliProcessTest, EachFailureHasItsExitCodeAndOneLine) {
   auto const noLibrary = TpcliSetup{{"TPCLI_LIBRARY=/nonexistent/libShow.so"}};
   expectRuns({
       {"--revision 3 show traffic-policy cpu", {}, 2, "--revision: expected 1 or 2"},
       {"--trace x show traffic-policy cpu", {}, 2, "--trace: expected a whole number"},
       {"--frobnicate show traffic-policy cpu", {}, 2, "unknown option \"--frobnicate\""},
       {"show traffic-policy pilcy", {}, 2, "unknown word \"pilcy\""},
       {"show traffic-policy field-set i", {}, 2, "ambiguous word \"i\": could be ipv4, ipv6"},
       {"show traffic-policy interface detail extra", {}, 2, "unexpected word \"extra\""},
       {"show traffic-policy cpu | xml", {}, 2, "unknown word \"xml\" after \"|\""},
       {"--library /nonexistent/libShow.so show traffic-policy interface",
        {},
        1,
        "cannot load the show library \"/nonexistent/libShow.so\": /nonexistent/libShow.so: "
        "cannot open shared object file"},
       {"show traffic-policy interface", noLibrary, 1,
        "cannot load the show library \"/nonexistent/libShow.so\""},
       {"--library " PLATFORM_LIBRARY " show traffic-policy cpu",
        {},
        1,
        "the show library \"" PLATFORM_LIBRARY "\" has no factory"},
       {"-s /nonexistent/state.json clear traffic-policy counters",
        {},
        3,
        "/nonexistent/state.json: "},
       {"-s /nonexistent/state.json show traffic-policy interface",
        {},
        3,
        "/nonexistent/state.json: "},
       {"--help", {{}, Output::closedPipe}, 0, ""},
       {"--help", {{}, Output::fullDisk}, 1, "cannot write output: No space left on device"},
   });
}

}  // namespace
}  // namespace tpcli_test
