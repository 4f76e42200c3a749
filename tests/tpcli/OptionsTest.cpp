// Command-line options: the values each accepted line sets and the text that --help and --version
// ask for. The message of each mistake is a row of data/command-lines.txt.
#include <gtest/gtest.h>

#include <functional>

#include "support/Words.h"
#include "tpcli/Options.h"

namespace tpcli {
namespace {

using tpcli_test::wordsOf;

struct Accepted {
   std::string line;
   std::function<void(Options&)> expectedChange;  // applied to the defaults
};

TEST(OptionsTest, SetsWhatEachOptionSays) {
   Accepted const rows[] = {
       {"show traffic-policy cpu",
        [](Options& o) {
           o.commandWords = {"show", "traffic-policy", "cpu"};
        }},
       {"--state=lab.json", [](Options& o) { o.statePath = "lab.json"; }},
       {"show --json cpu",
        [](Options& o) {
           o.json = true;
           o.commandWords = {"show", "cpu"};
        }},
       {"--revision 1 --revision 2", [](Options& o) { o.revision = 2; }},
       {"--trace 9", [](Options& o) { o.traceLevel = 9; }},
       {"--no-pager", [](Options& o) { o.noPager = true; }},
       {"--library /opt/lib.so", [](Options& o) { o.libraryPath = "/opt/lib.so"; }},
       {"show policy -- -odd",
        [](Options& o) {
           o.commandWords = {"show", "policy", "-odd"};
        }},
   };
   for (auto const& row : rows) {
      auto const invocation = parseCommandLine(wordsOf(row.line));
      ASSERT_TRUE(invocation.ok()) << row.line << ": " << invocation.reason();
      Options expected;
      row.expectedChange(expected);
      EXPECT_TRUE(invocation->options == expected) << row.line;
      EXPECT_FALSE(invocation->textToPrint) << row.line;
   }
}

TEST(OptionsTest, HelpAndVersionOnlyPrint) {
   struct Printing {
      std::string line;
      std::string expectedPart;
   };
   Printing const rows[] = {
       {"-h show", "  tpcli sh traffic-policy int det\n"},
       {"--help", "Exit codes: 0 done, 1 failed to act, 2 usage, 3 invalid state file"},
       {"--version", "tpcli " TPCLI_VERSION "\n"},
   };
   for (auto const& row : rows) {
      auto const invocation = parseCommandLine(wordsOf(row.line));
      ASSERT_TRUE(invocation.ok() && invocation->textToPrint) << row.line;
      EXPECT_NE(invocation->textToPrint->find(row.expectedPart), std::string::npos)
          << row.line << " printed:\n"
          << *invocation->textToPrint;
   }
}

}  // namespace
}  // namespace tpcli
