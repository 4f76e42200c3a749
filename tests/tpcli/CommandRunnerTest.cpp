// From request to show object: each command reaches its factory with the flags, filters, state
// handles, format and revision in the right places (the fake library writes back what it got, as
// JSON that nlohmann parses); each clear reaches the
// snapshot helpers of its directions and of the state's counter back end. Also: the libraries
// that can and cannot serve as the show library.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/CapturedOutput.h"
#include "support/Words.h"
#include "tpcli/CommandGrammar.h"
#include "tpcli/CommandRunner.h"
#include "tpcli/CounterClearer.h"
#include "tpcli/ExitCode.h"
#include "tpcli/ShowLibrary.h"

namespace tpcli {
namespace {

using nlohmann::json;

std::uint64_t address(auto const& handle) {
   return reinterpret_cast<std::uintptr_t>(handle.get());
}

StateLoader::DirectionState distinctDirection() {
   return {Kel::make<TrafficPolicy::Status>(), Kel::make<TrafficPolicy::Counter>(),
           Kel::make<PolicyMap::Counters::PolicyMapTypeCounters>()};
}

class CommandRunnerTest : public ::testing::Test {
 protected:
   CommandRunnerTest() {
      // Every handle a different entity, so that a handle in the wrong argument shows.
      state_.config = Kel::make<TrafficPolicy::TrafficPolicyConfig>();
      state_.fieldSetConfig = Kel::make<Classification::FieldSetConfig>();
      state_.intfConfigInput = Kel::make<PolicyMap::IntfConfig>();
      state_.intfConfigOutput = Kel::make<PolicyMap::IntfConfig>();
      state_.l3IntfStatusDir = Kel::make<L3::Intf::StatusDir>();
      state_.vrfConfig = Kel::make<PolicyMap::VrfConfig>();
      state_.allVrfConfig = Kel::make<Ip::AllVrfConfig>();
      state_.hwStatus = Kel::make<TrafficPolicy::HwStatus>();
      state_.intfParamStatus = Kel::make<TrafficPolicy::TrafficPolicyIntfParamStatus>();
      state_.interfaceInput = distinctDirection();
      state_.interfaceOutput = distinctDirection();
      state_.cpu = distinctDirection();
   }

   Kel::Ptr<TrafficPolicyCli::ShowCommand> showCommand(std::string const& line) const {
      auto const parsed = parseCommand(tpcli_test::wordsOf(line));
      EXPECT_TRUE(parsed.ok()) << line << ": " << parsed.reason();
      return makeShowCommand(library_.factories(), state_,
                             std::get<ShowRequest>(parsed.value().request));
   }

   void expectArguments(std::string const& line, json const& expected,
                        vellum::OutputFormat_t format = vellum::OutputFormat_t::json,
                        std::uint32_t revision = 2) const {
      testing_support::MemoryFile output;
      renderShowCommand(*showCommand(line), output.fd(), format, revision);
      auto const actual = testing_support::parseJson(output.contents());
      for (auto const& [name, value] : expected.items()) {
         EXPECT_EQ(actual.value(name, json()), value) << line << ": argument " << name;
      }
   }

