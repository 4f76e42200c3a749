// The example states: every one loads, and is JSON to an independent parser too. What the lab
// device holds is shown in full by the golden cases.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "StateLoader/Loader.h"
#include "support/CapturedOutput.h"
#include "support/TempStateFiles.h"

namespace {

std::filesystem::path const kExamples = EXAMPLES_DIR;

TEST(ExampleStates, EveryExampleLoads) {
   std::size_t examples = 0;
   for (auto const& entry : std::filesystem::directory_iterator(kExamples)) {
      if (entry.path().extension() != ".json") {
         continue;
      }
      ++examples;
      testing_support::parseJson(testing_support::readFile(entry.path()));
      auto const loaded = StateLoader::loadState(entry.path().string());
      EXPECT_TRUE(loaded) << (loaded ? "" : loaded.reason());
   }
   EXPECT_GE(examples, 1u);
}

}  // namespace
