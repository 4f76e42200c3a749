// The snapshot file: what a clear writes reads back into the same stores (names that need escaping
// included), it is JSON to an independent parser, a missing file means no snapshots, a damaged one
// is refused with the file and the place named, and a location that cannot be written is reported.
#include <gtest/gtest.h>

#include <filesystem>

#include "StateLoader/Snapshots.h"
#include "support/TempStateFiles.h"
#include "support/CapturedOutput.h"

namespace {

using StateLoader::DeviceState;
using testing_support::TempStateFiles;

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

std::string describe(TrafficPolicy::Counter const& counter) {
   std::string text = std::to_string(counter.timestamp());
   for (auto const& [key, version] : counter.snapshot()) {
      text += " rule " + key.policyName.stringValue() + "/" + key.className.stringValue() + "=" +
              std::to_string(version.instanceId) + ":" + std::to_string(version.pkts);
   }
   for (auto const& [key, version] : counter.namedSnapshot()) {
      text += " named " + key.policyName.stringValue() + "/" + key.counterName.stringValue() + "=" +
              std::to_string(version->instanceId()) + ":" +
              std::to_string(version->totalCount().packets) + "/" +
              std::to_string(version->totalCount().bytes);
      for (auto const& [intf, entry] : version->perIntfCount()) {
         text += " " + intf.stringValue() + "=" + std::to_string(entry->instanceId()) + ":" +
                 std::to_string(entry->countData().packets) + "/" +
                 std::to_string(entry->countData().bytes);
      }
   }
   return text;
}

void expectSameStores(DeviceState const& actual, DeviceState const& expected) {
   EXPECT_EQ(describe(*actual.interfaceInput.counter), describe(*expected.interfaceInput.counter));
   EXPECT_EQ(describe(*actual.interfaceOutput.counter),
             describe(*expected.interfaceOutput.counter));
   EXPECT_EQ(describe(*actual.cpu.counter), describe(*expected.cpu.counter));
}

TEST(SnapshotsTest, WhatIsWrittenReadsBackAsItWas) {
   TempStateFiles const files;
   auto const path = (files.folder() / "lab.snapshots.json").string();
   auto const written = filledState();
   auto const lock = StateLoader::SnapshotLock::acquire(path);
   ASSERT_TRUE(lock.ok()) << lock.reason();
   auto const problem = lock->write(written);
   ASSERT_FALSE(problem) << problem->reason;

   auto const text = testing_support::readFile(path);
   auto const json = testing_support::parseJson(text);
   EXPECT_EQ(json.at("interfaceInput").at("ruleCounters").at("qu\"o\\te").at("r1").at("packets"),
             UINT64_MAX);
   EXPECT_EQ(json.at("interfaceOutput"),
             nlohmann::json::parse(R"({"timestamp": 0, "ruleCounters": {}, "namedCounters": {}})"));
   EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));

   auto read = emptyState();
   auto const readProblem = StateLoader::readSnapshots(path, read);
   ASSERT_FALSE(readProblem) << readProblem->reason;
   expectSameStores(read, written);
}

TEST(SnapshotsTest, AMissingFileMeansNoSnapshots) {
   TempStateFiles const files;
   auto state = emptyState();
   EXPECT_FALSE(StateLoader::readSnapshots((files.folder() / "none.json").string(), state));
   expectSameStores(state, emptyState());
   EXPECT_EQ(StateLoader::snapshotPathOf("/a/lab.json"), "/a/lab.snapshots.json");
   EXPECT_EQ(StateLoader::snapshotPathOf("state"), "state.snapshots.json");
}

TEST(SnapshotsTest, ADamagedFileIsRefusedWithItsPlace) {
   struct Row {
      char const* text;
      char const* reason;  // after "FILE: "
   };
   Row const rows[] = {
       {"", "the file is empty"},
       {R"({"cpu": {"ruleCounters": {"p": {"r": {"instanceId": 1, "pack)", "/cpu/ruleCounters/p/r"},
       {"[]", "expected an object, found a list"},
       {R"({"cpus": {}})", "/cpus: unknown key \"cpus\" (did you mean \"cpu\"?)"},
       {R"({"cpu": {"timestamp": -1}})", "/cpu/timestamp: expected the seconds since 1970"},
       {R"({"cpu": {"timestamp": "now"}})", "/cpu/timestamp: expected the seconds since 1970"},
       {R"({"cpu": {"ruleCounters": {"p": {"r": {"packets": 1}}}}})",
        "/cpu/ruleCounters/p/r: missing key \"instanceId\""},
       {R"({"cpu": {"ruleCounters": {"p": {"r": {"instanceId": 1, "packets": 1, "bytes": 1}}}}})",
        "/cpu/ruleCounters/p/r/bytes: unknown key \"bytes\""},
       {R"({"cpu": {"ruleCounters": {"p": {"r": {"instanceId": 1, "packets": -1}}}}})",
        "/cpu/ruleCounters/p/r/packets: expected a whole number"},
       {R"({"cpu": {"ruleCounters": {"p": {}, "p": {}}}})", "/cpu/ruleCounters/p: "},
       {R"({"cpu": {"namedCounters": {"p": {"c": {"instanceId": 1, "packets": 1,
            "interfaces": {"Ethernet1": {"packets": 1}}}}}}})",
        "/cpu/namedCounters/p/c/interfaces/Ethernet1: missing key \"instanceId\""},
       {R"({"cpu": {"namedCounters": {"p q": {}}}})", "/cpu/namedCounters/p q: blank"},
   };
   TempStateFiles const files;
   for (auto const& row : rows) {
      auto const path = files.write("damaged.snapshots.json", row.text);
      auto state = emptyState();
      auto const problem = StateLoader::readSnapshots(path, state);
      ASSERT_TRUE(problem) << row.text;
      EXPECT_TRUE(problem->reason.starts_with(path + ": " + row.reason))
          << row.text << "\n gave: " << problem->reason;
   }
}

TEST(SnapshotsTest, ALocationThatCannotBeWrittenIsReportedAndTheOldFileStays) {
   TempStateFiles const files;
   auto const path = files.write("lab.snapshots.json", "{}");
   std::filesystem::create_directory(path + ".tmp");
   auto const lock = StateLoader::SnapshotLock::acquire(path);
   ASSERT_TRUE(lock.ok()) << lock.reason();
   auto const problem = lock->write(filledState());
   ASSERT_TRUE(problem);
   EXPECT_EQ(problem->reason,
             "cannot write the counter snapshots: cannot create " + path + ".tmp: Is a directory");
   EXPECT_EQ(testing_support::readFile(path), "{}");

   std::filesystem::create_directory(files.folder() / "locked.snapshots.json.lock");
   auto const refused =
       StateLoader::SnapshotLock::acquire((files.folder() / "locked.snapshots.json").string());
   ASSERT_FALSE(refused.ok());
   EXPECT_EQ(refused.reason(), "cannot lock " +
                                   (files.folder() / "locked.snapshots.json").string() +
                                   ".lock: Is a directory");
}

}  // namespace
