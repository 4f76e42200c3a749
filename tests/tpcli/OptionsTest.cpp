// Command-line options: the values each accepted line sets. What --help and --version print, and
// the message of each mistake, are checked on tpcli as a process.
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

}  // namespace
}  // namespace tpcli
