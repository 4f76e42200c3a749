// Temporary state files for the loader's tests.
#include "support/TempStateFiles.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace testing_support {

TempStateFiles::TempStateFiles() {
   auto pattern = (std::filesystem::temp_directory_path() / "state-loader-test-XXXXXX").string();
   if (!::mkdtemp(pattern.data())) {
      throw std::runtime_error("cannot make a temporary folder");
   }
   folder_ = pattern;
}

TempStateFiles::~TempStateFiles() {
   std::error_code ignored;
   std::filesystem::remove_all(folder_, ignored);
}

std::string TempStateFiles::write(std::string_view name, std::string_view text) const {
   auto const path = folder_ / name;
   std::ofstream out(path, std::ios::binary);
   out.write(text.data(), static_cast<std::streamsize>(text.size()));
   if (!out) {
      throw std::runtime_error("cannot write " + path.string());
   }
   return path.string();
}

std::string readFile(std::filesystem::path const& path) {
   std::ifstream in(path, std::ios::binary);
   std::ostringstream text;
   text << in.rdbuf();
   return text.str();
}

}  // namespace testing_support
