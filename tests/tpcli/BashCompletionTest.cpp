// The bash completion script, sourced into bash as bash-completion does, completing the words
// of command lines through the built tpcli.
#include <gtest/gtest.h>

#include "support/Terminal.h"

namespace tpcli_test {
namespace {

// What the script offers for the last word of `words` (the program's own name first).
std::string completed(std::string const& words) {
   auto const script = "source " + shellQuoted(TPCLI_BASH_COMPLETION) + "; COMP_WORDS=(" +
                       shellQuoted(TPCLI_EXECUTABLE) + " " + words +
                       "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tpcli; "
                       "echo \"${COMPREPLY[*]}\"";
   return output("bash -c " + shellQuoted(script));
}

TEST(BashCompletionTest, CompletesKeywordsAndTheNamesOfTheStateInUse) {
   struct Row {
      std::string words;
      std::string offered;
   };
   auto const lab = shellQuoted(EXAMPLES_DIR "/lab.json");
   Row const rows[] = {
       {"''", "clear show metrics shell\n"},
       {"me", "metrics\n"},
       {"sh tr ''", "cpu field-set interface policy\n"},
       {"-s " + lab + " --json sh tr po ed", "edge-in edge-out\n"},
       {"--state=" + lab + " sh tr fi ipv4 prefix ''",
        "contains bogons customer-routes mgmt-stations web-servers\n"},
       {"sh tr cpu \\| ''", "json\n"},
       {"--rev", "--revision\n"},
       {"--trace 8 sh tr int o", "output\n"},
   };
   for (auto const& row : rows) {
      EXPECT_EQ(completed(row.words), row.offered) << row.words;
   }
}

}  // namespace
}  // namespace tpcli_test
