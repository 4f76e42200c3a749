// Line editing at the terminal through libedit: the usual keys, history with the arrows, `?` for
// help and TAB for completion, both answered by the caller. Ctrl-C at the prompt drops the line
// being typed; only while a command runs does it reach the process as SIGINT.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "tpcli/ShellHelp.h"

struct editline;
struct history;

namespace tpcli {

class LineEditor {
 public:
   // Both are given the line up to the cursor.
   struct Assist {
      std::function<std::string(std::string_view)> help;
      std::function<Completion(std::string_view)> complete;
   };

   LineEditor(std::string prompt, Assist assist);
   ~LineEditor();
   LineEditor(LineEditor const&) = delete;
   LineEditor& operator=(LineEditor const&) = delete;

   // The next line, without its end; none at the end of input (Ctrl-D). A line dropped with
   // Ctrl-C comes back empty.
   std::optional<std::string> readLine();
   // Makes a line reachable with the up arrow.
   void remember(std::string const& line);

 private:
   static LineEditor& of(editline* editLine);
   static char* promptOf(editline* editLine);
   static unsigned char onHelp(editline* editLine, int key);
   static unsigned char onComplete(editline* editLine, int key);
   static unsigned char onCancel(editline* editLine, int key);

   std::string lineBeforeCursor() const;
   // Writes `text` below the line being typed; the line is shown again after it.
   void showBelow(std::string const& text) const;

   std::string prompt_;
   Assist assist_;
   bool cancelled_ = false;
   history* history_;
   editline* editLine_;
};

}  // namespace tpcli
