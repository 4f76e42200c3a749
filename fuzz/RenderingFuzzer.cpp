// Every view of every show command, in text and JSON and in both revisions, on valid states built
// from the fuzz bytes: the loader accepts each state, no view trips an invariant or a sanitizer,
// every JSON document parses, and no text holds a character that a terminal would act on. Each
// input renders the one command that it picks, in all four forms: rendering all 24 commands for
// every input made each run several times longer.
#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "StateLoader/Loader.h"
#include "support/OutputChecks.h"
#include "support/StateBuilder.h"
#include "tpcli/CommandRunner.h"
#include "tpcli/MemoryFile.h"
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

constexpr PolicyView kViews[] = {PolicyView::standard, PolicyView::summary, PolicyView::detail,
                                 PolicyView::errors, PolicyView::counters};
constexpr Direction kDirections[] = {Direction::both, Direction::input, Direction::output};
// Each view on interfaces in every direction and on the CPU, then the four field-set listings.
constexpr std::size_t kPerView = std::size(kDirections) + 1;
constexpr std::size_t kPolicyCommands = std::size(kViews) * kPerView;
constexpr std::size_t kCommands = kPolicyCommands + 4;

Command policyCommand(std::size_t index, std::string const& policy) {
   auto const view = kViews[index / kPerView];
   auto const viewLabel = " view " + std::to_string(static_cast<int>(view));
   if (index % kPerView == std::size(kDirections)) {
      return {"cpu policy \"" + policy + "\"" + viewLabel, tpcli::CpuRequest{policy, view}};
   }
   auto const direction = kDirections[index % kPerView];
   return {"interface policy \"" + policy + "\" direction " +
               std::to_string(static_cast<int>(direction)) + viewLabel,
           tpcli::InterfaceRequest{policy, direction, view}};
}

std::array<Command, 4> fieldSetListings(fuzz::BuiltState const& state, FuzzedDataProvider& bytes) {
   std::array<Command, 4> listings;
   for (bool const ipv4 : {true, false}) {
      tpcli::PrefixFieldSetRequest request{
          ipv4, nameOrAll(bytes, ipv4 ? state.ipv4Sets : state.ipv6Sets)};
      if (bytes.ConsumeBool()) {
         request.contains = tpcli::parsePrefixOfFamily(fuzz::prefixText(bytes, ipv4), ipv4).value();
         request.exact = bytes.ConsumeBool();
      }
      listings[ipv4 ? 0 : 1] = {
          std::string(ipv4 ? "ipv4" : "ipv6") + " prefix \"" + request.name + "\"", request};
   }
   tpcli::L4PortFieldSetRequest ports{nameOrAll(bytes, state.portSets)};
   if (bytes.ConsumeBool()) {
      ports.contains = tpcli::parsePortRange(fuzz::rangeText(bytes, 0, 65535)).value();
   }
   listings[2] = {"l4-port \"" + ports.name + "\"", ports};
   tpcli::VlanFieldSetRequest vlans{nameOrAll(bytes, state.vlanSets)};
   if (bytes.ConsumeBool()) {
      vlans.contains = tpcli::parseVlanRange(fuzz::rangeText(bytes, 1, 4094)).value();
   }
   listings[3] = {"vlan \"" + vlans.name + "\"", vlans};
   return listings;
}

// The command `choice` picks; the bytes for every command are read all the same, so that an input
// picks the command it always has.
Command commandFor(std::uint8_t choice, fuzz::BuiltState const& state, FuzzedDataProvider& bytes) {
   auto const index = choice % kCommands;
   auto const policy = nameOrAll(bytes, state.policies);
   auto listings = fieldSetListings(state, bytes);
   if (index < kPolicyCommands) {
      return policyCommand(index, policy);
   }
   return std::move(listings[index - kPolicyCommands]);
}

// Renders go onto one memory file that is only rewound in between, never emptied: emptying it
// freed its pages for the next render to fault them in again. What a render wrote is what lies
// before the offset it left, read back into a buffer that is kept as well.
class RenderedOutput {
 public:
   int rewound() const {
      if (::lseek(file_.fd(), 0, SEEK_SET) != 0) {
         fail("rewinding");
      }
      return file_.fd();
   }

   std::string const& written() {
      auto const size = ::lseek(file_.fd(), 0, SEEK_CUR);
      if (size < 0) {
         fail("measuring");
      }
      text_.resize(static_cast<std::size_t>(size));
      if (::pread(file_.fd(), text_.data(), text_.size(), 0) != size) {
         fail("reading");
      }
      return text_;
   }

 private:
   [[noreturn]] static void fail(char const* what) {
      std::perror(what);
      std::abort();
   }

   tpcli::MemoryFile file_;
   std::string text_;
};

void renderAndCheck(StateLoader::DeviceState const& state, Command const& command) {
   static RenderedOutput output;
   for (std::uint32_t const revision : {1u, 2u}) {
      for (auto const format : {vellum::OutputFormat_t::text, vellum::OutputFormat_t::json}) {
         auto show = tpcli::makeShowCommand(kFactories, state, command.request);
         tpcli::renderShowCommand(*show, output.rewound(), format, revision,
                                  tpcli::perInterfaceCountingOf(state, command.request));
         auto const label = command.label + " revision " + std::to_string(revision);
         if (format == vellum::OutputFormat_t::json) {
            fuzz::checkJson(output.written(), label + " json");
         } else {
            fuzz::checkText(output.written(), label + " text");
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
   renderAndCheck(loaded.value(), commandFor(choice, built, bytes));
   return 0;
}
