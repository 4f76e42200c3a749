// The show commands end to end: tpcli with the real show library on a state file, compared byte
// for byte with the expected files listed in tests/golden/CASES. Every JSON document is also read
// by an independent parser, and a second run of the same command must give the same bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/TempStateFiles.h"
#include "support/TpcliProcess.h"
#include "support/Words.h"

namespace tpcli_test {
namespace {

namespace fs = std::filesystem;

struct Format {
   char const* name;  // in CASES
   char const* options;
   char const* suffix;
   bool json;
};
Format const kFormats[] = {{"text", "", ".txt", false},
                           {"json", "--json ", ".json", true},
                           {"json1", "--json --revision 1 ", ".r1.json", true},
                           {"json2", "--json --revision 2 ", ".r2.json", true}};

Format const& formatNamed(std::string const& name) {
   auto const* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                    [&name](Format const& format) { return format.name == name; });
   EXPECT_NE(found, std::end(kFormats)) << "unknown format in CASES: " << name;
   return found == std::end(kFormats) ? kFormats[0] : *found;
}

struct GoldenCase {
   std::string state;
   std::string name;
   std::vector<Format> formats;
   std::string command;
};

std::vector<GoldenCase> readCases() {
   std::ifstream manifest(fs::path(GOLDEN_DIR) / "CASES");
   std::vector<GoldenCase> cases;
   for (std::string line; std::getline(manifest, line);) {
      if (line.empty() || line.front() == '#') {
         continue;
      }
      std::istringstream fields(line);
      GoldenCase golden;
      std::string formats;
      fields >> golden.state >> golden.name >> formats >> std::ws;
      std::getline(fields, golden.command);
      std::istringstream formatNames(formats);
      for (std::string format; std::getline(formatNames, format, ',');) {
         golden.formats.push_back(formatNamed(format));
      }
      cases.push_back(std::move(golden));
   }
   return cases;
}

fs::path statePath(std::string const& state) {
   auto const example = fs::path(EXAMPLES_DIR) / (state + ".json");
   return fs::exists(example) ? example : fs::path(GOLDEN_DIR) / "states" / (state + ".json");
}

bool updating() {
   auto const* update = std::getenv("TP_UPDATE_GOLDENS");
   return update && std::string(update) == "1";
}

std::string runCase(std::string const& state, std::string const& command, Format const& format) {
   auto const run = runTpcli(wordsOf("--no-pager --library " SHOW_LIBRARY " -s " +
                                     statePath(state).string() + " " + format.options + command));
   EXPECT_EQ(run.exitCode, 0);
   EXPECT_EQ(run.standardError, "");
   return run.standardOutput;
}

TEST(GoldenOutput, EveryCaseMatchesItsFiles) {
   auto const cases = readCases();
   ASSERT_FALSE(cases.empty());
   for (auto const& golden : cases) {
      for (auto const& format : golden.formats) {
         auto const expectedFile =
             fs::path(GOLDEN_DIR) / golden.state / (golden.name + format.suffix);
         SCOPED_TRACE(golden.command + " " + format.options + "-> " + expectedFile.string());
         auto const output = runCase(golden.state, golden.command, format);
         if (format.json) {
            EXPECT_TRUE(nlohmann::json::accept(output)) << "not JSON";
         }
         EXPECT_EQ(runCase(golden.state, golden.command, format), output) << "a second run differs";
         if (updating()) {
            fs::create_directories(expectedFile.parent_path());
            std::ofstream(expectedFile, std::ios::binary) << output;
            continue;
         }
         ASSERT_TRUE(fs::exists(expectedFile)) << "run with TP_UPDATE_GOLDENS=1 to create it";
         EXPECT_EQ(output, testing_support::readFile(expectedFile));
      }
   }
}

}  // namespace
}  // namespace tpcli_test
