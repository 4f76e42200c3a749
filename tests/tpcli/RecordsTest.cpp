// `tpcli --records` prints what caching did: one JSON document with every attribute of the show
// object and of each cached record, policies in name order.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/TpcliProcess.h"
#include "support/Words.h"

namespace {

using tpcli_test::runTpcli;
using tpcli_test::wordsOf;

nlohmann::ordered_json recordsOf(std::string const& command) {
   auto arguments = wordsOf("--records " + command);
   auto const run = runTpcli(arguments);
   EXPECT_EQ(run.exitCode, 0) << command << ": " << run.standardError;
   EXPECT_EQ(run.standardError, "") << command;
   try {
      return nlohmann::ordered_json::parse(run.standardOutput);
   } catch (nlohmann::json::parse_error const& error) {
      ADD_FAILURE() << command << ": not JSON: " << error.what();
      return {};
   }
}

TEST(Records, EveryCachedPolicyInNameOrderWithEveryAttribute) {
   struct Row {
      char const* command;
      char const* recordOnlyAttribute;  // shows which kind of record the command made
   } const rows[] = {
       {"show traffic-policy interface", "configuredIntfInput"},
       {"show traffic-policy cpu", "configuredVrf"},
   };
   for (auto const& row : rows) {
      auto const records = recordsOf(row.command);
      auto const& policies = records["policyState"];
      ASSERT_FALSE(policies.empty()) << row.command;
      std::vector<std::string> names;
      for (auto const& [name, record] : policies.items()) {
         names.push_back(name);
         EXPECT_EQ(record["name"], name) << row.command;
         EXPECT_TRUE(record.contains(row.recordOnlyAttribute)) << row.command << " " << name;
      }
      EXPECT_TRUE(std::is_sorted(names.begin(), names.end())) << row.command;
      EXPECT_TRUE(records["fieldSetState"].contains("ipPrefixFieldSet")) << row.command;
   }
}

}  // namespace
