// The order of a run's steps and the exit code each failure gives.
#include "tpcli/Application.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Kel/Assert.h"
#include "Kel/Trace.h"
#include "StateLoader/Loader.h"
#include "StateLoader/Snapshots.h"
#include "Strix/Printable.h"
#include "tpcli/CommandGrammar.h"
#include "tpcli/CommandRunner.h"
#include "tpcli/CounterClearer.h"
#include "tpcli/ExitCode.h"
#include "tpcli/Locations.h"
#include "tpcli/MetricsCommand.h"
#include "tpcli/MetricsServer.h"
#include "tpcli/Options.h"
#include "tpcli/Pager.h"
#include "tpcli/ShowLibrary.h"
#include "tpcli/StandardOutput.h"
#include "tpcli/ValueParsers.h"
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

template <typename T>
T valueOr(Kel::Expected<T> expected, ExitCode code) {
   if (!expected) {
      throw CommandError(code, expected.reason());
   }
   return std::move(expected).value();
}

void failIf(std::optional<Kel::Failure> const& failure, ExitCode code) {
   if (failure) {
      throw CommandError(code, failure->reason);
   }
}

std::string statePathOf(Options const& options) {
   return options.statePath.value_or(exampleStatePath());
}

// A damaged snapshot file is as bad as a damaged state: shown as no snapshots, cleared counts
// would come back.
void readSnapshotsBeside(std::string const& statePath, StateLoader::DeviceState& state) {
   failIf(StateLoader::readSnapshots(StateLoader::snapshotPathOf(statePath), state),
          ExitCode::invalidState);
}

StateLoader::DeviceState loadedState(std::string const& statePath) {
   return valueOr(StateLoader::loadState(statePath), ExitCode::invalidState);
}

std::unique_ptr<Pager> pagerIfWanted(Options const& options) {
   auto const command =
       pagerCommand(!options.noPager, isatty(STDOUT_FILENO) == 1, std::getenv("PAGER"));
   return command ? std::make_unique<Pager>(*command) : nullptr;
}

Kel::Ptr<TrafficPolicyCli::ShowCommand> render(ShowLibrary const& library,
                                               StateLoader::DeviceState const& state,
                                               ShowRequest const& request, Options const& options,
                                               vellum::OutputFormat_t format) {
   auto command = makeShowCommand(library.factories(), state, request);
   if (options.records) {
      writeCachedRecords(*command, STDOUT_FILENO);
   } else {
      renderShowCommand(*command, STDOUT_FILENO, format, options.revision,
                        perInterfaceCountingOf(state, request));
   }
   return command;
}

// The process ends right after a command. Taking a large model and the show object's records
// apart entity by entity would cost about a quarter of the command's time, so they are left for
// the system to reclaim. They stay reachable from here, so leak checkers do not report them.
void leaveForProcessExit(StateLoader::DeviceState state,
                         Kel::Ptr<TrafficPolicyCli::ShowCommand> command) {
   struct LeftOver {
      StateLoader::DeviceState state;
      Kel::Ptr<TrafficPolicyCli::ShowCommand> command;
   };
   static auto* const leftOvers = new std::vector<LeftOver>();
   leftOvers->push_back({std::move(state), std::move(command)});
}

ExitCode show(Options const& options, ShowRequest const& request, vellum::OutputFormat_t format) {
   // Declared first so that it outlives the show object, whose code it holds.
   auto const library =
       valueOr(ShowLibrary::open(showLibraryPath(options.libraryPath)), ExitCode::failed);
   auto const statePath = statePathOf(options);
   auto state = loadedState(statePath);
   readSnapshotsBeside(statePath, state);
   auto const pager = pagerIfWanted(options);
   auto command = render(library, state, request, options, format);
   flushStandardOutput();
   leaveForProcessExit(std::move(state), std::move(command));
   if (pager) {
      pager->finish();
   }
   return vellum::sigIntNoticed() ? ExitCode::interrupted : ExitCode::done;
}

// How long a clear waits for another's lock: TPCLI_LOCK_WAIT seconds when set.
std::chrono::milliseconds lockPatience() {
   auto const* fromEnvironment = std::getenv("TPCLI_LOCK_WAIT");
   if (!fromEnvironment) {
      return StateLoader::SnapshotLock::kPatience;
   }
   auto const patience = parseSeconds(fromEnvironment);
   if (!patience) {
      throw CommandError(ExitCode::usage, "TPCLI_LOCK_WAIT: expected a number of seconds");
   }
   return *patience;
}

