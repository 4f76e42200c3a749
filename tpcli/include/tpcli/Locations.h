// Where tpcli finds what it ships with: the show library, its modules (the HTTP server and the line
// editor) and the bundled example state. Each is looked for beside the executable (the build tree
// keeps them apart, so the places the build recorded come last) and in the installed layout (bin/
// beside lib/ and share/).
#pragma once

#include <optional>
#include <string>

namespace tpcli {

// The --library option, else $TPCLI_LIBRARY, else the first place that has the library (the
// last place tried when none has it, so that loading names a real path in its error).
std::string showLibraryPath(std::optional<std::string> const& fromOption);

// The modules that serve `metrics --listen` and edit the shell's lines, found the same way
// (installed in a folder of tpcli's own under lib/, as no other program loads them).
std::string httpServerModulePath();
std::string lineEditorModulePath();

// The bundled example state of a small lab device, found the same way.
std::string exampleStatePath();

}  // namespace tpcli
