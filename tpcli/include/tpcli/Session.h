// The show library and a device state loaded once, answering commands until it is dropped: one
// command for the one-shot form, many for the shell. Both run a command the same way, so the
// shell's output of a command is the one-shot output byte for byte.
#pragma once

#include <string>

#include "Kel/Ptr.h"
#include "StateLoader/DeviceState.h"
#include "TrafficPolicyCli/ShowCommand.h"
#include "tpcli/Command.h"
#include "tpcli/ExitCode.h"
#include "tpcli/Options.h"
#include "tpcli/ShowLibrary.h"

namespace tpcli {

class Session {
 public:
   // Opens the show library and loads the state: CommandError (failed, invalid state) otherwise.
   explicit Session(Options options);

   // A show renders onto standard output and returns its show object, whose records the caller
   // may keep or drop; a clear returns none. The counter snapshots beside the state are read
   // again for every command, so that a show sees every clear made since, here or elsewhere.
   // CommandError when the command cannot act.
   struct Outcome {
      ExitCode code;
      Kel::Ptr<TrafficPolicyCli::ShowCommand> shown;
   };
   Outcome run(ParsedCommand const& command);

   // Reads the state file again. A file that is refused leaves the loaded state as it was, and
   // CommandError says why.
   void reload();

   std::string const& statePath() const noexcept { return statePath_; }
   StateLoader::DeviceState const& state() const noexcept { return state_; }

 private:
   Outcome show(ShowRequest const& request, bool json);
   ExitCode clear(ClearCountersRequest const& request);
   // Empties the snapshot stores and fills them from the snapshot file.
   void rereadSnapshots();

   Options options_;
   // Declared before the state and the show objects, so that it outlives the code they hold.
   ShowLibrary library_;
   std::string statePath_;
   StateLoader::DeviceState state_;
};

}  // namespace tpcli
