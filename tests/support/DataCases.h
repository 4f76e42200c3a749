// Cases kept as data beside the tests that run them: each is three lines, "- " and the case's
// name, its input on one line, and what the test expects of it. Other lines are comments.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace testing_support {

struct DataCase {
   std::string name;
   std::string input;
   std::string expected;
};

// The cases of a file; a file that cannot be read throws.
std::vector<DataCase> readDataCases(std::filesystem::path const& path);

}  // namespace testing_support
