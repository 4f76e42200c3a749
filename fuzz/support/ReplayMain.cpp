// Stands in for libFuzzer outside the fuzz build: runs the target once on every file named on the
// command line, or found in a folder named there, so that the suite replays the seeds and every
// input that once failed.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

void replay(std::filesystem::path const& file) {
   std::ifstream stream(file, std::ios::binary);
   if (!stream) {
      std::fprintf(stderr, "cannot read %s\n", file.c_str());
      std::exit(1);
   }
   std::vector<char> const bytes{std::istreambuf_iterator<char>(stream), {}};
   std::printf("replaying %s\n", file.c_str());
   std::fflush(stdout);
   LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
   for (int index = 1; index < argc; ++index) {
      std::filesystem::path const argument(argv[index]);
      if (!std::filesystem::is_directory(argument)) {
         replay(argument);
         continue;
      }
      std::set<std::filesystem::path> files;
      for (auto const& entry : std::filesystem::directory_iterator(argument)) {
         if (entry.is_regular_file()) {
            files.insert(entry.path());
         }
      }
      for (auto const& file : files) {
         replay(file);
      }
   }
   return 0;
}
