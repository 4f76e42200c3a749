// Where policies are attached: configured, applied and failed interfaces per direction and VRFs
// for the CPU, the installation errors, and which direction's counters land where. Each case is a
// small state file loaded the way tpcli loads it.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "StateLoader/Loader.h"
#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"
#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"
#include "TrafficPolicyCli/Trace.h"
#include "support/CapturedOutput.h"
#include "support/CapturedTrace.h"
#include "support/TempStateFiles.h"

namespace {

using PolicyMap::ClassMapMatchOption;
using StateLoader::DeviceState;
using TrafficPolicyCli::PolicyStateCpu;
using TrafficPolicyCli::PolicyStateInterface;
using Names = std::vector<std::string>;

constexpr auto ipv4 = ClassMapMatchOption::ipv4;
constexpr auto ipv6 = ClassMapMatchOption::ipv6;

std::string textOf(Kel::String const& name) {
   return std::string(name.view());
}
std::string textOf(Quoll::IntfId const& intf) {
   return textOf(intf.stringValue());
}

template <typename Map>
Names keysOf(Map const& map) {
   Names names;
   for (auto const& [name, value] : map) {
      names.push_back(textOf(name));
   }
   return names;
}

// The interfaces or VRFs listed for the option.
template <typename Lists>
Names namesIn(Lists const& lists, ClassMapMatchOption option) {
   auto const* list = lists.lookup(option);
   if (!list) {
      return {};
   }
   if constexpr (requires { (*list)->intfList(); }) {
      return keysOf((*list)->intfList());
   } else {
      return keysOf((*list)->vrfList());
   }
}

class AttachmentCaching : public testing::Test {
 protected:
   void load(std::string_view text) {
      testing_support::parseJson(std::string(text));
      auto loaded = StateLoader::loadState(files_.write("state.json", text));
      ASSERT_TRUE(loaded) << loaded.reason();
      state_ = std::move(loaded).value();
   }

   Kel::Ptr<PolicyStateInterface const> cacheInterface(std::string const& policy) {
      auto const& input = state_.interfaceInput;
      auto const& output = state_.interfaceOutput;
      interfaceShow_ = Kel::make<TrafficPolicyCli::ShowTrafficPolicyInterface>(
          state_.config, input.status, input.counter, Kel::String(), false, false, false, false,
          false, state_.fieldSetConfig, state_.hwStatus, input.counterTable, output.status,
          output.counter, state_.intfConfigInput, state_.intfConfigOutput, state_.intfParamStatus,
          output.counterTable, false, false);
      interfaceShow_->cachePoliciesState();
      return Kel::ptrCast<PolicyStateInterface const>(interfaceShow_->policyState(policy));
   }

   Kel::Ptr<PolicyStateCpu const> cacheCpu(std::string const& policy) {
      auto const& cpu = state_.cpu;
      auto show = Kel::make<TrafficPolicyCli::ShowTrafficPolicyCpu>(
          state_.config, cpu.status, cpu.counter, Kel::String(), false, false, false, false, false,
          state_.fieldSetConfig, state_.hwStatus, cpu.counterTable, state_.vrfConfig,
          state_.allVrfConfig, state_.l3IntfStatusDir);
      show->cachePoliciesState();
      return Kel::ptrCast<PolicyStateCpu const>(show->policyState(policy));
   }

   bool traced(std::string const& line) const { return trace_.traced(line); }

   Kel::Ptr<TrafficPolicyCli::ShowTrafficPolicyInterface> interfaceShow_;

