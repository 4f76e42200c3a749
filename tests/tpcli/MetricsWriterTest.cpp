// Writing the metrics allocates nothing per value: the allocations of a state with a few counters
// and of one with many are the same.
#include <gtest/gtest.h>

#include <string>

#include "StateLoader/Loader.h"
#include "support/AllocationCounter.h"
#include "support/CapturedOutput.h"
#include "support/TempStateFiles.h"
#include "tpcli/MetricsWriter.h"

namespace tpcli_test {
namespace {

// One input policy with `rules` counting rules and as many named counters kept per interface.
std::string stateWithCounters(int rules) {
   std::string config, names, ruleStatus, ruleCounters, namedCounters;
   for (int rule = 0; rule < rules; ++rule) {
      auto const name = "r" + std::to_string(rule);
      auto const separator = rule == 0 ? "" : ",";
      config += separator + ("\"" + name + "\": {\"sequence\": " + std::to_string(rule + 1) +
                             R"(, "match": {"ipv4": {"ttls": ["1"]}}, "actions": {"count": {}}})");
      names += separator + ("\"n" + name + "\"");
      ruleStatus += separator + ("\"" + name + "\": [\"ipv4\"]");
      ruleCounters += separator + ("\"" + name + R"(": {"instanceId": 1, "packets": 5})");
      namedCounters += separator + ("\"n" + name +
                                    R"(": {"instanceId": 2, "packets": 7, "bytes": 9,
                                         "interfaces": {"Et1": {"packets": 7, "bytes": 9}}})");
   }
   return R"({"trafficPolicies": {"p": {"namedCounters": [)" + names + R"(], "rules": {)" + config +
          R"(}}}, "interfaces": {"input": {"Et1": "p"}}, "status": {"interfaceInput": {
          "byteCountersSupported": true, "perInterfaceCounters": true, "policies": {"p": {
          "rules": {)" +
          ruleStatus + R"(}, "ruleCounters": {)" + ruleCounters + R"(}, "namedCounters": {)" +
          namedCounters + "}}}}}}";
}

std::uint64_t allocationsOfWriting(int rules) {
   testing_support::TempStateFiles const files;
   auto const state = StateLoader::loadState(files.write("state.json", stateWithCounters(rules)));
   EXPECT_TRUE(state.ok()) << state.reason();
   testing_support::MemoryFile file;
   vellum::VellumBuffer buffer(file.fd(), 1 << 16, 1);
   auto const before = testing_support::allocationCount();
   tpcli::writeMetrics(*state, buffer);
   buffer.flush();
   EXPECT_GT(file.contents().size(), static_cast<std::size_t>(rules) * 6 * 40);
   return testing_support::allocationCount() - before;
}

TEST(MetricsWriter, AllocatesNothingPerValue) {
   EXPECT_EQ(allocationsOfWriting(2), allocationsOfWriting(400));
}

}  // namespace
}  // namespace tpcli_test
