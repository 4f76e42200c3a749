// A rule's actions: "Actions: " and one action per line in text, under each other; an "actions"
// object in JSON. Counting is shown by the variant of the show object, which knows the directions
// its counters come from.
#include "Kel/Assert.h"
#include "TapAgg/Actions.h"
#include "TrafficPolicyCli/CliMap.h"
#include "TrafficPolicyCli/SharedFormatting.h"
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

using PolicyMap::ActionType;

// Action types up to this one are known to the policy-map model; a traffic policy carries only
// some of them. Later ones belong to newer agents and are passed over.
constexpr unsigned kLastKnownActionType = 24;

bool isPolicyActionType(ActionType type) {
   switch (type) {
      case ActionType::drop:
      case ActionType::setDscp:
      case ActionType::setAggGroup:
      case ActionType::stripHeaderBytes:
      case ActionType::setTc:
      case ActionType::police:
      case ActionType::count:
      case ActionType::log:
      case ActionType::gotoMatch:
      case ActionType::setNexthopGroup:
         return true;
   }
   return false;
}

// Redirect targets, sorted, in text "g1,g2,g3,g4..." (all of them with `showAll`); every name in
// JSON. An empty list writes no text.
void renderTargetNames(vellum::RendererV2& renderer, std::string_view label,
                       vellum::JsonKey jsonKey, Kel::OrderedSet<Kel::String> const& names,
                       bool showAll) {
   constexpr std::size_t kShownNames = 4;
   renderer.list(jsonKey, [&] {
      if (names) {
         renderer.writeString(label);
         renderer.addFrill(": ");
      }
      std::size_t count = 0;
      for (auto const& name : names) {
         renderer._addJsonKeyValuePair("", name);
         ++count;
         if (showAll || count <= kShownNames) {
            if (count > 1) {
               renderer.addFrill(",");
            }
            renderer.writeString(name);
         } else if (count == kShownNames + 1) {
            renderer.addFrill("...");
         }
      }
   });
}

void renderAggregationRedirect(vellum::RendererV2& renderer,
                               TapAgg::TapAggActionSetAggGroup const& action, bool showAll,
                               std::uint32_t actionIndent) {
   renderer.object("tapAggRedirect", [&] {
      renderTargetNames(renderer, "Redirect Aggregation Group", "groups", action.aggGroup(),
                        showAll);
      if (action.aggGroup() && action.aggIntf()) {
         renderer.eol();
         writeIndent(renderer, actionIndent);
      }
      renderTargetNames(renderer, "Redirect Tool Interface", "interfaces", action.aggIntf(),
                        showAll);
   });
}

// "Set DSCP 46" and "setDscp": 46; the JSON key comes from cliMap.
void renderSetValue(vellum::RendererV2& renderer, Criterion criterion, std::uint8_t value) {
   renderer.writeString(criterion.label());
   renderer.writeString(" ");
   renderer.writeString(value);
   renderer._addJsonKeyValuePair(criterion.jsonKey(), value);
}

void renderPolice(vellum::RendererV2& renderer, PolicyMap::PoliceAction const& police) {
   auto const unit = PolicyMap::toString(police.rateUnit());
   renderer.writeString("Police rate ");
   renderer.writeString(police.rate());
   renderer.writeString(" ");
   renderer.writeString(unit);
   renderer.object("police", [&] {
      renderer._addJsonKeyValuePair("rate", police.rate());
      renderer._addJsonKeyValuePair("unit", unit);
   });
}

void renderGoto(vellum::RendererV2& renderer, PolicyMap::GotoAction const& action) {
   renderer.object("goto", [&] {
      if (action.matchName().empty()) {
         renderer.writeString("Goto next");
         renderer._addJsonKeyValuePair("nextMatch", true);
      } else {
         renderer.writeString("Goto match ");
         renderer.writeString(action.matchName());
         renderer._addJsonKeyValuePair("matchName", action.matchName());
      }
   });
}

