// The order of a run's steps: options, then the shell or one command.
#include "tpcli/Application.h"

#include <unistd.h>

#include <csignal>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Kel/Assert.h"
#include "Kel/Trace.h"
#include "StateLoader/Loader.h"
#include "tpcli/CommandGrammar.h"
#include "tpcli/ExitCode.h"
#include "tpcli/Locations.h"
#include "tpcli/MetricsCommand.h"
#include "tpcli/MetricsServer.h"
#include "tpcli/Options.h"
#include "tpcli/Reporting.h"
#include "tpcli/Session.h"
#include "tpcli/Shell.h"
#include "tpcli/StandardOutput.h"
#include "tpcli/WordCompletion.h"
#include "vellum/SigIntException.h"

namespace tpcli {

namespace {

void prepareProcess() {
   // A closed output must show up as EPIPE from write, never end the process; the print buffer
   // and StandardOutput then stop quietly.
   std::signal(SIGPIPE, SIG_IGN);
   vellum::installSigIntHandler();
   // A broken invariant ends the command with "internal error", not the process with an abort.
   Kel::assertHandlerIs(&Kel::throwingAssertHandler);
}

// The process ends right after a command. Taking a large model and the show object's records
// apart entity by entity would cost about a quarter of the command's time, so they are left for
// the system to reclaim. They stay reachable from here, so leak checkers do not report them.
void leaveForProcessExit(std::shared_ptr<void const> leftOver) {
   static auto* const leftOvers = new std::vector<std::shared_ptr<void const>>();
   leftOvers->push_back(std::move(leftOver));
}

ExitCode runOnce(Options const& options, ParsedCommand const& command) {
   auto session = std::make_unique<Session>(options);
   auto outcome = session->run(command);
   leaveForProcessExit(std::move(session));
   leaveForProcessExit(std::make_shared<Kel::Ptr<TrafficPolicyCli::ShowCommand>>(outcome.shown));
   return outcome.code;
}

// `tpcli shell`, or no command at all from someone at a terminal.
bool wantsShell(Options const& options) {
   auto const& words = options.commandWords;
   return (words.size() == 1 && words.front() == "shell") ||
          (words.empty() && isatty(STDIN_FILENO) == 1);
}

// The raw counters need no snapshots: a clear never changes them.
ExitCode metrics(Options const& options) {
   auto const statePath = options.statePath.value_or(exampleStatePath());
   if (options.listen) {
      return serveMetrics(statePath, valueOr(parseListenAddress(*options.listen), ExitCode::usage));
   }
   auto const state = std::make_shared<StateLoader::DeviceState const>(
       valueOr(StateLoader::loadState(statePath), ExitCode::invalidState));
   writeMetricsOnto(STDOUT_FILENO, *state);
   leaveForProcessExit(state);
   return vellum::sigIntNoticed() ? ExitCode::interrupted : ExitCode::done;
}

ExitCode runInvocation(std::vector<std::string> arguments) {
   auto const invocation = valueOr(parseCommandLine(std::move(arguments)), ExitCode::usage);
   if (invocation.textToPrint) {
      writeStandardOutput(*invocation.textToPrint);
      return ExitCode::done;
   }
   auto const& options = invocation.options;
   if (options.traceLevel) {
      Kel::traceSpecIs(std::to_string(*options.traceLevel));
   }
   if (options.complete) {
      writeStandardOutput(wordCompletions(options));
      return ExitCode::done;
   }
   if (isMetricsCommand(options)) {
      return metrics(options);
   }
   if (wantsShell(options)) {
      return runShell(options);
   }
   return runOnce(options, valueOr(parseCommand(options.commandWords), ExitCode::usage));
}

}  // namespace

int run(int argc, char const* const* argv) {
   prepareProcess();
   return static_cast<int>(runReported(
       [&] { return runInvocation(std::vector<std::string>(argv + 1, argv + argc)); }, "tpcli: "));
}

}  // namespace tpcli
