// Line editing at the terminal: the usual keys, history with the arrows, `?` for help and TAB for
// completion, both answered by the caller. Ctrl-C at the prompt drops the line being typed; only
// while a command runs does it reach the process as SIGINT. The editor is libedit, in a module
// that only the shell loads, so that a show does not map it and the terminal libraries it needs.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "tpcli/ShellHelp.h"

namespace tpcli {

class LineEditor {
 public:
   // Both are given the line up to the cursor.
   struct Assist {
      std::function<std::string(std::string_view)> help;
      std::function<Completion(std::string_view)> complete;
   };

   virtual ~LineEditor() = default;

   // The next line, without its end; none at the end of input (Ctrl-D). A line dropped with
   // Ctrl-C comes back empty.
   virtual std::optional<std::string> readLine() = 0;
   // Makes a line reachable with the up arrow.
   virtual void remember(std::string const& line) = 0;
};

}  // namespace tpcli

// What the module exports; tpcli finds it by name and owns what it returns.
extern "C" [[gnu::visibility("default")]] tpcli::LineEditor* tpcliLineEditor(
    std::string prompt, tpcli::LineEditor::Assist assist);

namespace tpcli {
using LineEditorFactory = decltype(&tpcliLineEditor);
}  // namespace tpcli
