// Spawning tpcli with posix_spawn, its outputs in anonymous memory files or where the test says.
#include "support/TpcliProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "support/CapturedOutput.h"
#include "support/Words.h"

extern char** environ;

namespace tpcli_test {

namespace {

std::vector<std::string> environmentWith(std::vector<std::string> const& overrides) {
   std::vector<std::string> result;
   for (char** entry = environ; *entry; ++entry) {
      std::string const variable = *entry;
      auto const name = variable.substr(0, variable.find('=') + 1);
      bool replaced = false;
      for (auto const& override : overrides) {
         replaced = replaced || override.starts_with(name);
      }
      if (!replaced) {
         result.push_back(variable);
      }
   }
   result.insert(result.end(), overrides.begin(), overrides.end());
   return result;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
   std::vector<char*> pointers;
   for (auto& text : texts) {
      pointers.push_back(text.data());
   }
   pointers.push_back(nullptr);
   return pointers;
}

pid_t spawn(std::vector<std::string> const& arguments, TpcliSetup const& setup, int outputFd,
            int errorFd) {
   std::vector<std::string> argv{TPCLI_EXECUTABLE};
   argv.insert(argv.end(), arguments.begin(), arguments.end());
   auto environment = environmentWith(setup.environment);
   posix_spawn_file_actions_t actions;
   posix_spawn_file_actions_init(&actions);
   posix_spawn_file_actions_adddup2(&actions, outputFd, STDOUT_FILENO);
   if (errorFd >= 0) {
      posix_spawn_file_actions_adddup2(&actions, errorFd, STDERR_FILENO);
   }
   pid_t pid = -1;
   auto const error = posix_spawn(&pid, argv.front().c_str(), &actions, nullptr,
                                  pointersTo(argv).data(), pointersTo(environment).data());
   posix_spawn_file_actions_destroy(&actions);
   if (error != 0) {
      throw std::runtime_error("cannot start " + argv.front());
   }
   return pid;
}

// Where a run's standard output goes: opened for the run, closed after it.
class OutputTarget {
 public:
   OutputTarget(TpcliSetup const& setup, int collector) : fd_(open(setup, collector)) {}
   ~OutputTarget() { close(fd_); }
   OutputTarget(OutputTarget const&) = delete;
   OutputTarget& operator=(OutputTarget const&) = delete;

   int fd() const noexcept { return fd_; }

 private:
   static int open(TpcliSetup const& setup, int collector) {
      switch (setup.output) {
         case Output::collected:
            return dup(collector);
         case Output::closedPipe: {
            int ends[2];
            pipe2(ends, O_CLOEXEC);
            close(ends[0]);
            return ends[1];
         }
         case Output::fullDisk:
            return ::open("/dev/full", O_WRONLY | O_CLOEXEC);
         case Output::given:
            return dup(setup.standardOutput);
      }
      return -1;
   }

   int fd_;
};

}  // namespace

pid_t startTpcli(std::vector<std::string> const& arguments, TpcliSetup const& setup) {
   return spawn(arguments, setup, setup.standardOutput, -1);
}

int waitForExit(pid_t pid) {
   int status = 0;
   waitpid(pid, &status, 0);
   return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

TpcliRun runTpcli(std::vector<std::string> const& arguments, TpcliSetup const& setup) {
   testing_support::MemoryFile output;
   testing_support::MemoryFile error;
   TpcliRun run;
   {
      OutputTarget const target(setup, output.fd());
      run.exitCode = waitForExit(spawn(arguments, setup, target.fd(), error.fd()));
   }
   run.standardOutput = output.contents();
   run.standardError = error.contents();
   return run;
}

std::vector<std::string> preloading(char const* shim, std::vector<std::string> settings) {
   // A sanitizer runtime wants to be loaded first; the shim comes before it here, harmlessly.
   auto const* asanOptions = std::getenv("ASAN_OPTIONS");
   settings.push_back(std::string("ASAN_OPTIONS=") + (asanOptions ? asanOptions : "") +
                      ":verify_asan_link_order=0");
   settings.push_back(std::string("LD_PRELOAD=") + shim);
   return settings;
}

std::vector<std::string> linesOf(std::string const& text) {
   std::vector<std::string> lines;
   std::istringstream stream(text);
   for (std::string line; std::getline(stream, line);) {
      lines.push_back(line);
   }
   return lines;
}

void expectRuns(std::vector<ExpectedRun> const& rows) {
   for (auto const& row : rows) {
      auto const run = runTpcli(wordsOf(row.line), row.setup);
      EXPECT_EQ(run.exitCode, row.exitCode) << row.line << ": " << run.standardError;
      EXPECT_TRUE(run.standardOutput.starts_with(row.outputStart)) << row.line;
      if (row.errorStart.empty()) {
         EXPECT_EQ(run.standardError, "") << row.line;
         continue;
      }
      auto const lines = linesOf(run.standardError);
      ASSERT_EQ(lines.size(), 1u) << row.line << ":\n" << run.standardError;
      EXPECT_TRUE(lines[0].starts_with("tpcli: " + row.errorStart)) << row.line << ": " << lines[0];
   }
}

}  // namespace tpcli_test
