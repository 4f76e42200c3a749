// Writing the metrics: label values escaped as the format requires, and nothing allocated per
// value (the allocations of a state with a few counters and of one with many are the same).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StateLoader/Loader.h"
#include "support/AllocationCounter.h"
#include "support/CapturedOutput.h"
#include "support/TempStateFiles.h"
#include "tpcli/MetricsPage.h"
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

// The state loader refuses line feeds in names, so the policy is given its awkward names in the
// model after loading.
TEST(MetricsWriter, EscapesLabelValues) {
   struct Case {
      std::string name;
      std::string label;
   };
   std::vector<Case> const cases{
       {"plain", R"(policy="plain")"},         {"a\\b", R"(policy="a\\b")"},
       {"say\"hi\"", R"(policy="say\"hi\"")"}, {"two\nlines", R"(policy="two\nlines")"},
       {"\\\"\n", R"(policy="\\\"\n")"},
   };
   testing_support::TempStateFiles const files;
   auto state = StateLoader::loadState(files.write("state.json", stateWithCounters(1)));
   ASSERT_TRUE(state.ok()) << state.reason();
   auto const config = *state->config->policyMapConfig().lookup("p");
   auto const status = *state->interfaceInput.status->policyMapStatus().lookup("p");
   for (auto const& row : cases) {
      state->config->policyMapConfig().insertOrAssign(Kel::String(row.name), config);
      state->interfaceInput.status->policyMapStatus().insertOrAssign(Kel::String(row.name), status);
   }
   auto const text = tpcli::renderedMetrics(*state);
   for (auto const& row : cases) {
      EXPECT_NE(text.find("_total{" + row.label + ",direction=\"input\",rule=\"r0\"} 5\n"),
                std::string::npos)
          << row.label;
   }
}

TEST(MetricsWriter, AllocatesNothingPerValue) {
   EXPECT_EQ(allocationsOfWriting(2), allocationsOfWriting(400));
}

}  // namespace
}  // namespace tpcli_test
