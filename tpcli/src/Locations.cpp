// Finding the show library, the HTTP server module and the example state relative to the running
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
   auto const here = executableDirectory();
   return firstExisting({here / TPCLI_HTTP_MODULE_FILE_NAME,
                         here / ".." / TPCLI_INSTALL_LIBDIR / "tpcli" / TPCLI_HTTP_MODULE_FILE_NAME,
                         TPCLI_BUILD_TREE_HTTP_MODULE});
}

std::string exampleStatePath() {
   auto const here = executableDirectory();
   return firstExisting({here / "lab.json", here / ".." / TPCLI_INSTALL_DATADIR / "tpcli/lab.json",
                         TPCLI_SOURCE_EXAMPLE_STATE});
}

}  // namespace tpcli
