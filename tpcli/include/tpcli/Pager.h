// Paging long output on a terminal. The pager runs as `sh -c COMMAND` and reads a pipe that takes
// the place of standard output until finish(), so the show library and tpcli's own messages both
// reach it. A pager quit early closes the pipe; the print buffer reports that as a vanished reader
// and the command ends quietly, as on a device when the user leaves the pager.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace tpcli {

// The pager to use, if any: none when not wanted (--no-pager), when standard output is not a
// terminal, or when PAGER is set but empty; otherwise $PAGER, or "less -FRX" when it is unset.
std::optional<std::string> pagerCommand(bool wanted, bool outputIsTerminal,
                                        char const* pagerVariable);

class Pager {
 public:
   // Starts the pager and points standard output at it; CommandError when it cannot start.
   explicit Pager(std::string command);
   // Finishes without reporting, for commands that end with an error.
   ~Pager();
   Pager(Pager const&) = delete;
   Pager& operator=(Pager const&) = delete;

   // Ends the output (the pager sees the end of its input) and waits until the user quits the
   // pager. CommandError when the shell could not run the pager command.
   void finish();

 private:
   // Gives standard output back and returns the pager's wait status.
   int closeAndWait() noexcept;

   std::string command_;
   pid_t pid_ = -1;
   int savedOutput_ = -1;
};

}  // namespace tpcli
