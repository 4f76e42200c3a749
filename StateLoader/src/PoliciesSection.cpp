// "trafficPolicies": per policy its declared named counters and its rules, each rule with its
// sequence number, its match per match option and its actions.
#include <array>
#include <string>

#include "ActionsReader.h"
#include "FilterReader.h"
#include "Members.h"
#include "NameOrder.h"
#include "ParallelMembers.h"
#include "Sections.h"
#include "StateError.h"
#include "TextValues.h"

namespace StateLoader {

namespace {

using PolicyMap::ClassMapConfig;
using PolicyMap::ClassMapMatchOption;
using PolicyMap::PolicyMapSubConfig;

struct RuleTarget {
   Kel::Ptr<ClassMapConfig> classMap;
   Kel::Ptr<PolicyMap::ClassAction> actions;
   std::uint32_t sequence = 0;
};

template <ClassMapMatchOption option, Quoll::AddressFamily family>
void readMatchFor(Node const& value, ClassMapConfig& rule) {
   auto match = Kel::make<PolicyMap::ClassMapMatch>(option);
   match->structuredFilterIs(readFilter(value, family));
   rule.match().insertOrAssign(option, std::move(match));
}

constexpr MemberTable kMatchMembers = std::array{
    Member<ClassMapConfig>{"ipv4",
                           readMatchFor<ClassMapMatchOption::ipv4, Quoll::AddressFamily::ipv4>},
    Member<ClassMapConfig>{"ipv6",
                           readMatchFor<ClassMapMatchOption::ipv6, Quoll::AddressFamily::ipv6>},
};

constexpr MemberTable kRuleMembers = std::array{
    Member<RuleTarget>{"sequence",
                       [](Node const& value, RuleTarget& rule) {
                          rule.sequence = static_cast<std::uint32_t>(asUnsigned(value, UINT32_MAX));
                       },
                       true},
    Member<RuleTarget>{"match",
                       [](Node const& value, RuleTarget& rule) {
                          readMembers(value, kMatchMembers, *rule.classMap);
                       }},
    Member<RuleTarget>{"actions",
                       [](Node const& value, RuleTarget& rule) {
                          rule.actions = readActions(value, rule.classMap->name());
                       }},
};

// Sequences come in ascending order: each is entered after one comparison, and a number given
// twice keeps the rule that had it first, for the message.
void enterSequence(PolicyMapSubConfig& policy, std::uint32_t sequence, Kel::String const& name,
                   Where const& where) {
   auto const before = policy.rule().size();
   auto const& holder = policy.rule().getOrCreate(sequence, name);
   if (policy.rule().size() == before) {
      fail(where.member("sequence"), "sequence number " + std::to_string(sequence) +
                                         " is already used by rule " + quoted(holder));
   }
}

void readRules(Node const& value, PolicyMapSubConfig& policy) {
   NameOrdered<RuleTarget> rules(value);
   rules.gather([&] {
      forEachMemberInParallel(
          value,
          [](std::string_view key, Node const& entry) {
             auto const name = checkedName(key, "rule name", entry.where);
             RuleTarget rule{Kel::make<ClassMapConfig>(name), nullptr};
             readMembers(entry, kRuleMembers, rule);
             return rule;
          },
          [&policy, &rules](std::string_view, Where const& where, RuleTarget rule) {
             // The entity keeps the name where it is while the rule waits to be entered.
             auto const sequence = rule.sequence;
             auto const& name = rule.classMap->name();
             rules.add(name, std::move(rule));
             enterSequence(policy, sequence, name, where);
          });
   });
   rules.enter([&policy](RuleTarget rule) {
      auto const& name = rule.classMap->name();
      if (rule.actions) {
         policy.classAction().insertOrAssign(name, std::move(rule.actions));
      }
      policy.classMap().insertOrAssign(name, std::move(rule.classMap));
   });
}

constexpr MemberTable kPolicyMembers = std::array{
    Member<PolicyMapSubConfig>{"namedCounters",
                               [](Node const& value, PolicyMapSubConfig& policy) {
                                  readNameList(value, "counter name", policy.namedCounter());
                               }},
    Member<PolicyMapSubConfig>{"rules", readRules},
};

}  // namespace

void readTrafficPolicies(Node const& node, DeviceState& state) {
   forEachMemberInParallel(
       node,
       [](std::string_view key, Node const& value) {
          auto const name = checkedName(key, "policy name", value.where);
          auto contents = Kel::make<PolicyMapSubConfig>(name);
          readMembers(value, kPolicyMembers, *contents);
          auto policy = Kel::make<PolicyMap::PolicyMapConfig>(name);
          policy->currCfgIs(std::move(contents));
          return policy;
       },
       [&state](std::string_view key, Where const& where,
                Kel::Ptr<PolicyMap::PolicyMapConfig> policy) {
          auto const name = policy->name();
          if (!insertedNew(state.config->policyMapConfig(), name, std::move(policy))) {
             failDuplicateKey(where, key);
          }
       });
}

}  // namespace StateLoader
