// A rule's or a counter's name is stored once: the status and the counters of a policy carry the
// configuration's copy of each name, whatever order they list the names in. Names that the
// configuration lacks load as their own text. Rules read shortly after one another share a
// protocol's criteria when they are the same, and only then, and an action that carries one small
// value when the value is the same.
#include <gtest/gtest.h>

#include <cstdint>
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

// `"NAME": value` for each name, comma-separated.
std::string members(std::vector<std::string> const& names, std::string const& value) {
   std::string text;
   for (auto const& name : names) {
      text += (text.empty() ? "\"" : ", \"") + name + "\": " + value;
   }
   return text;
}

// The configured rules sort by name (rule-10, rule-100, rule-9a) in another order than by
// sequence (rule-10, rule-9a, rule-100). Every name is longer than a text kept inline, so that
// shared copies show as one address.
std::string stateText(OrderCase const& row) {
   std::string const counter = R"({"instanceId": 1, "packets": 2})";
   return R"({"trafficPolicies": {"policy-long": {"namedCounters": ["counter-a", "counter-b"],
   "rules": {"rule-10": {"sequence": 1}, "rule-9a": {"sequence": 2}, "rule-100": {"sequence": 3}}}},
   "status": {"interfaceInput": {"policies": {")" +
          row.policy + R"(": {"rules": {)" + members(row.rules, R"(["ipv4"])") +
          R"(}, "ruleCounters": {)" + members(row.rules, counter) + R"(}, "namedCounters": {)" +
          members(row.counters, counter) + "}}}}}}";
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

// The statuses of a policy's rules are read by several threads, each taking runs of them; each
// thread catches up with the configuration's order where its next run starts.
TEST(SharedNames, RulesReadInRunsCarryTheConfiguredNames) {
   std::vector<std::string> names;
   std::string rules;
   for (int index = 0; index < 3000; ++index) {
      names.push_back("rule-long-" + std::to_string(index));
      rules += (index ? ", \"" : "\"") + names.back() + R"(": {"sequence": )" +
               std::to_string(index + 1) + "}";
   }
   testing_support::TempStateFiles const files;
   auto const loaded = StateLoader::loadState(files.write(
       "state.json", R"({"trafficPolicies": {"p": {"rules": {)" + rules +
                         R"(}}}, "status": {"cpu": {"policies": {"p": {"rules": {)" +
                         members(names, R"(["ipv4"])") + R"(}, "ruleCounters": {)" +
                         members(names, R"({"instanceId": 1, "packets": 2})") + "}}}}}}"));
   ASSERT_TRUE(loaded) << loaded.reason();
   auto const& configured = (*loaded->config->policyMapConfig().lookup("p"))->currCfg()->classMap();
   auto const& status = **loaded->cpu.status->policyMapStatus().lookup("p");
   for (auto const& name : names) {
      expectShared(&configured, status.classMapStatus(), name, "rule status");
      expectShared(&configured, status.classCounter(), name, "rule counter");
   }
}

// Each rule matches the protocols given; the pairs name a rule and one of its protocols each.
// Criteria are shared within a protocol only; rules that alternate between a protocol whose ports
// change and one without criteria still share the latter.
TEST(SharedProtocolCriteria, SameCriteriaOfRecentRulesAreOneEntity) {
   struct Rule {
      char const* name;
      char const* protocols;
   };
   Rule const rules[] = {
       {"r1", R"({"6": {"ports": [{"destinations": ["80"]}]}})"},
       {"r2", R"({"6": {"ports": [{"destinations": ["80"]}]}})"},
       {"r3", R"({"6": {"ports": [{"destinations": ["443"]}]}})"},
       {"r4", R"({"17": {"ports": [{"destinations": ["443"]}]}})"},
       {"r5", R"({"6": {"ports": [{"destinations": ["443", "80"]}]}})"},
       {"r6", R"({"6": {"ports": [{"destinations": ["1"]}]}, "17": {}})"},
       {"r7", R"({"6": {"ports": [{"destinations": ["2"]}]}, "17": {}})"},
       {"r8", R"({"6": {"ports": [{"destinations": ["3"]}]}, "17": {}})"},
   };
   std::string text = R"({"trafficPolicies": {"p": {"rules": {)";
   int sequence = 0;
   for (auto const& rule : rules) {
      ++sequence;
      text += std::string(sequence > 1 ? ", \"" : "\"") + rule.name + R"(": {"sequence": )" +
              std::to_string(sequence) + R"(, "match": {"ipv4": {"protocols": )" + rule.protocols +
              "}}}";
   }
   text += "}}}}";
   testing_support::TempStateFiles const files;
   auto const loaded = StateLoader::loadState(files.write("state.json", text));
   ASSERT_TRUE(loaded) << loaded.reason();
   auto const& policy = *(*loaded->config->policyMapConfig().lookup("p"))->currCfg();
   auto const protoOf = [&policy](char const* rule, std::uint8_t protocol) {
      auto const& match =
          **(*policy.classMap().lookup(rule))->match().lookup(PolicyMap::ClassMapMatchOption::ipv4);
      return *match.structuredFilter()->proto().lookup({protocol, protocol});
   };
   struct Pair {
      char const* first;
      char const* second;
      std::uint8_t protocol;
      std::uint8_t secondProtocol;
      bool shared;
   } const pairs[] = {{"r1", "r2", 6, 6, true},   {"r2", "r3", 6, 6, false},
                      {"r3", "r4", 6, 17, false}, {"r4", "r5", 17, 6, false},
                      {"r6", "r7", 17, 17, true}, {"r7", "r8", 17, 17, true},
                      {"r6", "r7", 6, 6, false}};
   for (auto const& pair : pairs) {
      auto const first = protoOf(pair.first, pair.protocol);
      auto const second = protoOf(pair.second, pair.secondProtocol);
      EXPECT_EQ(first == second, pair.shared) << pair.first << "/" << int(pair.protocol) << " and "
                                              << pair.second << "/" << int(pair.secondProtocol);
   }
}

// Actions that carry one small value are one entity per value.
TEST(SharedActions, SameValueIsOneEntity) {
   testing_support::TempStateFiles const files;
   auto const loaded = StateLoader::loadState(files.write("state.json", R"({"trafficPolicies":
   {"p": {"rules": {"r1": {"sequence": 1, "actions": {"setDscp": 10, "setTc": 3}},
                    "r2": {"sequence": 2, "actions": {"setDscp": 10, "setTc": 3}},
                    "r3": {"sequence": 3, "actions": {"setDscp": 11, "setTc": 4}}}}}})"));
   ASSERT_TRUE(loaded) << loaded.reason();
   auto const& policy = *(*loaded->config->policyMapConfig().lookup("p"))->currCfg();
   auto const actionOf = [&policy](char const* rule, PolicyMap::ActionType type) {
      return *(*policy.classAction().lookup(rule))->policyAction().lookup(type);
   };
   for (auto const type : {PolicyMap::ActionType::setDscp, PolicyMap::ActionType::setTc}) {
      EXPECT_EQ(actionOf("r1", type), actionOf("r2", type));
      EXPECT_NE(actionOf("r2", type), actionOf("r3", type));
   }
}

}  // namespace
