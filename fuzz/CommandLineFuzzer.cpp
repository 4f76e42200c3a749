// tpcli's options and command grammar on arbitrary argument vectors (the input's NUL bytes end
// the words): every line becomes a command or a usage message, never a crash or a report.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tpcli/CommandGrammar.h"
#include "tpcli/Options.h"

namespace {

std::vector<std::string> wordsOf(std::string_view bytes) {
   std::vector<std::string> words;
   for (std::size_t start = 0; start <= bytes.size();) {
      auto const end = std::min(bytes.find('\0', start), bytes.size());
      words.emplace_back(bytes.substr(start, end - start));
      start = end + 1;
   }
   return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
   auto const invocation = tpcli::parseCommandLine(
       wordsOf(std::string_view(reinterpret_cast<char const*>(data), size)));
   if (invocation && !invocation.value().textToPrint) {
      (void)tpcli::parseCommand(invocation.value().options.commandWords);
   }
   return 0;
}