 private:
   testing_support::CapturedTrace trace_{TrafficPolicyCli::traceFacility(), 8};
   testing_support::TempStateFiles files_;
   DeviceState state_;
};

constexpr char kOneRulePolicy[] =
    R"("trafficPolicies": {"p": {"rules": {"r": {"sequence": 10, "match": {"ipv4": {}}}}}})";

std::string stateWith(std::string const& sections) {
   return std::string("{") + kOneRulePolicy + ", " + sections + "}";
}

TEST_F(AttachmentCaching, PolicyConfiguredOnAnInterfaceWithoutStatusHasARecordOnly) {
   load(stateWith(R"("interfaces": {"input": {"Ethernet1": "p"}, "output": {"Ethernet2": "p"}})"));
   auto const record = cacheInterface("p");
   ASSERT_TRUE(record);
   EXPECT_EQ(keysOf(record->configuredIntfInput()), Names{"Ethernet1"});
   EXPECT_EQ(keysOf(record->configuredIntfOutput()), Names{"Ethernet2"});
   EXPECT_TRUE(record->appliedIntfInput().empty());
   EXPECT_TRUE(record->failedIntfOutput().empty());
   EXPECT_EQ(record->ruleCount(), 0u);
}

TEST_F(AttachmentCaching, BothDirectionsFillTheHalvesOfOneRecord) {
   load(stateWith(R"(
      "interfaces": {"input": {"Ethernet1": "p"}, "output": {"Ethernet2": "p"}},
      "status": {
         "interfaceInput": {"policies": {"p": {"rules": {"r": ["ipv4"]},
            "interfaces": {"Ethernet1": {"ipv4": {"state": "programmed"}}}}}},
         "interfaceOutput": {"policies": {"p": {"rules": {"r": ["ipv4"]},
            "interfaces": {"Ethernet2": {"ipv4": {"state": "failed", "error": "no room"}}}}}}})"));
   auto const record = cacheInterface("p");
   ASSERT_TRUE(record);
   EXPECT_EQ(namesIn(record->appliedIntfInput(), ipv4), Names{"Ethernet1"});
   EXPECT_EQ(namesIn(record->failedIntfOutput(), ipv4), Names{"Ethernet2"});
   EXPECT_TRUE(record->appliedIntfOutput().empty());
   EXPECT_TRUE(record->failedIntfInput().empty());
   EXPECT_TRUE(record->policyStatus());
   EXPECT_TRUE(record->policyMapStatusOutput());
   EXPECT_NE(record->policyStatus(), record->policyMapStatusOutput());
   EXPECT_TRUE(record->classMapStatusInput().lookup(0));
   EXPECT_TRUE(record->classMapStatusOutput().lookup(0));
   EXPECT_EQ(keysOf(record->interfaceStatusInput()), Names{"Ethernet1"});
   EXPECT_EQ(keysOf(record->interfaceStatusOutput()), Names{"Ethernet2"});
   EXPECT_TRUE(record->installErrorCollInput().empty());
   auto const errors = record->getInstallErrorList(ipv4, false);
   ASSERT_TRUE(errors);
   EXPECT_EQ(*errors->intfError().lookup("Ethernet2"), "no room");
   EXPECT_FALSE(interfaceShow_->cacheInputPolicy());
   EXPECT_TRUE(interfaceShow_->getCounterStatusHelper(true));
   EXPECT_TRUE(interfaceShow_->getCounterStatusHelper(false));
}

TEST_F(AttachmentCaching, OnlyOutputStatusWritesOnlyTheOutputHalf) {
   load(stateWith(R"("status": {"interfaceOutput": {"policies": {"p": {"rules": {"r": ["ipv4"]},
      "interfaces": {"Ethernet2": {"ipv4": {"state": "programmed"}}}}}}})"));
   auto const record = cacheInterface("p");
   ASSERT_TRUE(record);
   EXPECT_FALSE(record->policyStatus());
   EXPECT_TRUE(record->policyMapStatusOutput());
   EXPECT_FALSE(record->classMapStatusInput().lookup(0));
   EXPECT_TRUE(record->classMapStatusOutput().lookup(0));
   EXPECT_EQ(namesIn(record->appliedIntfOutput(), ipv4), Names{"Ethernet2"});
   EXPECT_TRUE(record->interfaceStatusInput().empty());
   EXPECT_TRUE(
       traced("8 virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::"
              "cacheIntfStatus(const PtrConst&)- isInput: 0"));
}

