// A policy's rules joined with its class actions and live rule counters in one ordered pass each.
#include "TrafficPolicyCli/RuleLookups.h"

#include <string_view>
#include <utility>

#include "PositionsByName.h"

namespace TrafficPolicyCli {

namespace {

// The record's rule names by rule index; an index without a rule stands as an empty name, which
// names no map entry that matters: nothing is shown at that index.
std::vector<std::string_view> namesByIndex(PolicyState const& record) {
   std::vector<std::string_view> names;
   names.reserve(record.ruleNames().size());
   for (auto const& [index, name] : record.ruleNames()) {
      if (index >= names.size()) {
         names.resize(std::size_t{index} + 1);
      }
      names[index] = name.view();
   }
   return names;
}

}  // namespace

RuleLookups::RuleLookups(PolicyState const& record) : record_(&record) {
   auto names = namesByIndex(record);
   rules_.resize(names.size());
   PositionsByName const positions(std::move(names));
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
