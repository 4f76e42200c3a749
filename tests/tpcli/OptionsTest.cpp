// Command-line options: the values each accepted line sets, the one-line message of each
// mistake, and the text that --help and --version ask for.
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
       {"-s lab.json", [](Options& o) { o.statePath = "lab.json"; }},
       {"--state=lab.json", [](Options& o) { o.statePath = "lab.json"; }},
       {"show --json cpu",
        [](Options& o) {
           o.json = true;
           o.commandWords = {"show", "cpu"};
        }},
       {"--revision 1", [](Options& o) { o.revision = 1; }},
       {"--revision 1 --revision 2", [](Options& o) { o.revision = 2; }},
       {"--trace 0", [](Options& o) { o.traceLevel = 0; }},
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

TEST(OptionsTest, NamesTheWrongOptionInOneLine) {
   struct Rejected {
      std::string line;
      std::string message;
   };
   Rejected const rows[] = {
       {"--revision 3", "--revision: expected 1 or 2, not \"3\""},
       {"--revision two", "--revision: expected 1 or 2, not \"two\""},
       {"--trace x", "--trace: expected a whole number from 0 to 9, not \"x\""},
       {"--trace 10", "--trace: expected a whole number from 0 to 9, not \"10\""},
       {"--foo show", "unknown option \"--foo\" (see tpcli --help)"},
       {"show -x", "unknown option \"-x\" (see tpcli --help)"},
       {"-s", "--state: 1 required STATE missing"},
   };
   for (auto const& row : rows) {
      auto const invocation = parseCommandLine(wordsOf(row.line));
      ASSERT_FALSE(invocation.ok()) << row.line;
      EXPECT_EQ(invocation.reason(), row.message) << row.line;
   }
}

TEST(OptionsTest, HelpAndVersionOnlyPrint) {
   struct Printing {
      std::string line;
      std::string expectedPart;
   };
   Printing const rows[] = {
       {"--help", "Usage: tpcli [OPTIONS] [COMMAND...]"},
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
