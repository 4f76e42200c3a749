// Clearing counters with tpcli as a process, on a state of its own in a private folder: what a
// clear stores is what the next shows are given, later counts show the increase since, a clear of
// one direction keeps the others, two clears at once both count, a clear killed at any of its steps
// leaves the old snapshot file or the new one, a damaged snapshot file ends the command with its
// exit code, and a clear waits for a held lock a bounded time, or until Ctrl-C. (What other users
// could leave at the files' names is refused as the snapshot files are opened.) Clears run the real
// show library; shows run the fake one, which writes back the snapshots it was handed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "support/TempStateFiles.h"
#include "support/TpcliProcess.h"
#include "support/Words.h"

namespace tpcli_test {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

// One policy per direction, each with a rule counter and a named counter counted per interface;
// every count raised by `raise`.
json stateText(bool sharedMemory, std::uint64_t raise) {
   auto const direction = [raise](char const* policy, std::uint64_t base) {
      json const ruleCounters = {{"r1", {{"instanceId", 11}, {"packets", base + raise}}}};
      json const namedCounters = {
          {"c1",
           {{"instanceId", 21},
            {"packets", 2 * base + raise},
            {"bytes", 100 * base + raise},
            {"interfaces", {{"Ethernet1", {{"packets", base + raise}, {"bytes", 9}}}}}}}};
      return json{{"perInterfaceCounters", true},
                  {"policies",
                   {{policy, {{"ruleCounters", ruleCounters}, {"namedCounters", namedCounters}}}}}};
   };
   return {{"hardware", {{"sharedMemoryCounters", sharedMemory}}},
           {"status",
            {{"interfaceInput", direction("in", 100)},
             {"interfaceOutput", direction("out", 200)},
             {"cpu", direction("cpu", 300)}}}};
}

// The snapshots a show is handed, as the fake library writes them back, of a policy's counts.
json snapshotsOf(char const* policy, std::uint64_t base, std::uint64_t raise = 0) {
   return {{"rules", {{std::string(policy) + "/r1", {11, base + raise}}}},
           {"named", {{std::string(policy) + "/c1", {21, 2 * base + raise, 100 * base + raise}}}}};
}

json const kNoSnapshots = {{"rules", json::object()}, {"named", json::object()}};

class TpcliClearTest : public testing::TestWithParam<bool> {
 protected:
   void stateIs(std::uint64_t raise) const {
      std::ofstream(state_) << stateText(GetParam(), raise).dump();
   }

   TpcliRun tpcli(std::string const& line, TpcliSetup const& setup = {}) const {
      return runTpcli(wordsOf("-s " + state_.string() + " " + line), setup);
   }

   void clear(std::string const& scope = "") const {
      auto const run = tpcli("clear traffic-policy counters " + scope);
      ASSERT_EQ(run.exitCode, 0) << scope << ": " << run.standardError;
      EXPECT_EQ(run.standardOutput + run.standardError, "");
   }

   // What the shows of both kinds are handed, per direction.
   json shownSnapshots() const {
      auto const show = [this](char const* kind) {
         auto const run =
             tpcli("--library " FAKE_SHOW_LIBRARY " show traffic-policy " + std::string(kind));
         EXPECT_EQ(run.exitCode, 0) << run.standardError;
         return json::parse(run.standardOutput);
      };
      auto const interface = show("interface");
      return {{"in", interface.at("snapshots")},
              {"out", interface.at("snapshotsOutput")},
              {"cpu", show("cpu").at("snapshots")}};
   }

