// What rendering a policy's rules reads by rule name besides the record: each rule's actions in
// the policy's configuration and its live counter among the record's input counters. Asked rule
// by rule, in sequence order, each is a binary search of a name-keyed map, most of whose steps
// miss the cache at scale; found here for all rules at once, one step per map entry.
#pragma once

#include <cstdint>
#include <vector>

#include "PolicyMap/PolicyMapConfig.h"
#include "PolicyMap/PolicyMapStatus.h"
#include "TrafficPolicyCli/PolicyState.h"

namespace TrafficPolicyCli {

class RuleLookups {
 public:
   // Joins the record's rules with its maps, in the storage of the previous join: a show object
   // renders policy after policy with one set of lookups.
   void join(PolicyState const& record);
   // Answers for no record until the next join.
   void forget() noexcept { record_ = nullptr; }

   // Whether the lookups answer for the rule: they were made for the record, and the name is
   // the one the record keeps at the index.
   bool answerFor(PolicyState const& record, std::uint32_t ruleIndex,
                  Kel::String const& ruleName) const {
      if (&record != record_) {
         return false;
      }
      auto const& kept = record.ruleName(ruleIndex);
      return &kept == &ruleName || kept == ruleName;
   }
   // Null when the rule has no actions, no live counter, or no place in the record.
   PolicyMap::ClassAction const* actions(std::uint32_t ruleIndex) const noexcept {
      return ruleIndex < rules_.size() ? rules_[ruleIndex].actions : nullptr;
   }
   PolicyMap::PacketDataStatus const* inputCounter(std::uint32_t ruleIndex) const noexcept {
      return ruleIndex < rules_.size() ? rules_[ruleIndex].inputCounter : nullptr;
   }

 private:
   struct Rule {
      PolicyMap::ClassAction const* actions = nullptr;
      PolicyMap::PacketDataStatus const* inputCounter = nullptr;
   };

   PolicyState const* record_ = nullptr;
   std::vector<Rule> rules_;
   // The name table's slots, kept for the next join.
   std::vector<std::uint32_t> slots_;
};

}  // namespace TrafficPolicyCli
