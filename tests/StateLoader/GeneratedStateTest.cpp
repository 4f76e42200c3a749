// The benchmark's scale-state generator: what it writes loads, whole and in the finest pieces alike
// (the schema check reads it with an independent validator), and holds the numbers of policies,
// rules, interfaces and prefixes it was asked for; the state set beside a packet filter's ruleset
// holds its one policy of that many rules.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "PieceLoader.h"
#include "StateLoader/Loader.h"
#include "support/TempStateFiles.h"

namespace {

struct ScaleCase {
   std::uint32_t policies;
   std::uint32_t rules;
   std::uint32_t interfaces;
   std::uint32_t prefixSets;
   std::uint32_t prefixes;
};

std::string generatorCommand(ScaleCase const& scale, std::string const& output) {
   return std::string(GENERATE_STATE) + " --policies " + std::to_string(scale.policies) +
          " --rules " + std::to_string(scale.rules) + " --interfaces " +
          std::to_string(scale.interfaces) + " --prefix-sets " + std::to_string(scale.prefixSets) +
          " --prefixes " + std::to_string(scale.prefixes) + " --output " + output;
}

// What a state of the given scale holds, whether its file was read whole or in the finest pieces.
void expectScale(Kel::Expected<StateLoader::DeviceState> const& loaded, ScaleCase const& row,
                 std::string const& name) {
   ASSERT_TRUE(loaded) << loaded.reason();
   auto const& state = loaded.value();
   ASSERT_EQ(state.config->policyMapConfig().size(), row.policies) << name;
   for (auto const& [policyName, policy] : state.config->policyMapConfig()) {
      EXPECT_EQ(policy->currCfg()->rule().size(), row.rules) << name << " " << policyName.view();
   }
   EXPECT_EQ(state.intfConfigInput->intf().size(), row.interfaces) << name;
   EXPECT_EQ(state.l3IntfStatusDir->intfStatus().size(), row.interfaces) << name;
   ASSERT_EQ(state.fieldSetConfig->fieldSetIpPrefix().size(), row.prefixSets) << name;
   for (auto const& [setName, set] : state.fieldSetConfig->fieldSetIpPrefix()) {
      EXPECT_EQ(set->currCfg()->numPrefixes(), row.prefixes) << name << " " << setName.view();
   }
   EXPECT_EQ(state.interfaceInput.status->policyMapStatus().size(), row.policies) << name;
}

TEST(GeneratedState, LoadsWithTheScaleAskedFor) {
   testing_support::TempStateFiles const files;
   // The last holds more policies than the first window of a parallel walk takes by its size in
   // the file.
   ScaleCase const cases[] = {{1, 1, 1, 1, 1}, {2, 30, 5, 3, 1000}, {200, 40, 5, 3, 10}};
   for (ScaleCase const& row : cases) {
      std::string const name = std::to_string(row.policies) + "x" + std::to_string(row.rules);
      auto const path = (files.folder() / (name + ".json")).string();
      ASSERT_EQ(std::system(generatorCommand(row, path).c_str()), 0) << name;
      for (auto const& limits : {StateLoader::PieceLimits{}, StateLoader::PieceLimits{1, 1}}) {
         expectScale(StateLoader::loadState(path, limits), row, name);
      }
   }
}

// Rule names sort out of their sequence order (rule-10 before rule-2), so the loader's maps fill
// across many chunk splits.
TEST(GeneratedState, PeerRulesLoadAsOnePolicyOnOneInterface) {
   testing_support::TempStateFiles const files;
   constexpr std::uint32_t kRules = 1000;
   auto const path = (files.folder() / "peer.json").string();
   auto const command = std::string(GENERATE_STATE) + " --peer-rules " + std::to_string(kRules) +
                        " --output " + path;
   ASSERT_EQ(std::system(command.c_str()), 0);
   auto const loaded = StateLoader::loadState(path);
   ASSERT_TRUE(loaded) << loaded.reason();
   auto const& state = loaded.value();
   auto const* policy = state.config->policyMapConfig().lookup("filter");
   ASSERT_NE(policy, nullptr);
   EXPECT_EQ((*policy)->currCfg()->classMap().size(), kRules);
   EXPECT_EQ(
       (*state.interfaceInput.status->policyMapStatus().lookup("filter"))->classCounter().size(),
       kRules);
   EXPECT_EQ(state.intfConfigInput->intf().size(), 1u);
}

}  // namespace
