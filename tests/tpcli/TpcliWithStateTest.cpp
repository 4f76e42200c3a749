// tpcli as a process on a loaded device state (the bundled example): the output ends as documented
// when its reader goes away, the disk is full, an invariant breaks, the user interrupts, or a
// terminal pages it or its pager cannot run. Most runs use the fake show library,
// which writes back its arguments and as much filler as a test asks for.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/CapturedOutput.h"
#include "support/TpcliProcess.h"
#include "support/Words.h"

namespace tpcli_test {
namespace {

std::string const kFake = "--library " FAKE_SHOW_LIBRARY " ";
std::string const kLotsOfLines = "TPCLI_FAKE_LINES=1000000";

// A terminal for tpcli's standard output; what reaches it is read back from the other side.
class Terminal {
 public:
   Terminal() { openpty(&controller_, &device_, nullptr, nullptr, nullptr); }
   ~Terminal() {
      close(controller_);
      close(device_);
   }
   Terminal(Terminal const&) = delete;
   Terminal& operator=(Terminal const&) = delete;

   TpcliSetup setup(std::vector<std::string> environment) const {
      return {std::move(environment), Output::given, device_};
   }
   std::string shown() const {
      fcntl(controller_, F_SETFL, O_NONBLOCK);
      return testing_support::readAll(controller_);
   }

 private:
   int controller_ = -1;
   int device_ = -1;
};

TEST(TpcliWithStateTest, OutputEndsAsDocumented) {
   Terminal const terminal;
   expectRuns({
       {kFake + "show traffic-policy interface", {{kLotsOfLines}, Output::closedPipe}, 0, ""},
       {kFake + "show traffic-policy interface",
        {{}, Output::fullDisk},
        1,
        "cannot write output: No space left on device"},
       {kFake + "show traffic-policy policy broken-invariant cpu",
        {},
        70,
        "internal error: assertion \""},
       {kFake + "show traffic-policy interface",
        terminal.setup({kLotsOfLines, "PAGER=head -c 100 >/dev/null"}), 0, ""},
       {kFake + "show traffic-policy interface",
        terminal.setup({"PAGER=exec /nonexistent/pager 2>/dev/null"}), 1,
        "cannot run the pager \"exec /nonexistent/pager 2>/dev/null\" (set PAGER, or use "
        "--no-pager)"},
   });
}

TEST(TpcliWithStateTest, AnInterruptStopsTheOutputWithOneHundredThirty) {
   int ends[2];
   ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
   auto const pid = startTpcli(wordsOf(kFake + "show traffic-policy interface"),
                               {{kLotsOfLines}, Output::given, ends[1]});
   close(ends[1]);
   ASSERT_FALSE(testing_support::readAll(ends[0], 1).empty());  // the output is under way
   kill(pid, SIGINT);
   auto const rest = testing_support::readAll(ends[0]);
   close(ends[0]);
   EXPECT_EQ(waitForExit(pid), 130);
   EXPECT_TRUE(rest.ends_with("exiting interrupted\n"));
}

TEST(TpcliWithStateTest, ATerminalPagesUnlessToldNotTo) {
   auto const paged = std::filesystem::path(::testing::TempDir()) / "tpcli-terminal-paged";
   for (bool const noPager : {false, true}) {
      std::filesystem::remove(paged);
      Terminal const terminal;
      auto const line = kFake + (noPager ? "--no-pager " : "") + "show traffic-policy cpu";
      auto const run = runTpcli(wordsOf(line), terminal.setup({"PAGER=cat > " + paged.string()}));
      EXPECT_EQ(run.exitCode, 0) << line << ": " << run.standardError;
      std::stringstream pagedText;
      pagedText << std::ifstream(paged).rdbuf();
      EXPECT_EQ(terminal.shown().find("\"factory\":\"cpu\"") != std::string::npos, noPager) << line;
      EXPECT_EQ(pagedText.str().find("\"factory\":\"cpu\"") != std::string::npos, !noPager) << line;
   }
}

}  // namespace
}  // namespace tpcli_test
