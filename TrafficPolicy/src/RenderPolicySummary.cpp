// What every policy of the summary and errors views has, whichever way it is attached: the
// heading, the rule count, the named counters and rules, and the warnings after the policy.
#include "Kel/Assert.h"
#include "TrafficPolicyCli/PolicyViews.h"

namespace TrafficPolicyCli {

namespace {

constexpr std::uint32_t kRuleIndent = 6;

}  // namespace

void renderPolicyHeading(vellum::RendererV2* renderer, Kel::String const& name) {
   renderer->writeString("Traffic policy ");
   renderer->writeString(name);
   renderer->eol();
   renderer->_startJsonObject(name.view());
}

void renderRulesModel(vellum::RendererV2* renderer, std::uint32_t ruleCount) {
   if (!renderer->isText()) {
      return;
   }
   writeIndent(*renderer, 3);
   renderer->writeString("Total number of rules configured: ");
   renderer->writeString(ruleCount);
   renderer->eol();
}

void renderPolicyRulesAndWarnings(ShowTrafficPolicyBase& show, vellum::RendererV2* renderer,
                                  PolicyState::PtrConst const& policyState) {
   if (!policyState->errors()) {
      renderNamedCounter(renderer, policyState);
      renderer->_startJsonList("rules");
      show.renderRules(renderer, policyState, kRuleIndent);
      renderer->endJsonList();
   }
   renderer->endJsonDict();
   if (policyState->undefinedFieldSet()) {
      renderer->writeString("WARNING: One or more match rules are using an undefined field-set.");
      renderer->eol();
   }
   if (policyState->undefinedCounter()) {
      renderer->writeString(
          "WARNING: One or more match rules are using an undefined named counter. Hits against "
          "these rule will not be counted until counter is defined");
      renderer->eol();
   }
}

}  // namespace TrafficPolicyCli
