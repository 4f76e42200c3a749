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
#include <fstream>
#include <thread>

#include "support/TpcliProcess.h"

namespace tpcli_test {
namespace {

namespace fs = std::filesystem;

class TpcliInputTest : public ::testing::Test {
 protected:
   void SetUp() override {
      folder_ = fs::path(::testing::TempDir()) / ("tpcli-input-" + std::to_string(getpid()));
      fs::create_directories(folder_);
   }
   void TearDown() override { fs::remove_all(folder_); }

   std::string copyOfLab() const {
      auto const path = folder_ / "lab.json";
      fs::copy_file(fs::path(EXAMPLES_DIR) / "lab.json", path,
                    fs::copy_options::overwrite_existing);
      return path.string();
   }

   fs::path folder_;
};

TEST_F(TpcliInputTest, OddStateFilesEndWithTheirExitCodeAndOneLine) {
   auto const changing = copyOfLab();
   auto const huge = (folder_ / "huge.json").string();
   std::ofstream(huge) << "{}";
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

TEST_F(TpcliInputTest, CtrlCWhileWaitingForAWriterEndsWithOneHundredThirty) {
   auto const fifo = (folder_ / "state.fifo").string();
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
}

}  // namespace
}  // namespace tpcli_test
