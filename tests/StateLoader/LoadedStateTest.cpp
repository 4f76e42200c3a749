// States that load where no show command tells how they were read: through a pipe or ending
// anywhere in a page. Every key of the format shows its effect in the golden cases.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <string_view>
#include <thread>

#include "StateLoader/Loader.h"
#include "support/TempStateFiles.h"

namespace {

// A state may come through a pipe, whose size is not known up front: the loader reads until the
// end, growing its buffer. The state is made larger than the first buffer.
TEST(LoadedState, StateFromAPipeLoads) {
   testing_support::TempStateFiles const files;
   constexpr int kVrfs = 20000;
   std::string text = R"({"vrfs": {"names": [)";
   for (int vrf = 0; vrf < kVrfs; ++vrf) {
      text += (vrf ? ", \"vrf" : "\"vrf") + std::to_string(vrf) + "\"";
   }
   text += "]}}";
   auto const pipe = (files.folder() / "state.pipe").string();
   ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
   std::thread writer([&pipe, &text] {
      std::ofstream out(pipe, std::ios::binary);
      out << text;
   });
   auto const loaded = StateLoader::loadState(pipe);
   writer.join();
   ASSERT_TRUE(loaded) << loaded.reason();
   EXPECT_EQ(loaded->allVrfConfig->vrf().size(), std::size_t{kVrfs});
}

// A regular file is mapped, and the parser reads a little past its end: a file ending right at a
// page boundary, or just short of one, has to be read into a buffer instead.
TEST(LoadedState, FilesEndingAtAnyPlaceInAPageLoad) {
   testing_support::TempStateFiles const files;
   std::string_view const state = R"({"vrfs": {"names": ["blue"]}})";
   auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
   for (std::size_t const shortOfPage : {0, 1, 63, 64, 65, 200}) {
      auto const text =
          std::string(state) + std::string(2 * page - shortOfPage - state.size(), ' ');
      auto const loaded = StateLoader::loadState(files.write("state.json", text));
      ASSERT_TRUE(loaded) << shortOfPage << ": " << loaded.reason();
      EXPECT_EQ(loaded->allVrfConfig->vrf().size(), 1u) << shortOfPage;
   }
}

}  // namespace
