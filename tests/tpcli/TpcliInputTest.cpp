// tpcli on input that is hostile or odd rather than wrong: a state that changes while it is read,
// one too large to parse, and a FIFO nobody writes. Each ends with its exit code, never a signal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "support/TempStateFiles.h"
#include "support/TpcliProcess.h"

namespace tpcli_test {
namespace {

namespace fs = std::filesystem;

TEST(TpcliInputTest, OddStateFilesEndWithTheirExitCodeAndOneLine) {
   testing_support::TempStateFiles const files;
   // The state comes after pages of blanks, so that cutting the file in half takes all of it
   // away from under the reader.
   auto const changing =
       files.write("lab.json", std::string(1 << 16, ' ') +
                                   testing_support::readFile(fs::path(EXAMPLES_DIR) / "lab.json"));
   auto const huge = files.write("huge.json", "{}");
   fs::resize_file(huge, std::uintmax_t{5} << 30);
   expectRuns({
       {"-s " + changing + " show traffic-policy interface",
        {preloading(TRUNCATING_SHIM, {"TPCLI_TEST_TRUNCATE=" + changing})},
        3,
        changing + ": the file changed while it was read"},
       {"-s " + huge + " show traffic-policy interface",
        {},
        3,
        huge + ": the file is larger than 4294967295 bytes, the most the parser can take"},
   });
}

TEST(TpcliInputTest, CtrlCWhileWaitingForAWriterEndsWithOneHundredThirty) {
   testing_support::TempStateFiles const files;
   auto const fifo = (files.folder() / "state.fifo").string();
   ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
   auto const output = open("/dev/null", O_WRONLY | O_CLOEXEC);
   auto const pid =
       startTpcli({"-s", fifo, "show", "traffic-policy", "interface"}, {{}, Output::given, output});
   close(output);
   // Whether the signal comes before tpcli opens the FIFO or while it waits there, it ends with
   // 130: by the default action or by tpcli's own handling.
   std::this_thread::sleep_for(std::chrono::milliseconds(300));
   kill(pid, SIGINT);
   EXPECT_EQ(waitForExit(pid), 130);
   // A Ctrl-C that the handler noted just before the FIFO was opened.
   expectRuns({{"-s " + fifo + " show traffic-policy interface",
                {preloading(INTERRUPTING_SHIM, {"TPCLI_TEST_INTERRUPT=" + fifo})},
                130,
                ""}});
}

}  // namespace
}  // namespace tpcli_test
