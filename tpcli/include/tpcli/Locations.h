// Where tpcli finds what it ships with: the show library, the HTTP server module and the bundled
// example state. Each is looked for beside the executable (the build tree keeps them apart, so the
// places the build recorded come last) and in the installed layout (bin/ beside lib/ and share/).
#pragma once

#include <optional>
#include <string>

namespace tpcli {

// The --library option, else $TPCLI_LIBRARY, else the first place that has the library (the
// last place tried when none has it, so that loading names a real path in its error).
std::string showLibraryPath(std::optional<std::string> const& fromOption);

// The module that serves `metrics --listen`, found the same way (installed in a folder of tpcli's
// own under lib/, as no other program loads it).
std::string httpServerModulePath();

// The bundled example state of a small lab device, found the same way.
std::string exampleStatePath();

}  // namespace tpcli
