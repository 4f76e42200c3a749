// Whatever the library exports may be called by any command layer: every factory, called on the
// lab device, makes an object that either does its work or stops on a named assertion, never one
// that crashes.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "Kel/Assert.h"
#include "StateLoader/Loader.h"
#include "TrafficPolicyCli/Factories.h"
#include "support/CapturedOutput.h"

namespace {

using StateLoader::DeviceState;
using TrafficPolicyCli::ShowCommand;

DeviceState loadLab() {
   auto loaded =
       StateLoader::loadState((std::filesystem::path(EXAMPLES_DIR) / "lab.json").string());
   if (!loaded) {
      throw std::runtime_error(loaded.reason());
   }
   return std::move(loaded).value();
}

class ExportedFactories : public testing::Test {
 protected:
   void SetUp() override { previous_ = Kel::assertHandlerIs(&Kel::throwingAssertHandler); }
   void TearDown() override { Kel::assertHandlerIs(previous_); }

   DeviceState const lab_ = loadLab();

 private:
   Kel::AssertHandler previous_ = nullptr;
};

// The policy show objects' views, by their flags: summary, errors, detail, counters.
struct Flags {
   bool summary, errors, detail, counters;
};
constexpr Flags kViews[] = {{false, false, false, false},
                            {true, false, false, false},
                            {false, true, false, false},
                            {false, false, true, false},
                            {false, false, false, true}};

struct FactoryCall {
   char const* factory;
   std::function<Kel::Ptr<ShowCommand>(DeviceState const&, Flags)> make;
};

FactoryCall const kShowFactories[] = {
    {"showTrafficPolicyInterfaceFactory",
     [](DeviceState const& s, Flags f) {
        return TrafficPolicyCli::showTrafficPolicyInterfaceFactory(
            s.config, s.interfaceInput.status, s.interfaceInput.counter, "", f.summary, f.errors,
            f.detail, f.counters, false, s.fieldSetConfig, s.hwStatus,
            s.interfaceInput.counterTable, s.interfaceOutput.status, s.interfaceOutput.counter,
            s.intfConfigInput, s.intfConfigOutput, s.intfParamStatus,
            s.interfaceOutput.counterTable, false, false);
     }},
    {"showTrafficPolicyCpuFactory",
     [](DeviceState const& s, Flags f) {
        return TrafficPolicyCli::showTrafficPolicyCpuFactory(
            s.config, s.cpu.status, s.cpu.counter, "", f.summary, f.errors, f.detail, f.counters,
            false, s.fieldSetConfig, s.hwStatus, s.cpu.counterTable, s.vrfConfig, s.allVrfConfig,
            s.l3IntfStatusDir);
     }},
    {"showTrafficPolicyPrefixFieldSetFactory",
     [](DeviceState const& s, Flags) {
        return TrafficPolicyCli::showTrafficPolicyPrefixFieldSetFactory(
            s.fieldSetConfig, "", true, false, Quoll::IpGenPrefix(), false);
     }},
    {"showTrafficPolicyL4PortFieldSetFactory",
     [](DeviceState const& s, Flags) {
        return TrafficPolicyCli::showTrafficPolicyL4PortFieldSetFactory(
            s.fieldSetConfig, "", false, Classification::PortRange());
     }},
    {"showTrafficPolicyVlanFieldSetFactory",
     [](DeviceState const& s, Flags) {
        return TrafficPolicyCli::showTrafficPolicyVlanFieldSetFactory(s.fieldSetConfig, "", false,
                                                                      Classification::VlanRange());
     }},
};

std::string renderTo(ShowCommand& command, vellum::OutputFormat_t format) {
   testing_support::MemoryFile file;
   command.render(static_cast<std::uint32_t>(file.fd()), static_cast<std::uint32_t>(format), 2);
   return file.contents();
}

TEST_F(ExportedFactories, ShowObjectsRenderTheLabInBothFormats) {
   for (auto const& call : kShowFactories) {
      for (auto const flags : kViews) {
         SCOPED_TRACE(call.factory);
         EXPECT_FALSE(renderTo(*call.make(lab_, flags), vellum::OutputFormat_t::text).empty());
         testing_support::parseJson(
             renderTo(*call.make(lab_, flags), vellum::OutputFormat_t::json));
      }
   }
}

TEST_F(ExportedFactories, BaseObjectStopsOnTheNamedAssertionOncePoliciesAreCached) {
   auto const& s = lab_;
   auto const base = TrafficPolicyCli::showTrafficPolicyBaseFactory(
       s.config, s.interfaceInput.status, s.interfaceInput.counter, "", false, false, false, false,
       false, s.fieldSetConfig, s.hwStatus, s.interfaceInput.counterTable);
   try {
      renderTo(*base, vellum::OutputFormat_t::text);
      FAIL() << "the base object rendered a state that holds policies";
   } catch (Kel::AssertionError const& error) {
      EXPECT_EQ(error.expression(),
                "record && \"only the interface and CPU show objects make policy records\"");
   }
}

TEST_F(ExportedFactories, SnapshotHelpersClearEveryDirection) {
   for (auto const* direction : {&lab_.interfaceInput, &lab_.interfaceOutput, &lab_.cpu}) {
      TrafficPolicyCli::trafficPolicyLedgerCounterSnapshotHelperFactory(direction->status,
                                                                        direction->counter)
          ->clearCounter();
      TrafficPolicyCli::trafficPolicyPylonCounterSnapshotHelperFactory(direction->counterTable,
                                                                       direction->counter, true)
          ->clearCounter();
   }
}

}  // namespace
