#include "support/DataCases.h"

#include <fstream>
#include <stdexcept>

namespace testing_support {

std::vector<DataCase> readDataCases(std::filesystem::path const& path) {
   std::ifstream data(path, std::ios::binary);
   if (!data) {
      throw std::runtime_error("cannot read " + path.string());
   }
   std::vector<DataCase> cases;
   for (std::string line; std::getline(data, line);) {
      if (line.starts_with("- ")) {
         DataCase& row = cases.emplace_back(DataCase{line.substr(2), {}, {}});
         std::getline(data, row.input);
         std::getline(data, row.expected);
      }
   }
   return cases;
}

}  // namespace testing_support
