// Runs the built tpcli as its own process, as a user or a script does, and collects its exit code
// and both outputs. Standard output may instead go to a pipe nobody reads any more, to /dev/full,
// or to a descriptor the test holds (a terminal, a pipe it reads itself).
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace tpcli_test {

enum class Output { collected, closedPipe, fullDisk, given };

struct TpcliSetup {
   std::vector<std::string> environment;  // "NAME=VALUE", replacing the test's own NAME
   Output output = Output::collected;
   int standardOutput = -1;  // for Output::given
};

struct TpcliRun {
   int exitCode = -1;  // 128 + N when ended by signal N, as a shell reports it
   std::string standardOutput;
   std::string standardError;
};

TpcliRun runTpcli(std::vector<std::string> const& arguments, TpcliSetup const& setup = {});

// The environment that preloads `shim` into tpcli, with the shim's own settings.
std::vector<std::string> preloading(char const* shim, std::vector<std::string> settings);

// For tests that act on the running process: standard output is setup.standardOutput, standard
// error is inherited.
pid_t startTpcli(std::vector<std::string> const& arguments, TpcliSetup const& setup);
int waitForExit(pid_t pid);

// The lines of `text`, without their ends.
std::vector<std::string> linesOf(std::string const& text);

// How a run should end: its exit code, what it says on standard error and, where it matters,
// how its standard output starts.
struct ExpectedRun {
   std::string line;  // the arguments, split at blanks
   TpcliSetup setup;
   int exitCode;
   std::string errorStart;  // of the one line after "tpcli: "; empty: nothing on standard error
   std::string outputStart = {};
};

// Runs each row and checks it, naming the row of a failure.
void expectRuns(std::vector<ExpectedRun> const& rows);

}  // namespace tpcli_test
