// A real terminal for tests of the interactive shell: a tmux server of its own (its own socket)
// runs one command in a pane; keys are typed with send-keys and the screen is read with
// capture-pane. Waits poll the screen until a deadline, so a slow build only makes them slower.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace tpcli_test {

class Terminal {
 public:
   // Runs `command` (for sh) in a 200-column pane with HOME at `home`, where tmux's own
   // configuration is written too.
   Terminal(std::string const& command, std::string const& home);
   ~Terminal();
   Terminal(Terminal const&) = delete;
   Terminal& operator=(Terminal const&) = delete;

   // Key names as tmux knows them ("Enter", "Tab", "C-c", "Up"); anything else is typed as text.
   void send(std::vector<std::string> const& keys) const;
   // The screen with its scrollback: wrapped lines joined, blanks at line ends dropped.
   std::string screen() const;
   // Whether `text` appears on the screen (or ends it, blank lines below left aside) before the
   // deadline.
   enum Place { anywhere, atEnd };
   bool waitFor(std::string const& text, Place place = atEnd) const;
   // The command's exit code once it has ended, or -1 at the deadline.
   int waitForExit() const;

 private:
   std::string tmux(std::string const& arguments) const;

   std::string socket_;
};

// What `command` (for sh) writes on standard output.
std::string output(std::string const& command);

// `text` quoted for sh.
std::string shellQuoted(std::string const& text);

}  // namespace tpcli_test