TEST_F(AttachmentCaching, InterfacesNeitherProgrammedNorFailedAreInNoList) {
   load(stateWith(R"("status": {"interfaceInput": {"policies": {"p": {"rules": {"r": ["ipv4"]},
      "interfaces": {"Ethernet1": {"ipv4": {"state": "pending"}},
                     "Ethernet2": {"ipv4": {"state": "programmed"}}}}}}})"));
   auto const record = cacheInterface("p");
   ASSERT_TRUE(record);
   EXPECT_EQ(namesIn(record->appliedIntfInput(), ipv4), Names{"Ethernet2"});
   EXPECT_TRUE(record->failedIntfInput().empty());
   EXPECT_TRUE(traced("7 Ethernet1 is not processed"));
   EXPECT_TRUE(traced("7 Applied on Ethernet2"));
   // No interface has an ipv6 status at all: no lists and no error records for that option.
   EXPECT_TRUE(namesIn(record->appliedIntfInput(), ipv6).empty());
   EXPECT_TRUE(record->installErrorCollInput().empty());
   EXPECT_TRUE(traced("8 No failures for option: ipv6"));
}

// Counters of each direction come from the status or from the shared-memory table, as the
// hardware publishes them, and end up in that direction's half of the record.
TEST_F(AttachmentCaching, EachDirectionReadsItsOwnCounters) {
   for (bool const sharedMemory : {false, true}) {
      SCOPED_TRACE(sharedMemory ? "shared-memory table" : "status");
      load(stateWith(std::string(R"("hardware": {"sharedMemoryCounters": )") +
                     (sharedMemory ? "true" : "false") + R"(},
         "status": {
            "interfaceInput": {"policies": {"p": {"rules": {"r": ["ipv4"]},
               "ruleCounters": {"r": {"instanceId": 1, "packets": 10}}}}},
            "interfaceOutput": {"policies": {"p": {"rules": {"r": ["ipv4"]},
               "ruleCounters": {"r": {"instanceId": 2, "packets": 20}}}}}})"));
      auto const record = cacheInterface("p");
      ASSERT_TRUE(record);
      auto const* input = record->inputClassCounters().lookup("r");
      auto const* output = record->outputClassCounters().lookup("r");
      ASSERT_TRUE(input && output);
      EXPECT_EQ((*input)->pkts(), 10u);
      EXPECT_EQ((*output)->pkts(), 20u);
   }
}

// Every rule that either direction's status processed is shown once, in sequence order, as one
// whole: its own name with its own match, taken from the later pass that processed it.
TEST_F(AttachmentCaching, DirectionsListingDifferentRulesShowEachRuleWhole) {
   struct Row {
      char const* input;
      char const* output;
      Names shown;
   } const rows[] = {
       {R"({"r2": ["ipv4"]})", R"({"r1": ["ipv4"], "r2": ["ipv4"]})", {"r1 ipv4 1", "r2 ipv4 2"}},
       {R"({"r1": ["ipv4"], "r2": ["ipv4"]})", R"({"r2": ["ipv4"]})", {"r1 ipv4 1", "r2 ipv4 2"}},
       {R"({"r1": ["ipv4"], "r3": ["ipv4"]})",
        R"({"r2": ["ipv4"], "r3": []})",
        {"r1 ipv4 1", "r2 ipv4 2", "r3 ipv4 3"}},
       {R"({"r3": ["ipv4"]})", "{}", {"r3 ipv4 3"}},
       {R"({"r1": ["ipv4"]})", R"({"r1": ["ipv6"]})", {"r1 ipv6"}},
   };
   for (auto const& row : rows) {
      SCOPED_TRACE(std::string(row.input) + " then " + row.output);
      load(std::string(R"({"trafficPolicies": {"p": {"rules": {
            "r1": {"sequence": 10, "match": {"ipv4": {"ttls": ["1"]}}},
            "r2": {"sequence": 20, "match": {"ipv4": {"ttls": ["2"]}}},
            "r3": {"sequence": 30, "match": {"ipv4": {"ttls": ["3"]}}}}}},
         "status": {"interfaceInput": {"policies": {"p": {"rules": )") +
           row.input + R"(}}}, "interfaceOutput": {"policies": {"p": {"rules": )" + row.output +
           "}}}}}");
      auto const record = cacheInterface("p");
      ASSERT_TRUE(record);
      Names shown;
      for (auto const& [index, match] : record->classMapConfig()) {
         std::ostringstream rule;
         rule << record->ruleName(index).view() << " " << match->option();
         if (auto const& filter = match->structuredFilter()) {
            rule << " " << filter->ttl().begin()->low;
         }
         shown.push_back(rule.str());
      }
      EXPECT_EQ(shown, row.shown);
   }
}

constexpr char kCpuAttachments[] = R"(
   "interfaces": {"vrf": {"Ethernet1": "blue", "Ethernet2": "blue", "Ethernet3": "red"}},
   "vrfs": {"names": ["blue", "red", "green"],
            "cpuPolicy": {"blue": "p", "red": "p", "green": "p"}},
   "status": {"cpu": {"policies": {"p": {"rules": {"r": ["ipv4"]}, "interfaces": {
      "Ethernet1": {"ipv4": {"state": "programmed"}, "ipv6": {"state": "programmed"}},
      "Ethernet2": {"ipv4": {"state": "failed", "error": "no room"},
                    "ipv6": {"state": "pending"}},
      "Ethernet3": {"ipv4": {"state": "programmed"}, "ipv6": {"state": "programmed"}},
      "Ethernet9": {"ipv4": {"state": "failed", "error": "not routed"}}}}}}})";

TEST_F(AttachmentCaching, CpuStatusIsMergedPerVrf) {
   load(stateWith(kCpuAttachments));
   auto const record = cacheCpu("p");
   ASSERT_TRUE(record);
   EXPECT_EQ(keysOf(record->configuredVrf()), (Names{"blue", "green", "red"}));
   // Ethernet9 has no layer-3 status, so it belongs to no VRF and is left out.
   EXPECT_EQ(keysOf(record->vrfIntfStatus()), (Names{"blue", "red"}));
   auto const* blue = record->vrfIntfStatus("blue");
   ASSERT_TRUE(blue);
   EXPECT_EQ(keysOf(blue->intfStatus()), (Names{"Ethernet1", "Ethernet2"}));
   EXPECT_EQ(blue->intfCount(), 2u);

   EXPECT_EQ(namesIn(record->appliedVrf(), ipv4), Names{"red"});
   EXPECT_EQ(namesIn(record->failedVrf(), ipv4), Names{"blue"});
   // Programmed plus pending is neither applied nor failed.
   EXPECT_EQ(namesIn(record->appliedVrf(), ipv6), Names{"red"});
   EXPECT_TRUE(namesIn(record->failedVrf(), ipv6).empty());
   EXPECT_TRUE(traced("7 blue is not processed"));

   // The error comes from the first interface of the VRF that is not programmed.
   auto const* errors = record->installErrorColl().lookup(ipv4);
   ASSERT_TRUE(errors);
   EXPECT_EQ(keysOf((*errors)->vrfError()), Names{"blue"});
   EXPECT_EQ(*(*errors)->vrfError().lookup("blue"), "no room");
   EXPECT_FALSE(record->installErrorColl().lookup(ipv6));
}

TEST_F(AttachmentCaching, CpuWithoutLayer3StatusHasNoVrfLists) {
   load(stateWith(R"("vrfs": {"names": ["blue"], "cpuPolicy": {"blue": "p"}},
      "status": {"cpu": {"policies": {"p": {"rules": {"r": ["ipv4"]}, "interfaces": {
         "Ethernet1": {"ipv4": {"state": "programmed"}}}}}}})"));
   auto const record = cacheCpu("p");
   ASSERT_TRUE(record);
   EXPECT_EQ(keysOf(record->configuredVrf()), Names{"blue"});
   EXPECT_TRUE(record->vrfIntfStatus().empty());
   EXPECT_TRUE(record->appliedVrf().empty());
   EXPECT_TRUE(record->failedVrf().empty());
   EXPECT_EQ(record->ruleCount(), 1u);
}

}  // namespace
