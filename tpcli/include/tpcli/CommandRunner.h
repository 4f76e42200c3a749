// Running a show request against a device state: the request's choices and the state's handles
// become the arguments of the matching factory, and the show object it makes is rendered.
#pragma once

#include <cstdint>

#include "Kel/Ptr.h"
#include "StateLoader/DeviceState.h"
#include "TrafficPolicyCli/ShowCommand.h"
#include "tpcli/Command.h"
#include "tpcli/FactoryTable.h"
#include "vellum/OutputFormat.h"

namespace tpcli {

Kel::Ptr<TrafficPolicyCli::ShowCommand> makeShowCommand(FactoryTable const& factories,
                                                        StateLoader::DeviceState const& state,
                                                        ShowRequest const& request);

// Whether named counters are shown per interface, per direction. The show objects leave this to
// their caller, who knows it from the direction's status; only the interface counters view uses it.
struct PerInterfaceCounting {
   bool input = false;
   bool output = false;
};
PerInterfaceCounting perInterfaceCountingOf(StateLoader::DeviceState const& state,
                                            ShowRequest const& request);

// Renders onto `fd` while holding the activity lock, as every command reading the model does. A
// failure to write becomes CommandError "cannot write output: ..."; an interrupt or a vanished
// reader is handled by the show object itself and returns normally. With per-interface counting
// the records are cached first and marked through their attributes; rendering then caches again
// into the same records, which keep the marks.
void renderShowCommand(TrafficPolicyCli::ShowCommand& command, int fd,
                       vellum::OutputFormat_t format, std::uint32_t revision,
                       PerInterfaceCounting perInterface = {});

// Runs only the command's caching and writes its cached records as JSON onto `fd`.
void writeCachedRecords(TrafficPolicyCli::ShowCommand& command, int fd);

}  // namespace tpcli
