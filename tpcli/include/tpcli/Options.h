// tpcli's command-line options, parsed with CLI11. The words that are not options form the command,
// which CommandGrammar reads; options may stand before, between or after them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Kel/Expected.h"

namespace tpcli {

struct Options {
   std::optional<std::string> statePath;    // none: the bundled example state
   std::optional<std::string> libraryPath;  // none: TPCLI_LIBRARY, then the usual places
   bool json = false;
   std::uint32_t revision = 2;
   std::optional<int> traceLevel;
   bool noPager = false;
   bool records = false;               // print the cached records instead of the command's output
   bool complete = false;              // print the completions of the command's last word, for bash
   std::optional<std::string> listen;  // metrics only: serve them at this ADDRESS:PORT
   std::vector<std::string> commandWords;
   friend bool operator==(Options const&, Options const&) = default;
};

// The command line asks for a command to run, or only for text to print (--help, --version).
struct Invocation {
   Options options;
   std::optional<std::string> textToPrint;
};

// `arguments` without the program name. On failure the reason is the usage message.
Kel::Expected<Invocation> parseCommandLine(std::vector<std::string> arguments);

}  // namespace tpcli
