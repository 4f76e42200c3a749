// Finding the show library, tpcli's modules and the example state relative to the running
// executable.
#include "tpcli/Locations.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

namespace tpcli {

namespace {

namespace fs = std::filesystem;

fs::path executableDirectory() {
   std::error_code error;
   auto const executable = fs::read_symlink("/proc/self/exe", error);
   return error ? fs::path() : executable.parent_path();
}

std::string firstExisting(std::vector<fs::path> const& candidates) {
   for (auto const& candidate : candidates) {
      std::error_code error;
      if (fs::is_regular_file(candidate, error)) {
         return candidate.string();
      }
   }
   return candidates.back().string();
}

// tpcli's own modules live in a folder of their own under lib/, as no other program loads them.
std::string modulePath(char const* fileName, char const* builtAt) {
   auto const here = executableDirectory();
   return firstExisting(
       {here / fileName, here / ".." / TPCLI_INSTALL_LIBDIR / "tpcli" / fileName, builtAt});
}

}  // namespace

std::string showLibraryPath(std::optional<std::string> const& fromOption) {
   if (fromOption) {
      return *fromOption;
   }
   if (auto const* fromEnvironment = std::getenv("TPCLI_LIBRARY");
       fromEnvironment && *fromEnvironment) {
      return fromEnvironment;
   }
   auto const here = executableDirectory();
   return firstExisting({here / TPCLI_LIBRARY_FILE_NAME,
                         here / ".." / TPCLI_INSTALL_LIBDIR / TPCLI_LIBRARY_FILE_NAME,
                         TPCLI_BUILD_TREE_LIBRARY});
}

std::string httpServerModulePath() {
   return modulePath(TPCLI_HTTP_MODULE_FILE_NAME, TPCLI_BUILD_TREE_HTTP_MODULE);
}

std::string lineEditorModulePath() {
   return modulePath(TPCLI_LINE_EDITOR_MODULE_FILE_NAME, TPCLI_BUILD_TREE_LINE_EDITOR_MODULE);
}

std::string exampleStatePath() {
   auto const here = executableDirectory();
   return firstExisting({here / "lab.json", here / ".." / TPCLI_INSTALL_DATADIR / "tpcli/lab.json",
                         TPCLI_SOURCE_EXAMPLE_STATE});
}

}  // namespace tpcli
