// A command on a loaded state: the snapshots read again, the pager, rendering or clearing, and the
// exit code each failure gives.
#include "tpcli/Session.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <utility>
#include <variant>

#include "StateLoader/Loader.h"
#include "StateLoader/Snapshots.h"
#include "tpcli/CommandRunner.h"
#include "tpcli/CounterClearer.h"
#include "tpcli/Locations.h"
#include "tpcli/Pager.h"
#include "tpcli/StandardOutput.h"
#include "tpcli/ValueParsers.h"
#include "vellum/SigIntException.h"

namespace tpcli {

namespace {

StateLoader::DeviceState loadedState(std::string const& statePath) {
   return valueOr(StateLoader::loadState(statePath), ExitCode::invalidState);
}

std::unique_ptr<Pager> pagerIfWanted(Options const& options) {
   auto const command =
       pagerCommand(!options.noPager, isatty(STDOUT_FILENO) == 1, std::getenv("PAGER"));
   return command ? std::make_unique<Pager>(*command) : nullptr;
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

}  // namespace

Session::Session(Options options)
    : options_(std::move(options)),
      library_(valueOr(ShowLibrary::open(showLibraryPath(options_.libraryPath)), ExitCode::failed)),
      statePath_(options_.statePath.value_or(exampleStatePath())),
      state_(loadedState(statePath_)) {}

// A damaged snapshot file is as bad as a damaged state: shown as no snapshots, cleared counts
// would come back. The stores start empty, since reading adds to what they hold.
void Session::rereadSnapshots() {
   for (auto* direction : {&state_.interfaceInput, &state_.interfaceOutput, &state_.cpu}) {
      direction->counter = Kel::make<TrafficPolicy::Counter>();
   }
   failIf(StateLoader::readSnapshots(StateLoader::snapshotPathOf(statePath_), state_),
          ExitCode::invalidState);
}

Session::Outcome Session::show(ShowRequest const& request, bool json) {
   rereadSnapshots();
   auto const pager = pagerIfWanted(options_);
   auto command = makeShowCommand(library_.factories(), state_, request);
   if (options_.records) {
      writeCachedRecords(*command, STDOUT_FILENO);
   } else {
      renderShowCommand(*command, STDOUT_FILENO,
                        json ? vellum::OutputFormat_t::json : vellum::OutputFormat_t::text,
                        options_.revision, perInterfaceCountingOf(state_, request));
   }
   flushStandardOutput();
   if (pager) {
      pager->finish();
   }
   return {vellum::sigIntNoticed() ? ExitCode::interrupted : ExitCode::done, std::move(command)};
}

// The snapshots are read under the lock, so that what this clear writes back holds the work of
// every clear before it. A clear that the user interrupted writes nothing.
ExitCode Session::clear(ClearCountersRequest const& request) {
   auto const lock = lockedSnapshots(statePath_);
   rereadSnapshots();
   clearCounters(library_.factories(), state_, request);
   if (vellum::sigIntNoticed()) {
      throw CommandError(ExitCode::interrupted, "interrupted; the counter snapshots are unchanged");
   }
   failIf(lock.write(state_), ExitCode::failed);
   return ExitCode::done;
}

Session::Outcome Session::run(ParsedCommand const& command) {
   if (auto const* clearRequest = std::get_if<ClearCountersRequest>(&command.request)) {
      return {clear(*clearRequest), nullptr};
   }
   if (auto const* showRequest = std::get_if<ShowRequest>(&command.request)) {
      return show(*showRequest, options_.json || command.json);
   }
   if (std::get<SessionRequest>(command.request) == SessionRequest::reload) {
      reload();
   }
   return {ExitCode::done, nullptr};
}

void Session::reload() {
   auto reloaded = StateLoader::loadState(statePath_);
   if (!reloaded) {
      throw CommandError(ExitCode::invalidState,
                         reloaded.reason() + "; the state loaded before stays");
   }
   state_ = std::move(reloaded).value();
}

}  // namespace tpcli