// Every kind but count, on one line (the aggregation redirect on two).
void renderAction(vellum::RendererV2& renderer, PolicyMap::Action const& action, bool showAll,
                  std::uint32_t actionIndent) {
   switch (action.actionType()) {
      case ActionType::drop:
         renderer.writeString("Drop");
         renderer._addJsonKeyValuePair("drop", true);
         break;
      case ActionType::setDscp:
         renderSetValue(renderer, "Set DSCP",
                        static_cast<PolicyMap::SetDscpAction const&>(action).dscp());
         break;
      case ActionType::setTc:
         renderSetValue(renderer, "Set Traffic Class",
                        static_cast<TrafficPolicy::SetTcAction const&>(action).tc());
         break;
      case ActionType::stripHeaderBytes: {
         auto const& text =
             static_cast<TapAgg::TapAggActionStripHeaderBytes const&>(action).stripHeader();
         renderer.writeString("Remove dot1q outer tag ");
         renderer.writeString(text);
         renderer._addJsonKeyValuePair("stripHeaderBytes", text);
         break;
      }
      case ActionType::police:
         renderPolice(renderer, static_cast<PolicyMap::PoliceAction const&>(action));
         break;
      case ActionType::log:
         renderer.writeString("Log");
         renderer._addJsonKeyValuePair("log", true);
         break;
      case ActionType::gotoMatch:
         renderGoto(renderer, static_cast<PolicyMap::GotoAction const&>(action));
         break;
      case ActionType::setNexthopGroup:
         renderTargetNames(renderer, "Redirect Next-hop Group", "redirectNexthopGroups",
                           static_cast<PolicyMap::SetNexthopGroup const&>(action).nexthopGroup(),
                           showAll);
         break;
      case ActionType::setAggGroup:
         renderAggregationRedirect(renderer,
                                   static_cast<TapAgg::TapAggActionSetAggGroup const&>(action),
                                   showAll, actionIndent);
         break;
      case ActionType::count:
         return;
   }
   renderer.eol();
}

}  // namespace

PolicyMap::ClassAction const* ShowTrafficPolicyBase::ruleActions(
    PolicyState const& record, std::uint32_t ruleIndex, Kel::String const& ruleName) const {
   if (ruleLookups_.answerFor(record, ruleIndex, ruleName)) {
      return ruleLookups_.actions(ruleIndex);
   }
   auto const& pmapConfig = record.policyMapConfig();
   auto const subConfig = pmapConfig ? pmapConfig->currCfg() : nullptr;
   auto const* actions = subConfig ? subConfig->classAction().lookup(ruleName) : nullptr;
   return actions ? actions->get() : nullptr;
}

void ShowTrafficPolicyBase::renderActions(vellum::RendererV2* renderer, Kel::String const& ruleName,
                                          std::uint32_t ruleIndex,
                                          PolicyState::PtrConst const& policyState,
                                          std::uint32_t indent) {
   auto const* actions = ruleActions(*policyState, ruleIndex, ruleName);
   if (!actions || !actions->policyAction()) {
      TP_TRACE(8) << "No actions mapped to " << ruleName.view();
      return;
   }
   static constexpr std::string_view kActionsLabel = "Actions: ";
   auto const actionIndent = indent + static_cast<std::uint32_t>(kActionsLabel.size());
   renderer->_startJsonObject("actions");
   renderer->writeIndented(indent, kActionsLabel);
   bool first = true;
   for (auto const& [type, action] : actions->policyAction()) {
      if (!isPolicyActionType(type)) {
         if (static_cast<unsigned>(type) <= kLastKnownActionType) {
            KEL_ASSERT(false && "Unexpected action type");
         }
         continue;
      }
      if (!first) {
         writeIndent(*renderer, actionIndent);
      }
      first = false;
      if (type == ActionType::count) {
         renderCountAction(renderer, ruleIndex, policyState,
                           Kel::ptrCast<PolicyMap::CountAction const>(action), actionIndent);
      } else {
         renderAction(*renderer, *action, policyState->detail(), actionIndent);
      }
   }
   renderer->endJsonDict();
}

}  // namespace TrafficPolicyCli
