// The snapshot file: what a clear writes is JSON to an independent parser (names that need
// escaping included) and reads back into stores that write the same bytes again, a damaged one
// (the rows of data/damaged-snapshots.txt) is refused with the file and the place named, and a
// write that fails is reported. In a folder that others can write, what they leave at the names of
// the files is never used or written through. (Waiting for a held lock is checked on tpcli as a
// process.)
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>

#include "StateLoader/Snapshots.h"
#include "support/CapturedOutput.h"
#include "support/DataCases.h"
#include "support/TempStateFiles.h"

namespace {

using StateLoader::DeviceState;
using testing_support::TempStateFiles;
namespace fs = std::filesystem;

DeviceState emptyState() {
   DeviceState state;
   for (auto* direction : {&state.interfaceInput, &state.interfaceOutput, &state.cpu}) {
      direction->counter = Kel::make<TrafficPolicy::Counter>();
   }
   return state;
}

// Every kind of entry, in every direction but the output one.
DeviceState filledState() {
   auto state = emptyState();
   auto& input = *state.interfaceInput.counter;
   input.timestampIs(1718000000.125);
   input.snapshotIs({"edge-in", "web"}, {1001, 1843992});
   input.snapshotIs({"edge-in", "dns"}, {1002, 0});
   input.snapshotIs({"qu\"o\\te", "r1"}, {3, UINT64_MAX});
   auto const named = input.namedSnapshotIs({"edge-in", "bogon-drops"}, 2001);
   named->totalCountIs({31250, 2000000});
   named->perIntfCountIs(Quoll::IntfId("Ethernet1"), 2001)->countDataIs({30000, 1920000});
   named->perIntfCountIs(Quoll::IntfId("Ethernet2/1"), 2000)->countDataIs({1250, 80000});
   input.namedSnapshotIs({"other", "c1"}, 5)->totalCountIs({1, 2});
   state.cpu.counter->timestampIs(42);
   state.cpu.counter->snapshotIs({"cpu-in", "r1"}, {9, 10});
   return state;
}

std::set<std::string> namesIn(fs::path const& folder) {
   std::set<std::string> names;
   for (auto const& entry : fs::directory_iterator(folder)) {
      names.insert(entry.path().filename().string());
   }
   return names;
}

TEST(SnapshotsTest, WhatIsWrittenReadsBackAsItWas) {
   TempStateFiles const files;
   auto const path = (files.folder() / "lab.snapshots.json").string();
   auto const lock = StateLoader::SnapshotLock::acquire(path);
   ASSERT_TRUE(lock.ok()) << lock.reason();
   auto const problem = lock->write(filledState());
   ASSERT_FALSE(problem) << problem->reason;

   auto const text = testing_support::readFile(path);
   auto const json = testing_support::parseJson(text);
   EXPECT_EQ(json.at("interfaceInput").at("ruleCounters").at("qu\"o\\te").at("r1").at("packets"),
             UINT64_MAX);
   EXPECT_EQ(json.at("interfaceInput").at("namedCounters").at("edge-in").at("bogon-drops"),
             nlohmann::json::parse(R"({"instanceId": 2001, "packets": 31250, "bytes": 2000000,
                "interfaces": {"Ethernet1": {"instanceId": 2001, "packets": 30000, "bytes": 1920000},
                "Ethernet2/1": {"instanceId": 2000, "packets": 1250, "bytes": 80000}}})"));
   EXPECT_EQ(json.at("interfaceOutput"),
             nlohmann::json::parse(R"({"timestamp": 0, "ruleCounters": {}, "namedCounters": {}})"));
   EXPECT_EQ(namesIn(files.folder()),
             (std::set<std::string>{"lab.snapshots.json", "lab.snapshots.json.lock"}));
   EXPECT_EQ(fs::status(path + ".lock").permissions(),
             fs::perms::owner_read | fs::perms::owner_write);

   // What is read back writes the same bytes again.
   auto read = emptyState();
   auto const readProblem = StateLoader::readSnapshots(path, read);
   ASSERT_FALSE(readProblem) << readProblem->reason;
   auto const rewriteProblem = lock->write(read);
   ASSERT_FALSE(rewriteProblem) << rewriteProblem->reason;
   EXPECT_EQ(testing_support::readFile(path), text);
}

TEST(SnapshotsTest, ADamagedFileIsRefusedWithItsPlace) {
   TempStateFiles const files;
   for (auto const& row :
        testing_support::readDataCases(std::filesystem::path(DATA_DIR) / "damaged-snapshots.txt")) {
      auto const path = files.write("damaged.snapshots.json", row.input);
      auto state = emptyState();
      auto const problem = StateLoader::readSnapshots(path, state);
      ASSERT_TRUE(problem) << row.name;
      EXPECT_TRUE(problem->reason.starts_with(path + ": " + row.expected))
          << row.name << "\n gave: " << problem->reason;
   }
}

TEST(SnapshotsTest, AFailedWriteIsReportedAndLeavesTheOldFileAlone) {
   TempStateFiles const files;
   auto const path = files.write("lab.snapshots.json", "{}");
   auto const lock = StateLoader::SnapshotLock::acquire(path);
   ASSERT_TRUE(lock.ok()) << lock.reason();
   // Files may grow to a few bytes only: the write fails with EFBIG, even for root.
   auto* const oldHandler = std::signal(SIGXFSZ, SIG_IGN);
   rlimit oldLimit{};
   getrlimit(RLIMIT_FSIZE, &oldLimit);
   rlimit tiny = oldLimit;
   tiny.rlim_cur = 16;
   setrlimit(RLIMIT_FSIZE, &tiny);
   auto const problem = lock->write(filledState());
   setrlimit(RLIMIT_FSIZE, &oldLimit);
   std::signal(SIGXFSZ, oldHandler);
   ASSERT_TRUE(problem);
   EXPECT_TRUE(problem->reason.starts_with("cannot write the counter snapshots: cannot write " +
                                           path + ".tmp."))
       << problem->reason;
   EXPECT_TRUE(problem->reason.ends_with(": File too large")) << problem->reason;
   EXPECT_EQ(testing_support::readFile(path), "{}");
   EXPECT_EQ(namesIn(files.folder()),
             (std::set<std::string>{"lab.snapshots.json", "lab.snapshots.json.lock"}));
}

// What another user can leave at a name in a folder that both can write.
struct Planted {
   char const* what;
   std::function<void(fs::path const& at, fs::path const& victim)> plant;
   char const* reason;  // after the file's name
   bool needsRoot = false;
};

void fileWithMode(fs::path const& at, mode_t mode) {
   std::ofstream(at) << "{}";
   ASSERT_EQ(chmod(at.c_str(), mode), 0);
}

Planted const kPlanted[] = {
    {"a link to another file",
     [](auto const& at, auto const& victim) { fs::create_symlink(victim, at); },
     "the file is a symbolic link, which is not followed"},
    {"a link to nothing",
     [](auto const& at, auto const& victim) { fs::create_symlink(victim.string() + ".new", at); },
     "the file is a symbolic link, which is not followed"},
    {"a file that others can write", [](auto const& at, auto const&) { fileWithMode(at, 0666); },
     "the file can be written by other users (mode 0666)"},
    {"a file that its group can write", [](auto const& at, auto const&) { fileWithMode(at, 0620); },
     "the file can be written by other users (mode 0620)"},
    {"a FIFO", [](auto const& at, auto const&) { ASSERT_EQ(mkfifo(at.c_str(), 0600), 0); },
     "the file is not a regular file"},
    {"another user's file",
     [](auto const& at, auto const&) {
        fileWithMode(at, 0644);
        ASSERT_EQ(chown(at.c_str(), 65534, 65534), 0);
     },
     "the file belongs to another user (uid 65534)", true},
};

TEST(SnapshotsTest, WhatOthersLeaveAtTheNamesOfTheFilesIsNotUsed) {
   for (auto const& planted : kPlanted) {
      if (planted.needsRoot && geteuid() != 0) {
         continue;
      }
      for (char const* suffix : {"", ".lock"}) {
         SCOPED_TRACE(std::string(planted.what) + " at the " + (*suffix ? "lock" : "snapshot") +
                      " file");
         TempStateFiles const files;
         auto const path = (files.folder() / "lab.snapshots.json").string();
         auto const victim = files.write("victim.json", "{}");
         planted.plant(path + suffix, victim);
         auto const reason = path + suffix + ": " + planted.reason;

         auto const lock = StateLoader::SnapshotLock::acquire(path);
         ASSERT_FALSE(lock.ok());
         EXPECT_EQ(lock.reason(), *suffix ? "cannot lock " + reason : reason);
         if (!*suffix) {
            auto state = emptyState();
            auto const problem = StateLoader::readSnapshots(path, state);
            ASSERT_TRUE(problem);
            EXPECT_EQ(problem->reason, reason);
         }
         EXPECT_EQ(testing_support::readFile(victim), "{}");
         EXPECT_FALSE(fs::exists(victim + ".new"));
      }
   }
}

// A clear that died left the temporary file of its time, or someone put one there on purpose.
TEST(SnapshotsTest, TheTemporaryFileIsAlwaysANewOne) {
   for (auto const& planted : {kPlanted[0], kPlanted[2]}) {
      SCOPED_TRACE(planted.what);
      TempStateFiles const files;
      auto const path = (files.folder() / "lab.snapshots.json").string();
      auto const victim = files.write("victim.json", "{}");
      planted.plant(path + ".tmp", victim);
      auto const lock = StateLoader::SnapshotLock::acquire(path);
      ASSERT_TRUE(lock.ok()) << lock.reason();
      auto const problem = lock->write(filledState());
      ASSERT_FALSE(problem) << problem->reason;

      EXPECT_EQ(testing_support::readFile(victim), "{}");
      EXPECT_EQ(testing_support::readFile(path + ".tmp"), "{}");
      struct stat status {};
      ASSERT_EQ(lstat(path.c_str(), &status), 0);
      EXPECT_TRUE(S_ISREG(status.st_mode));
      EXPECT_EQ(status.st_uid, geteuid());
      EXPECT_EQ(status.st_mode & (S_IWGRP | S_IWOTH), 0u);
   }
}

}  // namespace
