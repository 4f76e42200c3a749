// A rule's or a counter's name is stored once: the status and the counters of a policy carry the
// configuration's copy of each name, whatever order they list the names in. Names that the
// configuration lacks load as their own text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StateLoader/Loader.h"
#include "support/TempStateFiles.h"

namespace {

struct OrderCase {
   char const* name;
   std::string policy;
   std::vector<std::string> rules;     // in the status and the rule counters
   std::vector<std::string> counters;  // in the named counters
};

// The configured rules sort by name (rule-10, rule-100, rule-9a) in another order than by
// sequence (rule-10, rule-9a, rule-100). Every name is longer than a text kept inline, so that
// shared copies show as one address.
std::string stateText(OrderCase const& row) {
   std::string rules;
   std::string ruleCounters;
   for (auto const& rule : row.rules) {
      rules += (rules.empty() ? "\"" : ", \"") + rule + "\": [\"ipv4\"]";
      ruleCounters +=
          (ruleCounters.empty() ? "\"" : ", \"") + rule + R"(": {"instanceId": 1, "packets": 2})";
   }
   std::string counters;
   for (auto const& counter : row.counters) {
      counters +=
          (counters.empty() ? "\"" : ", \"") + counter + R"(": {"instanceId": 1, "packets": 2})";
   }
   return R"({"trafficPolicies": {"policy-long": {"namedCounters": ["counter-a", "counter-b"],
   "rules": {"rule-10": {"sequence": 1}, "rule-9a": {"sequence": 2}, "rule-100": {"sequence": 3}}}},
   "status": {"interfaceInput": {"policies": {")" +
          row.policy + R"(": {"rules": {)" + rules + R"(}, "ruleCounters": {)" + ruleCounters +
          R"(}, "namedCounters": {)" + counters + "}}}}}}";
}

// The key of the entry whose key is `name`: the copy that the collection holds.
template <typename Collection>
Kel::String const* heldKey(Collection const& collection, std::string const& name) {
   auto const found = collection.findLike(std::string_view(name));
   if (found == collection.end()) {
      return nullptr;
   }
   if constexpr (requires { found->first; }) {
      return &found->first;
   } else {
      return &*found;
   }
}

// The status's copy is the configuration's when the configuration names it, else its own text.
template <typename Configured, typename Status>
void expectShared(Configured const* configured, Status const& status, std::string const& name,
                  std::string const& what) {
   auto const* held = heldKey(status, name);
   ASSERT_NE(held, nullptr) << what << " " << name;
   auto const* original = configured ? heldKey(*configured, name) : nullptr;
   if (original) {
      EXPECT_EQ(held->data(), original->data()) << what << " " << name << " is a copy of its own";
   } else {
      EXPECT_EQ(held->view(), name) << what;
   }
}

TEST(SharedNames, StatusAndCountersCarryTheConfiguredNames) {
   OrderCase const cases[] = {
       {"by sequence",
        "policy-long",
        {"rule-10", "rule-9a", "rule-100"},
        {"counter-a", "counter-b"}},
       {"by name", "policy-long", {"rule-10", "rule-100", "rule-9a"}, {"counter-b", "counter-a"}},
       {"neither", "policy-long", {"rule-9a", "rule-10", "rule-100"}, {"counter-b"}},
       {"some unconfigured",
        "policy-long",
        {"rule-100", "rule-extra", "rule-10", "rule-9a"},
        {"counter-c", "counter-a"}},
       {"policy unconfigured", "policy-other", {"rule-10", "rule-9a"}, {"counter-a"}},
   };
   testing_support::TempStateFiles const files;
   for (auto const& row : cases) {
      SCOPED_TRACE(row.name);
      auto const loaded = StateLoader::loadState(files.write("state.json", stateText(row)));
      ASSERT_TRUE(loaded) << loaded.reason();
      auto const& configs = loaded->config->policyMapConfig();
      auto const& statuses = loaded->interfaceInput.status->policyMapStatus();
      auto const* config = configs.lookup(row.policy);
      auto const* subConfig = config ? (*config)->currCfg().get() : nullptr;
      expectShared(&configs, statuses, row.policy, "policy");
      auto const& status = **statuses.lookup(row.policy);
      for (auto const& rule : row.rules) {
         expectShared(subConfig ? &subConfig->classMap() : nullptr, status.classMapStatus(), rule,
                      "rule status");
         expectShared(subConfig ? &subConfig->classMap() : nullptr, status.classCounter(), rule,
                      "rule counter");
      }
      for (auto const& counter : row.counters) {
         expectShared(subConfig ? &subConfig->namedCounter() : nullptr, status.namedCounter(),
                      counter, "named counter");
      }
   }
}

}  // namespace
