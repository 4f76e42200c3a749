// The field-set listings end to end: tpcli with the real show library on a state file, each
// command's exact text and JSON checked against the golden files beside the state, and every
// JSON document parsed by an independent parser. TP_UPDATE_GOLDEN=1 rewrites the golden files
// from what the commands print; review the difference like code.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/CapturedOutput.h"
#include "support/TpcliProcess.h"
#include "support/Words.h"

namespace tpcli_test {
namespace {

std::filesystem::path const kGoldenDirectory = GOLDEN_DIRECTORY "/field-sets";

struct GoldenCase {
   std::string name;     // of the golden files NAME.txt and NAME.json
   std::string command;  // after "show traffic-policy field-set "
};

std::string contentsOf(std::filesystem::path const& path) {
   std::stringstream text;
   text << std::ifstream(path).rdbuf();
   return text.str();
}

// The command's output in one format, checked against (or written to) its golden file.
void expectGolden(GoldenCase const& row, std::string const& format) {
   auto const line = "--library " SHOW_LIBRARY " -s " + (kGoldenDirectory / "state.json").string() +
                     (format == "json" ? " --json" : "") + " show traffic-policy field-set " +
                     row.command;
   auto const run = runTpcli(wordsOf(line));
   ASSERT_EQ(run.exitCode, 0) << line << ": " << run.standardError;
   EXPECT_EQ(run.standardError, "") << line;
   auto const golden = kGoldenDirectory / (row.name + "." + format);
   if (std::getenv("TP_UPDATE_GOLDEN")) {
      std::ofstream(golden) << run.standardOutput;
   }
   EXPECT_EQ(run.standardOutput, contentsOf(golden)) << line << " against " << golden;
   if (format == "json") {
      testing_support::parseJson(run.standardOutput);
   }
}

TEST(FieldSetGoldenTest, EveryListingPrintsItsGoldenTextAndJson) {
   std::vector<GoldenCase> const cases{
       {"ipv4-all", "ipv4 prefix"},
       {"ipv4-by-name", "ipv4 prefix bogons"},
       {"ipv4-unknown-name", "ipv4 prefix no-such-set"},
       {"ipv4-contains-overlapping", "ipv4 prefix contains 10.20.1.0/24"},
       {"ipv4-contains-exact", "ipv4 prefix contains 10.20.0.0/16 exact"},
       {"ipv4-contains-nothing", "ipv4 prefix contains 8.8.8.0/24"},
       {"ipv4-unknown-name-contains", "ipv4 prefix no-such-set contains 10.0.0.0/8"},
       {"ipv6-all", "ipv6 prefix"},
       {"ipv6-contains-overlapping", "ipv6 prefix contains 2001:db8:1:2::/64"},
       {"ipv6-contains-exact", "ipv6 prefix contains 2001:db8:1::/48 exact"},
       {"ipv6-contains-nothing", "ipv6 prefix contains 2001:db8:1:3::/64 exact"},
       {"l4-port-all", "l4-port"},
       {"l4-port-by-name", "l4-port web-ports"},
       {"l4-port-contains", "l4-port contains 443-1000"},
       {"l4-port-contains-nothing", "l4-port contains 1-79"},
       {"vlan-all", "vlan"},
       {"vlan-contains", "vlan contains 305"},
       {"vlan-contains-nothing", "vlan guests contains 310-319"},
   };
   for (auto const& row : cases) {
      expectGolden(row, "txt");
      expectGolden(row, "json");
   }
}

}  // namespace
}  // namespace tpcli_test
