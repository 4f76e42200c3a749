// What caching reads of each configured rule from the policy's three maps keyed by rule name: its
// status, its match configuration and its actions. Rules come in sequence order, and names rarely
// sort that way ("rule-10" before "rule-2"), so looking each rule up costs a binary search per rule
// and map. Instead the three maps are walked together in name order, one step per entry, and each
// name finds its rule's place through a hash of the rule names: a policy of 100,000 rules costs
// 200,000 hashes instead of 300,000 binary searches.
#pragma once

#include <vector>

#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/PolicyMapConfig.h"
#include "PolicyMap/PolicyMapStatus.h"

namespace TrafficPolicyCli {

struct RuleEntities {
   // Null when the policy's status does not list the rule.
   Kel::Ptr<PolicyMap::ClassMapStatus const> status;
   // The configured match of the status's first match option; null when there is none or the
   // status lists no option.
   Kel::Ptr<PolicyMap::ClassMapMatch const> match;
   // The counter the rule's count action counts into; empty without one, or when the status lists
   // no option (the counter is checked only for rules that are shown).
   Kel::String counterName;
};

// One entry per name of `ruleNames`, at the same position.
std::vector<RuleEntities> ruleEntitiesByName(std::vector<Kel::String> const& ruleNames,
                                             PolicyMap::PolicyMapStatus const& policyStatus,
                                             PolicyMap::PolicyMapSubConfig const& subConfig);

}  // namespace TrafficPolicyCli
