// The rules of a policy joined with its name-keyed maps in one ordered pass.
#include "TrafficPolicyCli/RuleEntities.h"

#include <cstdint>
#include <utility>

#include "PolicyMap/Actions.h"
#include "PositionsByName.h"

namespace TrafficPolicyCli {

namespace {

Kel::String countedInto(PolicyMap::ClassAction const& actions) {
   auto const* action = actions.policyAction().lookup(PolicyMap::ActionType::count);
   return action ? static_cast<PolicyMap::CountAction const&>(**action).counterName()
                 : Kel::String();
}

}  // namespace

std::vector<RuleEntities> ruleEntitiesByName(std::vector<Kel::String> const& ruleNames,
                                             PolicyMap::PolicyMapStatus const& policyStatus,
                                             PolicyMap::PolicyMapSubConfig const& subConfig) {
   std::vector<RuleEntities> rules(ruleNames.size());
   std::vector<std::uint32_t> slots;
   PositionsByName const positions(
       slots, static_cast<std::uint32_t>(ruleNames.size()),
       [&ruleNames](std::uint32_t position) -> Kel::String const& { return ruleNames[position]; });
   ForwardCursor classMaps(subConfig.classMap());
   ForwardCursor classActions(subConfig.classAction());
   forEachPlaced(
       positions, policyStatus.classMapStatus(), [&](std::uint32_t position, auto const& entry) {
          auto const& [name, status] = entry;
          auto& rule = rules[position];
          rule.status = status;
          if (status->matchs().empty()) {
             return;
          }
          if (auto const* classMap = classMaps.seek(name)) {
             if (auto const* match = (*classMap)->match().lookup(*status->matchs().begin())) {
                rule.match = *match;
             }
          }
          if (auto const* actions = classActions.seek(name)) {
             rule.counterName = countedInto(**actions);
          }
       });
   for (auto const& [later, first] : positions.repeated()) {
      rules[later] = rules[first];
   }
   return rules;
}

}  // namespace TrafficPolicyCli
