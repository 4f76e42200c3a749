// A policy's rules joined with its class actions and live rule counters in one ordered pass each.
#include "TrafficPolicyCli/RuleLookups.h"

#include <utility>

#include "PositionsByName.h"

namespace TrafficPolicyCli {

namespace {

// One past the highest rule index of the record (the indices are dense in practice).
std::uint32_t indexCount(PolicyState const& record) {
   std::uint32_t count = 0;
   for (auto const& entry : record.ruleNames()) {
      count = entry.index + 1;
   }
   return count;
}

}  // namespace

void RuleLookups::join(PolicyState const& record) {
   record_ = &record;
   auto const count = indexCount(record);
   rules_.assign(count, Rule{});
   // An index without a rule reads as the empty name, which no rule of the maps has.
   static Kel::String const kNoName;
   PositionsByName const positions(
       slots_, count, [&names = record.ruleNames()](std::uint32_t index) -> Kel::String const& {
          auto const* name = names.lookup(index);
          return name ? *name : kNoName;
       });
   auto const& config = record.policyMapConfig();
   auto const subConfig = config ? config->currCfg() : nullptr;
   if (!subConfig) {
      return;
   }
   // Only a count action reads the rule's counter, so the counters are met in step with the
   // actions: both maps are in name order.
   ForwardCursor counters(record.inputClassCounters());
   forEachPlaced(positions, subConfig->classAction(),
                 [&](std::uint32_t position, auto const& entry) {
                    auto& rule = rules_[position];
                    rule.actions = entry.second.get();
                    if (auto const* counter = counters.seek(entry.first)) {
                       rule.inputCounter = counter->get();
                    }
                 });
   for (auto const& [later, first] : positions.repeated()) {
      rules_[later] = rules_[first];
   }
}

}  // namespace TrafficPolicyCli
