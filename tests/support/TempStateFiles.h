// State texts written to files in a private temporary folder that is
// removed with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace testing_support {

class TempStateFiles {
 public:
   TempStateFiles();
   ~TempStateFiles();
   TempStateFiles(TempStateFiles const&) = delete;
   TempStateFiles& operator=(TempStateFiles const&) = delete;

   std::filesystem::path const& folder() const noexcept { return folder_; }
   // Writes `text` byte for byte to `name` in the folder and returns the file's path.
   std::string write(std::string_view name, std::string_view text) const;

 private:
   std::filesystem::path folder_;
};

// The whole text of a file.
std::string readFile(std::filesystem::path const& path);

}  // namespace testing_support
