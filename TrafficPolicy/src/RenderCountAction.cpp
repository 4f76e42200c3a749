// The count action of a rule: the rule's own counter or a named one, with the packets (and bytes
// where the platform counts them) since the last clear. On the CPU there is one direction; on
// interfaces counts exist for input only, so output is always shown as not available, on a line
// aligned under the input figures.
#include <array>
#include <typeinfo>

#include "Kel/Assert.h"
#include "TrafficPolicyCli/CounterData.h"
#include "TrafficPolicyCli/SharedFormatting.h"
#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"
#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"

namespace TrafficPolicyCli {

namespace {

constexpr std::string_view kCountLabel = "Count: ";

// Which directions a count line shows, and whether it names them.
struct CountDirections {
   bool input;
   bool output;
   bool marked;
};

// The old and the current key of a count are both written, for readers of either. A rule's count
// names its keys in line: every rule has one, and literal keys are checked for escaping when the
// library is compiled.
constexpr std::array<vellum::JsonKey, 2> kNamedCountKeys{"countNamed", "inputNamedCounters"};

// After the input figures: " (input)" where directions are named, then "N/A (output)" in the
// column where the figures start (`valueColumn`), or in their place when input is not shown.
void finishCountLine(vellum::RendererV2& renderer, CountDirections const& directions,
                     std::uint32_t valueColumn) {
   if (directions.input && directions.marked) {
      renderer.writeString(" (input)");
   }
   if (directions.output) {
      if (directions.input) {
         renderer.eol();
         writeIndent(renderer, valueColumn);
      }
      renderer.writeString("N/A (output)");
   }
   renderer.eol();
}

// `data` is the rule's live counter; one the agent has not reported yet has counted nothing.
void renderRuleCount(vellum::RendererV2& renderer, PolicyState const& policyState,
                     PolicyMap::PacketDataStatus const* data, CountDirections const& directions,
                     std::uint32_t actionIndent) {
   renderer.writeString(kCountLabel);
   if (directions.input) {
      std::uint64_t const packets =
          data ? getRulePacketCount(*data, policyState.counter(), policyState.name()) : 0;
      renderer.writeString(packets);
      renderer.writeString(" packets");
      renderer._addJsonKeyValuePair("count", packets);
      renderer._addJsonKeyValuePair("inputCounter", packets);
   }
   finishCountLine(renderer, directions,
                   actionIndent + static_cast<std::uint32_t>(kCountLabel.size()));
}

void renderNamedCount(vellum::RendererV2& renderer, PolicyState::PtrConst const& policyState,
                      Kel::String const& counterName, CountDirections const& directions,
                      std::uint32_t actionIndent) {
   if (!policyState->namedCounter().contains(counterName)) {
      ShowTrafficPolicyBase::renderUndeclaredInputNamedCounter(&renderer, counterName);
      return;
   }
   renderer.writeString(kCountLabel);
   renderer.writeString(counterName);
   auto const data = getNamedCounterData(policyState, counterName, true);
   if (!data) {
      renderer.writeString(": N/A");
      renderer.eol();
      return;
   }
   renderer.writeString(": ");
   if (directions.input) {
      bool const withBytes = policyState->byteCountersSupported();
      auto const packets = getNamedPacketCount(policyState->counter(), data, policyState->name());
      auto const bytes =
          withBytes ? getNamedByteCount(policyState->counter(), data, policyState->name()) : 0;
      renderer.writeString(packets);
      renderer.writeString(" packets");
      if (withBytes) {
         renderer.writeString(" ");
         renderer.writeString(bytes);
         renderer.writeString(" bytes");
      }
      if (renderer.isJson()) {
         vellum::JsonKey const counterKey(counterName.view());
         for (auto const key : kNamedCountKeys) {
            renderer.object(key, [&] {
               renderer.object(counterKey, [&] {
                  renderer._addJsonKeyValuePair("packetCount", packets);
                  if (withBytes) {
                     renderer._addJsonKeyValuePair("byteCount", bytes);
                  }
               });
            });
         }
      }
   }
   finishCountLine(
       renderer, directions,
       actionIndent + static_cast<std::uint32_t>(kCountLabel.size() + counterName.size() + 2));
}

}  // namespace

void ShowTrafficPolicyBase::renderUndeclaredInputNamedCounter(vellum::RendererV2* renderer,
                                                              Kel::String const& counterName) {
   renderer->writeString(kCountLabel);
   renderer->writeString(counterName);
   renderer->writeString(" (counter '");
   renderer->writeString(counterName);
   renderer->writeString("' is inactive because it has not been declared)");
   renderer->eol();
   for (auto const key : kNamedCountKeys) {
      renderer->object(key, [&] {
         renderer->object(counterName.view(),
                          [&] { renderer->_addJsonKeyValuePair("undefined", true); });
      });
   }
}

void ShowTrafficPolicyCpu::renderCountAction(vellum::RendererV2* renderer, std::uint32_t ruleIndex,
                                             PolicyState::PtrConst const& policyState,
                                             Kel::Ptr<PolicyMap::CountAction const> const& action,
                                             std::uint32_t indent) {
   KEL_ASSERT(policyState);
   CountDirections const inputOnly{true, false, false};
   if (!action->counterName().empty()) {
      renderNamedCount(*renderer, policyState, action->counterName(), inputOnly, indent);
      return;
   }
   auto const* cached = policyState->classMapStatusInput().lookup(ruleIndex);
   auto const cmapStatus = cached ? *cached : nullptr;
   KEL_ASSERT(cmapStatus);
   renderRuleCount(*renderer, *policyState,
                   inputRuleCounter(*policyState, ruleIndex, cmapStatus->name()), inputOnly,
                   indent);
}

void ShowTrafficPolicyInterface::renderCountAction(
    vellum::RendererV2* renderer, std::uint32_t ruleIndex, PolicyState::PtrConst const& policyState,
    Kel::Ptr<PolicyMap::CountAction const> const& action, std::uint32_t indent) {
   // The record type is final: comparing types checks the downcast without the run-time library's
   // walk of the class hierarchy, and no reference is taken.
   auto const* state = policyState.get();
   auto const* policyStateInterface = state && typeid(*state) == typeid(PolicyStateInterface)
                                          ? static_cast<PolicyStateInterface const*>(state)
                                          : nullptr;
   KEL_ASSERT(policyStateInterface);
   // The filters name the one direction the command shows; without either it shows both.
   CountDirections const directions{!policyStateInterface->filterOutputPolicies(),
                                    !policyStateInterface->filterInputPolicies(), true};
   if (action->counterName().empty()) {
      renderRuleCount(*renderer, *policyState,
                      directions.input ? inputRuleCounter(*policyState, ruleIndex,
                                                          policyState->ruleName(ruleIndex))
                                       : nullptr,
                      directions, indent);
   } else {
      renderNamedCount(*renderer, policyState, action->counterName(), directions, indent);
   }
}

}  // namespace TrafficPolicyCli
