// A state file of a chosen scale, written by the scale-state generator into a temporary folder
// that is removed with the object.
#pragma once

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace bench {

class GeneratedState {
 public:
   // `options` are the generator's, for example " --policies 1000 --rules 100".
   explicit GeneratedState(std::string const& options) {
      auto pattern = (std::filesystem::temp_directory_path() / "state-bench-XXXXXX").string();
      if (!::mkdtemp(pattern.data())) {
         throw std::runtime_error("cannot make a temporary folder");
      }
      folder_ = pattern;
      path_ = (folder_ / "state.json").string();
      auto const command = std::string(GENERATE_STATE) + options + " --output " + path_;
      if (std::system(command.c_str()) != 0) {
         throw std::runtime_error("generate_state failed");
      }
   }
   ~GeneratedState() {
      std::error_code ignored;
      std::filesystem::remove_all(folder_, ignored);
   }
   GeneratedState(GeneratedState const&) = delete;
   GeneratedState& operator=(GeneratedState const&) = delete;

   std::string const& path() const noexcept { return path_; }
   std::size_t size() const { return std::filesystem::file_size(path_); }
   std::string text() const {
      std::ifstream in(path_, std::ios::binary);
      std::ostringstream contents;
      contents << in.rdbuf();
      return contents.str();
   }

 private:
   std::filesystem::path folder_;
   std::string path_;
};

}  // namespace bench