StateLoader::SnapshotLock lockedSnapshots(std::string const& statePath) {
   auto lock =
       StateLoader::SnapshotLock::acquire(StateLoader::snapshotPathOf(statePath), lockPatience());
   return valueOr(std::move(lock),
                  vellum::sigIntNoticed() ? ExitCode::interrupted : ExitCode::failed);
}

// The snapshots are read under the lock, so that what this clear writes back holds the work of
// every clear before it. A clear that the user interrupted writes nothing.
ExitCode clear(Options const& options, ClearCountersRequest const& request) {
   auto const library =
       valueOr(ShowLibrary::open(showLibraryPath(options.libraryPath)), ExitCode::failed);
   auto const statePath = statePathOf(options);
   auto state = loadedState(statePath);
   auto const lock = lockedSnapshots(statePath);
   readSnapshotsBeside(statePath, state);
   clearCounters(library.factories(), state, request);
   if (vellum::sigIntNoticed()) {
      throw CommandError(ExitCode::interrupted, "interrupted; the counter snapshots are unchanged");
   }
   failIf(lock.write(state), ExitCode::failed);
   return ExitCode::done;
}

// The raw counters need no snapshots: a clear never changes them.
ExitCode metrics(Options const& options) {
   auto const statePath = statePathOf(options);
   if (options.listen) {
      return serveMetrics(statePath, valueOr(parseListenAddress(*options.listen), ExitCode::usage));
   }
   auto state = loadedState(statePath);
   writeMetricsOnto(STDOUT_FILENO, state);
   leaveForProcessExit(std::move(state), nullptr);
   return vellum::sigIntNoticed() ? ExitCode::interrupted : ExitCode::done;
}

ExitCode runInvocation(std::vector<std::string> arguments) {
   auto const invocation = valueOr(parseCommandLine(std::move(arguments)), ExitCode::usage);
   if (invocation.textToPrint) {
      writeStandardOutput(*invocation.textToPrint);
      return ExitCode::done;
   }
   auto const& options = invocation.options;
   if (isMetricsCommand(options)) {
      return metrics(options);
   }
   auto const command = valueOr(parseCommand(options.commandWords), ExitCode::usage);
   if (options.traceLevel) {
      Kel::traceSpecIs(std::to_string(*options.traceLevel));
   }
   if (auto const* clearRequest = std::get_if<ClearCountersRequest>(&command.request)) {
      return clear(options, *clearRequest);
   }
   auto const json = options.json || command.json;
   return show(options, std::get<ShowRequest>(command.request),
               json ? vellum::OutputFormat_t::json : vellum::OutputFormat_t::text);
}

ExitCode reportOutOfMemory() noexcept {
   std::fputs("tpcli: out of memory\n", stderr);
   return ExitCode::failed;
}

// Every message passes through here on its way to the terminal; what it quotes from the command
// line or a file (CLI11's messages included) must not reach the terminal raw. Out of memory, it
// says so without allocating anything more.
ExitCode report(ExitCode code, std::string_view message, std::string_view kind = {}) noexcept {
   try {
      std::string line = "tpcli: ";
      line += kind;
      Strix::appendPrintable(line, message);
      line += '\n';
      std::fwrite(line.data(), 1, line.size(), stderr);
      return code;
   } catch (std::bad_alloc const&) {
      return reportOutOfMemory();
   }
}

}  // namespace

int run(int argc, char const* const* argv) {
   prepareProcess();
   ExitCode code = ExitCode::done;
   try {
      code = runInvocation(std::vector<std::string>(argv + 1, argv + argc));
   } catch (CommandError const& error) {
      code = report(error.code(), error.what());
   } catch (std::bad_alloc const&) {
      code = reportOutOfMemory();
   } catch (vellum::SigIntException const&) {
      // Interrupted before any output, while waiting for a state that comes from a pipe.
      code = ExitCode::interrupted;
   } catch (std::exception const& error) {
      // Kel::AssertionError among them: its text quotes the broken invariant.
      code = report(ExitCode::internalError, error.what(), "internal error: ");
   }
   return static_cast<int>(code);
}

}  // namespace tpcli