   ShowLibrary library_ = ShowLibrary::open(FAKE_SHOW_LIBRARY).value();
   StateLoader::DeviceState state_;
};

TEST_F(CommandRunnerTest, KeywordsAndValuesBecomeFlagsAndFilters) {
   struct Row {
      std::string line;
      json expected;
   };
   auto const flags = [](bool summary, bool errors, bool detail, bool counters) {
      return json{{"summary", summary},
                  {"errors", errors},
                  {"detail", detail},
                  {"counters", counters},
                  {"fifthFlag", false}};
   };
   Row const rows[] = {
       {"show traffic-policy interface", flags(false, false, false, false)},
       {"show traffic-policy interface summary", flags(true, false, false, false)},
       {"show traffic-policy interface errors", flags(false, true, false, false)},
       {"show traffic-policy interface detail", flags(false, false, true, false)},
       {"show traffic-policy cpu counters", flags(false, false, false, true)},
       {"show traffic-policy interface", {{"filterInput", false}, {"filterOutput", false}}},
       {"show traffic-policy interface input", {{"filterInput", true}, {"filterOutput", false}}},
       {"show traffic-policy interface output", {{"filterInput", false}, {"filterOutput", true}}},
       {"show traffic-policy policy edge-in interface", {{"name", "edge-in"}}},
       {"show traffic-policy policy cp cpu", {{"factory", "cpu"}, {"name", "cp"}}},
       {"show traffic-policy field-set ipv4 prefix",
        {{"name", ""}, {"ipv4", true}, {"filter", false}, {"exact", false}}},
       {"show traffic-policy field-set ipv6 prefix lab contains 2001:db8::/32 exact",
        {{"name", "lab"},
         {"ipv4", false},
         {"filter", true},
         {"prefix", "2001:db8::/32"},
         {"exact", true}}},
       {"show traffic-policy field-set ipv4 prefix contains 10.0.0.1",
        {{"filter", true}, {"prefix", "10.0.0.1/32"}, {"exact", false}}},
       {"show traffic-policy field-set l4-port web contains 1000-2000",
        {{"factory", "l4PortFieldSet"},
         {"name", "web"},
         {"filter", true},
         {"low", 1000},
         {"high", 2000}}},
       {"show traffic-policy field-set l4-port",
        {{"factory", "l4PortFieldSet"}, {"filter", false}}},
       {"show traffic-policy field-set vlan contains 100",
        {{"factory", "vlanFieldSet"}, {"filter", true}, {"low", 100}, {"high", 100}}},
   };
   for (auto const& row : rows) {
      expectArguments(row.line, row.expected);
   }
   expectArguments("show traffic-policy cpu", {{"format", 1}, {"revision", 1}},
                   vellum::OutputFormat_t::text, 1);
}

TEST_F(CommandRunnerTest, EachHandleGoesToItsArgument) {
   auto const& s = state_;
   auto const handles = [&](StateLoader::DirectionState const& direction) {
      return json{{"config", address(s.config)},
                  {"status", address(direction.status)},
                  {"counter", address(direction.counter)},
                  {"fieldSetConfig", address(s.fieldSetConfig)},
                  {"hwStatus", address(s.hwStatus)},
                  {"counterTable", address(direction.counterTable)}};
   };
   auto interface = handles(s.interfaceInput);
   interface.update(json{{"statusOutput", address(s.interfaceOutput.status)},
                         {"counterOutput", address(s.interfaceOutput.counter)},
                         {"intfConfigInput", address(s.intfConfigInput)},
                         {"intfConfigOutput", address(s.intfConfigOutput)},
                         {"intfParamStatus", address(s.intfParamStatus)},
                         {"counterStatusOutput", address(s.interfaceOutput.counterTable)}});
   auto cpuHandles = handles(s.cpu);
   cpuHandles.update(json{{"vrfConfig", address(s.vrfConfig)},
                          {"allVrfConfig", address(s.allVrfConfig)},
                          {"l3IntfStatusDir", address(s.l3IntfStatusDir)}});
   expectArguments("show traffic-policy interface", interface);
   expectArguments("show traffic-policy cpu", cpuHandles);
   for (auto const* type : {"ipv6 prefix", "l4-port", "vlan"}) {
      expectArguments(std::string("show traffic-policy field-set ") + type,
                      {{"fieldSetConfig", address(s.fieldSetConfig)}});
   }
}

TEST_F(CommandRunnerTest, AClearReachesTheHelpersOfItsDirectionsAndBackEnd) {
   struct Row {
      std::string line;
      bool sharedMemory;
      std::vector<StateLoader::DirectionState StateLoader::DeviceState::*> cleared;
   };
   using StateLoader::DeviceState;
   auto const all = {&DeviceState::interfaceInput, &DeviceState::interfaceOutput,
                     &DeviceState::cpu};
   Row const rows[] = {
       {"clear traffic-policy counters", false, all},
       {"clear traffic-policy counters", true, all},
       {"clear traffic-policy counters interface",
        false,
        {&DeviceState::interfaceInput, &DeviceState::interfaceOutput}},
       {"clear traffic-policy counters interface input", true, {&DeviceState::interfaceInput}},
       {"clear traffic-policy counters interface output", false, {&DeviceState::interfaceOutput}},
       {"clear traffic-policy counters cpu", true, {&DeviceState::cpu}},
   };
   for (auto const& row : rows) {
      state_.hwStatus->sharedMemoryCountersIs(row.sharedMemory);
      for (auto const direction : all) {
         (state_.*direction).counter = Kel::make<TrafficPolicy::Counter>();
      }
      state_.cpu.status->perInterfaceCountersIs(true);
      auto const parsed = parseCommand(tpcli_test::wordsOf(row.line));
      clearCounters(library_.factories(), state_,
                    std::get<ClearCountersRequest>(parsed.value().request));
      for (auto const direction : all) {
         auto const& [status, counter, table] = state_.*direction;
         bool const cleared =
             std::find(row.cleared.begin(), row.cleared.end(), direction) != row.cleared.end();
         auto const* mark =
             row.sharedMemory ? counter->snapshot({"fake-pylon", std::to_string(address(table))})
                              : counter->snapshot({"fake-ledger", std::to_string(address(status))});
         EXPECT_EQ(counter->snapshot().size(), cleared ? 1U : 0U) << row.line;
         EXPECT_EQ(mark != nullptr, cleared) << row.line;
         if (mark && row.sharedMemory) {
            EXPECT_EQ(mark->instanceId, status->perInterfaceCounters() ? 1U : 0U) << row.line;
         }
      }
   }
}

TEST(ShowLibraryTest, TakesOnlyALibraryWithEveryFactory) {
   struct Row {
      std::string path;
      std::string failureStart;  // empty: loads
   };
   Row const rows[] = {
       {SHOW_LIBRARY, ""},
       {"/nonexistent/libShow.so",
        "cannot load the show library \"/nonexistent/libShow.so\": /nonexistent/libShow.so: "
        "cannot open shared object file: No such file or directory"},
       {PLATFORM_LIBRARY, "the show library \"" PLATFORM_LIBRARY
                          "\" has no factory showTrafficPolicyInterfaceFactory: "},
   };
   for (auto const& row : rows) {
      auto const library = ShowLibrary::open(row.path);
      ASSERT_EQ(library.ok(), row.failureStart.empty()) << row.path;
      EXPECT_TRUE(library.ok() || library.reason().starts_with(row.failureStart))
          << row.path << ": " << library.reason();
   }
}

}  // namespace
}  // namespace tpcli
