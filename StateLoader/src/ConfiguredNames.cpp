#include "ConfiguredNames.h"

#include <iterator>

#include "Members.h"
#include "TextValues.h"

namespace StateLoader {

namespace {

// The name at `next` when it is the text, moving `next` past it.
template <typename Iterator, typename End, typename NameOf>
Kel::String const* takeIfNext(Iterator& next, End const& end, std::string_view text,
                              NameOf nameOf) {
   if (next == end || !sameKey(nameOf(*next), text)) {
      return nullptr;
   }
   return &nameOf(*next++);
}

// The name among `names` that is the text, tried at `next` before a search; `next` moves past it.
template <typename Names, typename NameOf>
Kel::String const* takeNamed(Names const& names, typename Names::const_iterator& next,
                             std::string_view text, NameOf nameOf) {
   if (auto const* name = takeIfNext(next, names.end(), text, nameOf)) {
      return name;
   }
   auto const found = names.findLike(text);
   if (found == names.end()) {
      return nullptr;
   }
   next = std::next(found);
   return &nameOf(*found);
}

// How far ahead by sequence a rule is looked for before its name is searched: as many as other
// threads read between two runs of one thread. The look ahead is taken only after this many rules
// in a row were found in order, so that statuses in another order pay little for it.
constexpr std::size_t kRulesPassedOver = 4096;
constexpr std::size_t kInOrder = 64;

constexpr auto kKey = [](auto const& entry) -> Kel::String const& { return entry.first; };
constexpr auto kValue = [](auto const& entry) -> Kel::String const& { return entry.second; };
constexpr auto kItself = [](Kel::String const& name) -> Kel::String const& { return name; };

}  // namespace

ConfiguredNames::ConfiguredNames(TrafficPolicy::TrafficPolicyConfig const& config,
                                 std::string_view policyText) {
   auto const& policies = config.policyMapConfig();
   if (auto const found = policies.findLike(policyText); found != policies.end()) {
      policyName_ = found->first;
      policy_ = found->second->currCfg();
   }
   if (policy_) {
      nextBySequence_ = policy_->rule().begin();
      inOrder_ = kInOrder;
      nextByName_ = policy_->classMap().begin();
      nextCounter_ = policy_->namedCounter().begin();
   }
}

Kel::String ConfiguredNames::policy(std::string_view text, Where const& where) const {
   return policy_ && policyName_ == text ? policyName_ : checkedName(text, "policy name", where);
}

Kel::String ConfiguredNames::rule(std::string_view text, Where const& where) {
   auto const* configured = configuredRule(text);
   return configured ? *configured : checkedName(text, "rule name", where);
}

Kel::String ConfiguredNames::counter(std::string_view text, Where const& where) {
   auto const* configured = configuredCounter(text);
   return configured ? *configured : checkedName(text, "counter name", where);
}

Kel::String const* ConfiguredNames::configuredRule(std::string_view text) {
   if (!policy_) {
      return nullptr;
   }
   if (auto const* name = takeIfNext(nextBySequence_, policy_->rule().end(), text, kValue)) {
      ++inOrder_;
      return name;
   }
   if (inOrder_ >= kInOrder) {
      if (auto const* name = ruleAhead(text)) {
         return name;
      }
   }
   inOrder_ = 0;
   return takeNamed(policy_->classMap(), nextByName_, text, kKey);
}

Kel::String const* ConfiguredNames::ruleAhead(std::string_view text) {
   auto const end = policy_->rule().end();
   auto at = nextBySequence_;
   for (std::size_t passed = 0; at != end && ++at != end && passed < kRulesPassedOver; ++passed) {
      if (sameKey(at->second, text)) {
         nextBySequence_ = std::next(at);
         return &at->second;
      }
   }
   return nullptr;
}

Kel::String const* ConfiguredNames::configuredCounter(std::string_view text) {
   return policy_ ? takeNamed(policy_->namedCounter(), nextCounter_, text, kItself) : nullptr;
}

}  // namespace StateLoader
