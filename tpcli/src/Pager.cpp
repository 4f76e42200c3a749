// Starting the pager with posix_spawn behind a pipe, and waiting for it at the end.
#include "tpcli/Pager.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tpcli/ExitCode.h"

extern char** environ;

namespace tpcli {

namespace {

constexpr int kShellCannotRun = 126;
constexpr int kShellNotFound = 127;

[[noreturn]] void cannotStart(std::string const& command, int error) {
   throw CommandError(ExitCode::failed,
                      "cannot start the pager \"" + command + "\": " + std::strerror(error));
}

// The file actions and attributes of the pager's process, released however the spawn ends.
class SpawnSetup {
 public:
   explicit SpawnSetup(int input) {
      posix_spawn_file_actions_init(&actions_);
      posix_spawn_file_actions_adddup2(&actions_, input, STDIN_FILENO);
      posix_spawnattr_init(&attributes_);
      // tpcli ignores SIGPIPE; the pager gets the usual behaviour back.
      sigset_t defaults;
      sigemptyset(&defaults);
      sigaddset(&defaults, SIGPIPE);
      posix_spawnattr_setsigdefault(&attributes_, &defaults);
      posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
   }
   ~SpawnSetup() {
      posix_spawnattr_destroy(&attributes_);
      posix_spawn_file_actions_destroy(&actions_);
   }
   SpawnSetup(SpawnSetup const&) = delete;
   SpawnSetup& operator=(SpawnSetup const&) = delete;

   posix_spawn_file_actions_t const* actions() const noexcept { return &actions_; }
   posix_spawnattr_t const* attributes() const noexcept { return &attributes_; }

 private:
   posix_spawn_file_actions_t actions_;
   posix_spawnattr_t attributes_;
};

// Runs `sh -c command` with its standard input on `input`; returns the error number or 0.
int spawnShell(std::string const& command, int input, pid_t& pid) {
   SpawnSetup const setup(input);
   std::string shell = "sh";
   std::string option = "-c";
   std::string commandText = command;
   char* arguments[] = {shell.data(), option.data(), commandText.data(), nullptr};
   return posix_spawn(&pid, "/bin/sh", setup.actions(), setup.attributes(), arguments, environ);
}

}  // namespace

std::optional<std::string> pagerCommand(bool wanted, bool outputIsTerminal,
                                        char const* pagerVariable) {
   if (!wanted || !outputIsTerminal || (pagerVariable && *pagerVariable == '\0')) {
      return std::nullopt;
   }
   return pagerVariable ? pagerVariable : "less -FRX";
}

Pager::Pager(std::string command) : command_(std::move(command)) {
   int ends[2];
   if (pipe2(ends, O_CLOEXEC) != 0) {
      cannotStart(command_, errno);
   }
   auto const [readEnd, writeEnd] = ends;
   auto const error = spawnShell(command_, readEnd, pid_);
   ::close(readEnd);
   if (error != 0) {
      ::close(writeEnd);
      cannotStart(command_, error);
   }
   std::fflush(stdout);
   savedOutput_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
   dup2(writeEnd, STDOUT_FILENO);
   ::close(writeEnd);
}

Pager::~Pager() {
   if (pid_ > 0) {
      closeAndWait();
   }
}

void Pager::finish() {
   auto const status = closeAndWait();
   if (WIFEXITED(status) &&
       (WEXITSTATUS(status) == kShellCannotRun || WEXITSTATUS(status) == kShellNotFound)) {
      throw CommandError(ExitCode::failed, "cannot run the pager \"" + command_ +
                                               "\" (set PAGER, or use --no-pager)");
   }
}

int Pager::closeAndWait() noexcept {
   std::fflush(stdout);
   // Putting the terminal back closes the pipe's only write end: the pager sees the end.
   dup2(savedOutput_, STDOUT_FILENO);
   ::close(savedOutput_);
   int status = 0;
   while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
   }
   pid_ = -1;
   return status;
}

}  // namespace tpcli
