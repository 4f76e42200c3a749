// A policy's status and counters name its rules and named counters again. Where the configuration
// holds the name, the configuration's copy is handed out, which shares its text: a rule's name is
// then one block of memory however many entities carry it, and later lookups of one entity's name
// in another's map find the very copy they hold. Status sections are read after the configuration
// is complete, so it is only read here, from any thread.
#pragma once

#include <string_view>

#include "Kel/String.h"
#include "Node.h"
#include "PolicyMap/PolicyMapConfig.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"

namespace StateLoader {

class ConfiguredNames {
 public:
   // The names of the policy that `policyText` names; none when it is not configured.
   ConfiguredNames(TrafficPolicy::TrafficPolicyConfig const& config, std::string_view policyText);

   // Each is checked as a name of its kind when the configuration does not hold it.
   Kel::String policy(std::string_view text, Where const& where) const;
   Kel::String rule(std::string_view text, Where const& where);
   Kel::String counter(std::string_view text, Where const& where);

 private:
   using RulesBySequence = Kel::OrderedMap<std::uint32_t, Kel::String>;
   using RulesByName = Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMap::ClassMapConfig const>>;
   using Counters = Kel::OrderedSet<Kel::String>;

   Kel::String const* configuredRule(std::string_view text);
   Kel::String const* ruleAhead(std::string_view text);
   Kel::String const* configuredCounter(std::string_view text);

   Kel::String policyName_;
   Kel::Ptr<PolicyMap::PolicyMapSubConfig const> policy_;
   // Statuses list rules in the configuration's order, by sequence or by name, and counters by
   // name: the entry after the last one found is tried before a search. A thread that reads runs
   // of rules takes every other run or so: the rules in between are passed over by sequence, as
   // long as the statuses keep to it.
   RulesBySequence::const_iterator nextBySequence_;
   std::size_t inOrder_ = 0;  // rules found in a row by sequence
   RulesByName::const_iterator nextByName_;
   Counters::const_iterator nextCounter_;
};

}  // namespace StateLoader