   testing_support::TempStateFiles const files_;
   fs::path const state_ = files_.folder() / "device.json";
   fs::path const snapshots_ = files_.folder() / "device.snapshots.json";
};

TEST_P(TpcliClearTest, ShowsAreHandedTheLastClearsSnapshotsOfTheDirectionsCleared) {
   stateIs(0);
   EXPECT_EQ(shownSnapshots(),
             (json{{"in", kNoSnapshots}, {"out", kNoSnapshots}, {"cpu", kNoSnapshots}}));
   clear();
   json const atClear = {{"in", snapshotsOf("in", 100)},
                         {"out", snapshotsOf("out", 200)},
                         {"cpu", snapshotsOf("cpu", 300)}};
   // Live counts equal to their snapshots: every count shows 0.
   EXPECT_EQ(shownSnapshots(), atClear);
   // The snapshots stay as the counts rise, so each shows the 7 counted since.
   stateIs(7);
   EXPECT_EQ(shownSnapshots(), atClear);
   clear();
   EXPECT_EQ(shownSnapshots(), (json{{"in", snapshotsOf("in", 100, 7)},
                                     {"out", snapshotsOf("out", 200, 7)},
                                     {"cpu", snapshotsOf("cpu", 300, 7)}}));
   auto const file = json::parse(testing_support::readFile(snapshots_));
   EXPECT_EQ(file.at("interfaceInput").at("namedCounters").at("in").at("c1").at("interfaces"),
             (json{{"Ethernet1", {{"instanceId", 21}, {"packets", 107}, {"bytes", 9}}}}));
   // A clear of one direction keeps the others' snapshots.
   stateIs(12);
   clear("cpu");
   clear("interface output");
   EXPECT_EQ(shownSnapshots(), (json{{"in", snapshotsOf("in", 100, 7)},
                                     {"out", snapshotsOf("out", 200, 12)},
                                     {"cpu", snapshotsOf("cpu", 300, 12)}}));
}

TEST_P(TpcliClearTest, TwoClearsAtOnceBothTakeEffect) {
   stateIs(0);
   int const nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
   for (int round = 0; round < 4; ++round) {
      fs::remove(snapshots_);
      TpcliSetup const quiet{{}, Output::given, nothing};
      auto const first = startTpcli(
          wordsOf("-s " + state_.string() + " clear traffic-policy counters cpu"), quiet);
      auto const second = startTpcli(
          wordsOf("-s " + state_.string() + " clear traffic-policy counters interface input"),
          quiet);
      EXPECT_EQ(waitForExit(first), 0);
      EXPECT_EQ(waitForExit(second), 0);
      EXPECT_EQ(shownSnapshots(), (json{{"in", snapshotsOf("in", 100)},
                                        {"out", kNoSnapshots},
                                        {"cpu", snapshotsOf("cpu", 300)}}))
          << "round " << round;
   }
   close(nothing);
}

// The file without its timestamps, which differ from clear to clear.
json withoutTimestamps(json snapshots) {
   for (auto& [direction, store] : snapshots.items()) {
      store.erase("timestamp");
   }
   return snapshots;
}

TEST_P(TpcliClearTest, AClearKilledAtAnyStepLeavesTheOldFileOrTheNew) {
   stateIs(0);
   clear();
   auto const old = testing_support::readFile(snapshots_);
   stateIs(3);
   clear();
   auto const expectedNew = withoutTimestamps(json::parse(testing_support::readFile(snapshots_)));
   int killed = 0;
   for (int step = 1; step < 200; ++step) {
      std::ofstream(snapshots_) << old;
      auto const run =
          tpcli("clear traffic-policy counters",
                {preloading(KILL_SHIM, {"TPCLI_TEST_KILL_AT=" + std::to_string(step)})});
      auto const now = testing_support::readFile(snapshots_);
      if (now != old) {
         EXPECT_EQ(withoutTimestamps(json::parse(now)), expectedNew) << "step " << step;
      }
      EXPECT_EQ(tpcli("--library " FAKE_SHOW_LIBRARY " show traffic-policy cpu").exitCode, 0)
          << "step " << step;
      if (run.exitCode != 128 + SIGKILL) {
         EXPECT_EQ(run.exitCode, 0) << "step " << step << ": " << run.standardError;
         EXPECT_NE(now, old) << "step " << step;
         break;
      }
      ++killed;
   }
   // The lock, the write, the sync, the rename and the closes at the least.
   EXPECT_GE(killed, 6);
}

TEST_P(TpcliClearTest, ADamagedSnapshotFileStopsShowsAndClears) {
   stateIs(0);
   std::ofstream(snapshots_) << R"({"cpu": {"ruleCounters": {"cpu": {"r1": {"instanceId": 1}}}}})";
   auto const damaged = testing_support::readFile(snapshots_);
   auto const reason = snapshots_.string() + ": /cpu/ruleCounters/cpu/r1: missing key \"packets\"";
   expectRuns({
       {"--library " FAKE_SHOW_LIBRARY " -s " + state_.string() + " show traffic-policy cpu",
        {},
        3,
        reason},
       {"-s " + state_.string() + " clear traffic-policy counters interface", {}, 3, reason},
   });
   EXPECT_EQ(testing_support::readFile(snapshots_), damaged);
}

TEST_P(TpcliClearTest, AHeldLockIsWaitedForABoundedTimeOrUntilCtrlC) {
   stateIs(0);
   auto const lock = snapshots_.string() + ".lock";
   // A shared lock of this process's own, as any reader of the lock file could take.
   int const held = open(lock.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0600);
   ASSERT_EQ(flock(held, LOCK_SH), 0);
   auto const clearLine = "-s " + state_.string() + " clear traffic-policy counters";
   expectRuns({
       {clearLine,
        {{"TPCLI_LOCK_WAIT=0.2"}},
        1,
        "cannot lock " + lock + ": still held after 0.2 s by process " + std::to_string(getpid()) +
            " (" + linesOf(testing_support::readFile("/proc/self/comm")).front() + ")"},
       {clearLine, {{"TPCLI_LOCK_WAIT=soon"}}, 2, "TPCLI_LOCK_WAIT: expected a number of seconds"},
   });

   int const nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
   auto const waiting =
       startTpcli(wordsOf(clearLine), {{"TPCLI_LOCK_WAIT=60"}, Output::given, nothing});
   // Once it has the lock file open, it is waiting, with its SIGINT handler in place.
   auto const hasOpen = [&lock](pid_t pid) {
      std::error_code error;
      for (auto const& fd : fs::directory_iterator("/proc/" + std::to_string(pid) + "/fd", error)) {
         if (fs::read_symlink(fd.path(), error) == lock) {
            return true;
         }
      }
      return false;
   };
   for (int tries = 0; tries < 1000 && !hasOpen(waiting); ++tries) {
      usleep(10000);
   }
   kill(waiting, SIGINT);
   EXPECT_EQ(waitForExit(waiting), 130);
   EXPECT_FALSE(fs::exists(snapshots_));
   close(nothing);
   close(held);
}

INSTANTIATE_TEST_SUITE_P(BothBackends, TpcliClearTest, testing::Bool(),
                         [](testing::TestParamInfo<bool> const& param) {
                            return param.param ? "sharedMemory" : "status";
                         });

}  // namespace
}  // namespace tpcli_test
