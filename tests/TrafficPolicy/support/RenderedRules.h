// Test support for the rule renderers: a state text in, the rules of policy "p" out, rendered in
// detail by a real CPU show object after its caching phase, in text and in JSON (parsed by
// nlohmann).
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"

namespace rendering_test {

struct RenderedRules {
   std::string text;
   // The JSON list of rule objects.
   nlohmann::json rules;
};

// A show object after its caching phase, and its record of policy "p".
struct CachedPolicy {
   Kel::Ptr<TrafficPolicyCli::ShowTrafficPolicyBase> show;
   Kel::Ptr<TrafficPolicyCli::PolicyState> record;
};

// Loads `state` (a refused state throws with the loader's reason) and caches it.
CachedPolicy cachePolicyOf(std::string const& state);

// Changes a cached record before it is rendered, to show what no loadable state can express.
using RecordChange = std::function<void(TrafficPolicyCli::PolicyState&)>;

// The rules of policy "p" of `state`, cached as cachePolicyOf does, rendered at indent 4.
RenderedRules renderRulesOf(std::string const& state, RecordChange const& change);

// One rule "r1" in policy "p", which declares the named counter "c1".
struct RuleSpec {
   std::string_view option = "ipv4";
   std::string_view match = "{}";
   std::string_view actions = "{}";
   // More members of the policy's status, after its "rules" (for example "ruleCounters").
   std::string_view policyStatus = "";
};

// The state of one rule, with the field sets every case shares: IPv4 "fs1" (3 prefixes, 1
// excepted), IPv6 "v6set" (2 prefixes), L4-port "web" (3 ports), VLAN "guest" (10 VLANs).
std::string ruleState(RuleSpec const& rule);

}  // namespace rendering_test
