// Each action key makes the action entity of its type. The rule keeps at most one action per
// type, which the key table guarantees, since a key may not repeat.
#include "ActionsReader.h"

#include <array>

#include "Choice.h"
#include "Members.h"
#include "StateError.h"
#include "TapAgg/Actions.h"
#include "TextValues.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"

namespace StateLoader {

namespace {

using PolicyMap::ActionType;
using PolicyMap::ClassAction;

constexpr std::uint64_t kLargestDscp = 63;
constexpr std::uint64_t kLargestTrafficClass = 7;

// A rule's actions as read, in the order of their types: files list a rule's actions in any
// order (a count before a DSCP set), and the rule's map, filled in this order, appends each after
// one comparison instead of moving what it holds. There is at most one action per key of the table.
struct ReadActions {
   static constexpr std::size_t kMost = 10;
   std::array<Kel::Ptr<PolicyMap::Action const>, kMost> byType;
   std::size_t count = 0;
};

void add(ReadActions& actions, Kel::Ptr<PolicyMap::Action const> action) {
   auto at = actions.count++;
   for (; at > 0 && actions.byType[at - 1]->actionType() > action->actionType(); --at) {
      actions.byType[at] = std::move(actions.byType[at - 1]);
   }
   actions.byType[at] = std::move(action);
}

// An action that carries nothing but its type is the same in every rule and never changes, so
// the rules that a thread reads share one (an allocation less per rule); one per thread, so that
// the reading threads do not contend for its reference count.
using SharedAction = Kel::Ptr<PolicyMap::Action const> const;

// Drop and log carry nothing; false is the same as leaving the key out.
template <ActionType type>
void readPlainAction(Node const& value, ReadActions& actions) {
   thread_local SharedAction plain = Kel::make<PolicyMap::Action>(type);
   if (asBool(value)) {
      add(actions, plain);
   }
}

constexpr std::array kRateUnits = {
    Choice<PolicyMap::RateUnit>{"bps", PolicyMap::RateUnit::bps},
    Choice<PolicyMap::RateUnit>{"kbps", PolicyMap::RateUnit::kbps},
    Choice<PolicyMap::RateUnit>{"mbps", PolicyMap::RateUnit::mbps},
    Choice<PolicyMap::RateUnit>{"gbps", PolicyMap::RateUnit::gbps},
    Choice<PolicyMap::RateUnit>{"pps", PolicyMap::RateUnit::pps},
};

struct PoliceTarget {
   std::uint64_t rate = 0;
   PolicyMap::RateUnit unit = PolicyMap::RateUnit::bps;
};

constexpr MemberTable kPoliceMembers = std::array{
    Member<PoliceTarget>{"rate",
                         [](Node const& value, PoliceTarget& police) {
                            police.rate = asUnsigned(value, UINT64_MAX);
                         },
                         true},
    Member<PoliceTarget>{"unit",
                         [](Node const& value, PoliceTarget& police) {
                            police.unit = readChoice(value, kRateUnits, "rate unit");
                         },
                         true},
};

void readPolice(Node const& value, ReadActions& actions) {
   PoliceTarget police;
   readMembers(value, kPoliceMembers, police);
   add(actions, Kel::make<PolicyMap::PoliceAction>(police.rate, police.unit));
}

// Count and goto name their target in an optional key: the rule's own counter or the next rule
// when it is left out.
template <typename ActionClass, std::string_view const& key, std::string_view const& what>
void readNamedTarget(Node const& value, ReadActions& actions) {
   static constexpr MemberTable kMembers = std::array{Member<Kel::String>{
       key, [](Node const& name, Kel::String& target) { target = readName(name, what); }}};
   Kel::String target;
   readMembers(value, kMembers, target);
   thread_local SharedAction untargeted = Kel::make<ActionClass>(Kel::String());
   add(actions, target.empty() ? untargeted : Kel::make<ActionClass>(std::move(target)));
}

constexpr std::string_view kCounterKey = "counter";
constexpr std::string_view kCounterName = "counter name";
constexpr std::string_view kMatchKey = "match";
constexpr std::string_view kRuleName = "rule name";

// An action that carries one small number is shared like those, one per value, made when a
// thread first reads that value: rules that mark the same DSCP or traffic class are common.
template <typename ActionClass, std::uint64_t largest>
void readSmallValueAction(Node const& value, ReadActions& actions) {
   thread_local std::array<Kel::Ptr<PolicyMap::Action const>, largest + 1> byValue;
   auto const number = asUnsigned(value, largest);
   auto& shared = byValue[number];
   if (!shared) {
      shared = Kel::make<ActionClass>(static_cast<std::uint8_t>(number));
   }
   add(actions, shared);
}

void readNexthopGroups(Node const& value, ReadActions& actions) {
   auto redirect = Kel::make<PolicyMap::SetNexthopGroup>();
   readNameList(value, "next-hop group name", redirect->nexthopGroup());
   if (redirect->nexthopGroup().empty()) {
      fail(value.where, "a redirect needs at least one next-hop group");
   }
   add(actions, redirect);
}

constexpr MemberTable kTapAggMembers = std::array{
    Member<TapAgg::TapAggActionSetAggGroup>{
        "groups",
        [](Node const& value, TapAgg::TapAggActionSetAggGroup& redirect) {
           readNameList(value, "aggregation group name", redirect.aggGroup());
        }},
    Member<TapAgg::TapAggActionSetAggGroup>{
        "interfaces",
        [](Node const& value, TapAgg::TapAggActionSetAggGroup& redirect) {
           readIntfNameList(value, redirect.aggIntf());
        }},
};

void readTapAggRedirect(Node const& value, ReadActions& actions) {
   auto redirect = Kel::make<TapAgg::TapAggActionSetAggGroup>();
   readMembers(value, kTapAggMembers, *redirect);
   if (redirect->aggGroup().empty() && redirect->aggIntf().empty()) {
      fail(value.where, "a tap-aggregation redirect needs at least one group or interface");
   }
   add(actions, redirect);
}

void readStripHeaderBytes(Node const& value, ReadActions& actions) {
   add(actions,
       Kel::make<TapAgg::TapAggActionStripHeaderBytes>(readText(value, "header-strip text")));
}

constexpr MemberTable kActionMembers = std::array{
    Member<ReadActions>{"drop", readPlainAction<ActionType::drop>},
    Member<ReadActions>{"police", readPolice},
    Member<ReadActions>{"count",
                        readNamedTarget<PolicyMap::CountAction, kCounterKey, kCounterName>},
    Member<ReadActions>{"setDscp", readSmallValueAction<PolicyMap::SetDscpAction, kLargestDscp>},
    Member<ReadActions>{"setTc",
                        readSmallValueAction<TrafficPolicy::SetTcAction, kLargestTrafficClass>},
    Member<ReadActions>{"log", readPlainAction<ActionType::log>},
    Member<ReadActions>{"goto", readNamedTarget<PolicyMap::GotoAction, kMatchKey, kRuleName>},
    Member<ReadActions>{"redirectNexthopGroups", readNexthopGroups},
    Member<ReadActions>{"tapAggRedirect", readTapAggRedirect},
    Member<ReadActions>{"stripHeaderBytes", readStripHeaderBytes},
};
static_assert(kActionMembers.members.size() == ReadActions::kMost);

}  // namespace

Kel::Ptr<ClassAction> readActions(Node const& node, Kel::String const& ruleName) {
   ReadActions read;
   readMembers(node, kActionMembers, read);
   auto actions = Kel::make<ClassAction>(ruleName);
   for (std::size_t index = 0; index < read.count; ++index) {
      auto const type = read.byType[index]->actionType();
      actions->policyAction().insertOrAssign(type, std::move(read.byType[index]));
   }
   return actions;
}

}  // namespace StateLoader
