// tpcli as a process, one row per command line: its exit code, the single line it writes to
// standard error and, for help and version, how its output starts. The rows cover every kind of
// failure, tpcli's own output to a closed pipe or a full disk, command words that would steer a
// terminal (echoed escaped and cut short), and every command form on the bundled example.
#include <gtest/gtest.h>

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
       {"--revision 3 show traffic-policy cpu", {}, 2, "--revision: expected 1 or 2"},
       {"--trace x show traffic-policy cpu", {}, 2, "--trace: expected a whole number"},
       {"--frobnicate show traffic-policy cpu", {}, 2, "unknown option \"--frobnicate\""},
       {"show traffic-policy pilcy", {}, 2, "unknown word \"pilcy\""},
       {"show traffic-policy field-set i", {}, 2, "ambiguous word \"i\": could be ipv4, ipv6"},
       {"show traffic-policy interface detail extra", {}, 2, "unexpected word \"extra\""},
       {"show traffic-policy cpu | xml", {}, 2, "unknown word \"xml\" after \"|\""},
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
       {"show traffic-policy interface", {}, 0, ""},
       {"sh traffic-policy int det", {}, 0, ""},
       {"show traffic-policy interface input summary", {}, 0, ""},
       {"show traffic-policy interface output errors", {}, 0, ""},
       {"--revision 1 show traffic-policy cpu counters", {}, 0, ""},
       {"show traffic-policy field-set ipv4 prefix contains 10.0.0.0/8", {}, 0, ""},
       {"show traffic-policy field-set ipv6 prefix", {}, 0, ""},
       {"show traffic-policy field-set l4-port contains 1-1024", {}, 0, ""},
       {"show traffic-policy field-set vlan contains 100", {}, 0, ""},
   });
}

}  // namespace
}  // namespace tpcli_test
