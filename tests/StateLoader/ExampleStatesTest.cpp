// The example states: every one loads (and is JSON to an independent parser too), and the lab
// device keeps the features the front end's tests and demos rely on it for.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "StateLoader/Loader.h"
#include "support/TempStateFiles.h"
#include "support/CapturedOutput.h"

namespace {

using PolicyMap::ActionType;
using StateLoader::DeviceState;

std::filesystem::path const kExamples = EXAMPLES_DIR;

DeviceState loadLab() {
   auto loaded = StateLoader::loadState((kExamples / "lab.json").string());
   if (!loaded) {
      throw std::runtime_error(loaded.reason());
   }
   return std::move(loaded).value();
}

TEST(ExampleStates, EveryExampleLoads) {
   std::size_t examples = 0;
   for (auto const& entry : std::filesystem::directory_iterator(kExamples)) {
      if (entry.path().extension() != ".json") {
         continue;
      }
      ++examples;
      testing_support::parseJson(testing_support::readFile(entry.path()));
      auto const loaded = StateLoader::loadState(entry.path().string());
      EXPECT_TRUE(loaded) << (loaded ? "" : loaded.reason());
   }
   EXPECT_GE(examples, 1u);
}

std::set<ActionType> actionTypes(DeviceState const& state) {
   std::set<ActionType> types;
   for (auto const& [name, policy] : state.config->policyMapConfig()) {
      for (auto const& [rule, actions] : policy->currCfg()->classAction()) {
         for (auto const& [type, action] : actions->policyAction()) {
            types.insert(type);
         }
      }
   }
   return types;
}

TEST(ExampleStates, LabUsesEveryActionKind) {
   std::set<ActionType> const every = {ActionType::drop,        ActionType::setDscp,
                                       ActionType::setAggGroup, ActionType::stripHeaderBytes,
                                       ActionType::setTc,       ActionType::police,
                                       ActionType::count,       ActionType::log,
                                       ActionType::gotoMatch,   ActionType::setNexthopGroup};
   EXPECT_EQ(actionTypes(loadLab()), every);
}

TEST(ExampleStates, LabAppliesOnePolicyBothWaysOnFiveInterfacesAndOneOnCpuVrfs) {
   auto const lab = loadLab();
   std::set<std::string> inputPolicies;
   std::size_t edgeInInterfaces = 0;
   for (auto const& [intf, policy] : lab.intfConfigInput->intf()) {
      inputPolicies.insert(policy.stringValue());
      edgeInInterfaces += policy == "edge-in" ? 1 : 0;
   }
   std::set<std::string> outputPolicies;
   for (auto const& [intf, policy] : lab.intfConfigOutput->intf()) {
      outputPolicies.insert(policy.stringValue());
   }
   std::set<std::string> all = inputPolicies;
   all.insert(outputPolicies.begin(), outputPolicies.end());
   EXPECT_GE(all.size(), 3u);
   EXPECT_GE(edgeInInterfaces, 5u);
   EXPECT_TRUE(outputPolicies.contains("edge-in"));
   std::size_t cpuProtectVrfs = 0;
   for (auto const& [vrf, policy] : lab.vrfConfig->vrf()) {
      cpuProtectVrfs += policy == "cpu-protect" ? 1 : 0;
   }
   EXPECT_EQ(cpuProtectVrfs, 3u);
   EXPECT_EQ(*lab.vrfConfig->vrf().lookup("all"), "cpu-protect");
}

TEST(ExampleStates, LabHasAStatusOnlyPolicyAndInstallationFailures) {
   auto const lab = loadLab();
   EXPECT_TRUE(lab.interfaceInput.status->policyMapStatus().contains("legacy-acl"));
   EXPECT_FALSE(lab.config->policyMapConfig().contains("legacy-acl"));
   std::size_t failures = 0;
   for (auto const* direction : {&lab.interfaceInput, &lab.interfaceOutput, &lab.cpu}) {
      for (auto const& [name, policy] : direction->status->policyMapStatus()) {
         for (auto const& [intf, status] : policy->intfStatus()) {
            for (auto const& [option, installed] : status->installed()) {
               failures +=
                   installed.state == PolicyMap::installFailed && !installed.errorText.empty();
            }
         }
      }
   }
   EXPECT_GE(failures, 4u);
}

}  // namespace
