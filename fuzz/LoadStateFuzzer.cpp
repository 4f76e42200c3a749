// The state loader and the snapshot reader on arbitrary bytes: whatever the file holds, loading
// ends in a state or in a one-line reason, never in a crash, a hang or a sanitizer report; and the
// loader answers the same whether it parses the file in one piece or in the finest pieces.
#include <cstddef>
#include <cstdint>

#include "PieceLoader.h"
#include "StateLoader/Loader.h"
#include "StateLoader/Snapshots.h"
#include "tpcli/MemoryFile.h"

namespace {

// Snapshots fill the stores of a state; a fresh empty one per input, so that none carries over.
struct EmptyStateFile {
   EmptyStateFile() { file.write("{}"); }
   tpcli::MemoryFile file;
};

StateLoader::DeviceState emptyState() {
   static EmptyStateFile const empty;
   return StateLoader::loadState(empty.file.path()).value();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
   static tpcli::MemoryFile const input;
   input.write(data, size);
   auto const whole = StateLoader::loadState(input.path(), {size + 1, size + 1});
   auto const pieces = StateLoader::loadState(input.path(), {1, 1});
   if (bool(whole) != bool(pieces) || (!whole && whole.reason() != pieces.reason())) {
      __builtin_trap();
   }
   auto state = emptyState();
   (void)StateLoader::readSnapshots(input.path(), state);
   return 0;
}
