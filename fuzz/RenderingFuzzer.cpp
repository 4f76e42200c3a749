// Every view of every show command, in text and JSON and in both revisions, on valid states built
// from the fuzz bytes: the loader accepts each state, no view trips an invariant or a sanitizer,
// every JSON document parses, and no text holds a character that a terminal would act on. Each
// input renders the one command that it picks, in all four forms: under the address sanitizer
// every command's megabyte output buffer is a fresh mapping, and all 24 commands per input ran 7
// inputs a second where one runs 53.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "StateLoader/Loader.h"
#include "tpcli/MemoryFile.h"
#include "support/OutputChecks.h"
#include "support/StateBuilder.h"
#include "tpcli/CommandRunner.h"
#include "tpcli/ValueParsers.h"

namespace {

using tpcli::Direction;
using tpcli::PolicyView;

tpcli::FactoryTable const kFactories{
    &TrafficPolicyCli::showTrafficPolicyInterfaceFactory,
    &TrafficPolicyCli::showTrafficPolicyCpuFactory,
    &TrafficPolicyCli::showTrafficPolicyPrefixFieldSetFactory,
    &TrafficPolicyCli::showTrafficPolicyL4PortFieldSetFactory,
    &TrafficPolicyCli::showTrafficPolicyVlanFieldSetFactory,
    &TrafficPolicyCli::trafficPolicyLedgerCounterSnapshotHelperFactory,
    &TrafficPolicyCli::trafficPolicyPylonCounterSnapshotHelperFactory,
};

struct Command {
   std::string label;
   tpcli::ShowRequest request;
};

// A name the state has, or none (every one); a name the state lacks is a listing's own case.
std::string nameOrAll(FuzzedDataProvider& bytes, std::vector<std::string> const& names) {
   auto const index = bytes.ConsumeIntegralInRange<std::size_t>(0, names.size());
   return index < names.size() ? names[index] : std::string();
}

void addPolicyViews(std::vector<Command>& commands, std::string const& policy) {
   constexpr PolicyView kViews[] = {PolicyView::standard, PolicyView::summary, PolicyView::detail,
                                    PolicyView::errors, PolicyView::counters};
   for (auto const view : kViews) {
      auto const viewLabel = " view " + std::to_string(static_cast<int>(view));
      for (auto const direction : {Direction::both, Direction::input, Direction::output}) {
         commands.push_back({"interface policy \"" + policy + "\" direction " +
                                 std::to_string(static_cast<int>(direction)) + viewLabel,
                             tpcli::InterfaceRequest{policy, direction, view}});
      }
      commands.push_back(
          {"cpu policy \"" + policy + "\"" + viewLabel, tpcli::CpuRequest{policy, view}});
   }
}

void addFieldSetListings(std::vector<Command>& commands, fuzz::BuiltState const& state,
                         FuzzedDataProvider& bytes) {
   for (bool const ipv4 : {true, false}) {
      tpcli::PrefixFieldSetRequest request{
          ipv4, nameOrAll(bytes, ipv4 ? state.ipv4Sets : state.ipv6Sets)};
      if (bytes.ConsumeBool()) {
         request.contains = tpcli::parsePrefixOfFamily(fuzz::prefixText(bytes, ipv4), ipv4).value();
         request.exact = bytes.ConsumeBool();
      }
      commands.push_back(
          {std::string(ipv4 ? "ipv4" : "ipv6") + " prefix \"" + request.name + "\"", request});
   }
   tpcli::L4PortFieldSetRequest ports{nameOrAll(bytes, state.portSets)};
   if (bytes.ConsumeBool()) {
      ports.contains = tpcli::parsePortRange(fuzz::rangeText(bytes, 0, 65535)).value();
   }
   commands.push_back({"l4-port \"" + ports.name + "\"", ports});
   tpcli::VlanFieldSetRequest vlans{nameOrAll(bytes, state.vlanSets)};
   if (bytes.ConsumeBool()) {
      vlans.contains = tpcli::parseVlanRange(fuzz::rangeText(bytes, 1, 4094)).value();
   }
   commands.push_back({"vlan \"" + vlans.name + "\"", vlans});
}

std::vector<Command> commandsFor(fuzz::BuiltState const& state, FuzzedDataProvider& bytes) {
   std::vector<Command> commands;
   addPolicyViews(commands, nameOrAll(bytes, state.policies));
   addFieldSetListings(commands, state, bytes);
   return commands;
}

void renderAndCheck(StateLoader::DeviceState const& state, Command const& command) {
   static tpcli::MemoryFile const output;
   for (std::uint32_t const revision : {1u, 2u}) {
      for (auto const format : {vellum::OutputFormat_t::text, vellum::OutputFormat_t::json}) {
         output.write(nullptr, 0);
         auto show = tpcli::makeShowCommand(kFactories, state, command.request);
         tpcli::renderShowCommand(*show, output.fd(), format, revision,
                                  tpcli::perInterfaceCountingOf(state, command.request));
         auto const label = command.label + " revision " + std::to_string(revision);
         if (format == vellum::OutputFormat_t::json) {
            fuzz::checkJson(output.contents(), label + " json");
         } else {
            fuzz::checkText(output.contents(), label + " text");
         }
      }
   }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
   static tpcli::MemoryFile const input;
   FuzzedDataProvider bytes(data, size);
   auto const choice = bytes.ConsumeIntegral<std::uint8_t>();
   auto const built = fuzz::buildState(bytes);
   input.write(built.text);
   auto const loaded = StateLoader::loadState(input.path());
   if (!loaded) {
      std::fprintf(stderr, "a valid state was refused: %s\n%s\n", loaded.reason().c_str(),
                   built.text.c_str());
      std::abort();
   }
   auto const commands = commandsFor(built, bytes);
   renderAndCheck(loaded.value(), commands[choice % commands.size()]);
   return 0;
}
