// The rules of a policy joined with its name-keyed maps in one ordered pass.
#include "TrafficPolicyCli/RuleEntities.h"

#include <bit>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "PolicyMap/Actions.h"

namespace TrafficPolicyCli {

namespace {

// A position in a name-keyed map that only moves forward: asked for names in ascending order, it
// reaches each with the entries it steps over since the last, instead of a search from the top.
template <typename Map>
class ForwardCursor {
 public:
   explicit ForwardCursor(Map const& map) : position_(map.begin()), end_(map.end()) {}

   typename Map::mapped_type const* seek(Kel::String const& name) {
      for (; position_ != end_; ++position_) {
         auto const order = position_->first <=> name;
         if (order >= 0) {
            return order == 0 ? &position_->second : nullptr;
         }
      }
      return nullptr;
   }

 private:
   typename Map::const_iterator position_;
   typename Map::const_iterator end_;
};

// Where each rule name stands in the sequence-ordered list, found by hashing the name: one probe
// per rule of the name-ordered maps, where sorting the names first cost a cache miss per
// comparison. A name that stands twice is answered with its first place and listed apart.
class PositionsByName {
 public:
   static constexpr std::uint32_t kNone = ~std::uint32_t{0};

   explicit PositionsByName(std::vector<Kel::String> const& names)
       : names_(names),
         slots_(std::bit_ceil(names.size() + names.size() / 2 + 1), kNone),
         mask_(slots_.size() - 1) {
      for (std::uint32_t position = 0; position < names.size(); ++position) {
         auto& slot = slots_[slotIndex(names[position], hashOf(names[position]))];
         if (slot == kNone) {
            slot = position;
         } else {
            repeated_.emplace_back(position, slot);
         }
      }
   }

   static std::size_t hashOf(Kel::String const& name) noexcept {
      return std::hash<std::string_view>{}(name.view());
   }
   // Brings the slot where a probe for the hash starts into the cache.
   void prefetch(std::size_t hash) const noexcept { __builtin_prefetch(&slots_[hash & mask_]); }
   // The first place of the name (of that hash), or kNone.
   std::uint32_t find(Kel::String const& name, std::size_t hash) const {
      return slots_[slotIndex(name, hash)];
   }
   // Pairs of a later place of a name and its first place.
   std::vector<std::pair<std::uint32_t, std::uint32_t>> const& repeated() const noexcept {
      return repeated_;
   }

 private:
   // The slot that holds the name's first place, or the empty slot where it belongs. The table
   // is never more than two thirds full, so a probe ends.
   std::size_t slotIndex(Kel::String const& name, std::size_t hash) const {
      auto index = hash & mask_;
      while (slots_[index] != kNone && names_[slots_[index]] != name) {
         index = (index + 1) & mask_;
      }
      return index;
   }

   std::vector<Kel::String> const& names_;
   std::vector<std::uint32_t> slots_;
   std::size_t mask_;
   std::vector<std::pair<std::uint32_t, std::uint32_t>> repeated_;
};

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
   PositionsByName const positions(ruleNames);
   ForwardCursor classMaps(subConfig.classMap());
   ForwardCursor classActions(subConfig.classAction());
   // At scale every probe of the table is a cache miss. The names are hashed first, so that each
   // probe's slot is fetched a few names ahead and the misses overlap instead of queueing.
   auto const& statuses = policyStatus.classMapStatus();
   std::vector<std::size_t> hashes;
   hashes.reserve(statuses.size());
   for (auto const& entry : statuses) {
      hashes.push_back(PositionsByName::hashOf(entry.first));
   }
   constexpr std::size_t kAhead = 8;
   std::size_t index = 0;
   for (auto const& [name, status] : statuses) {
      auto const hash = hashes[index++];
      if (index + kAhead < hashes.size()) {
         positions.prefetch(hashes[index + kAhead]);
      }
      auto const position = positions.find(name, hash);
      if (position == PositionsByName::kNone) {
         continue;
      }
      auto& rule = rules[position];
      rule.status = status;
      if (status->matchs().empty()) {
         continue;
      }
      if (auto const* classMap = classMaps.seek(name)) {
         if (auto const* match = (*classMap)->match().lookup(*status->matchs().begin())) {
            rule.match = *match;
         }
      }
      if (auto const* actions = classActions.seek(name)) {
         rule.counterName = countedInto(**actions);
      }
   }
   for (auto const& [later, first] : positions.repeated()) {
      rules[later] = rules[first];
   }
   return rules;
}

}  // namespace TrafficPolicyCli
