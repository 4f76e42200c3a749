// The pieces of the policy views (summary, errors and counters) that both show objects use.
#pragma once

#include <cstdint>
#include <string_view>

#include "TrafficPolicyCli/CommandOutput.h"
#include "TrafficPolicyCli/PolicyStateVariants.h"
#include "TrafficPolicyCli/SharedFormatting.h"
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"
#include "vellum/Renderer.h"

namespace TrafficPolicyCli {

// "Traffic policy NAME" and the policy's JSON object.
void renderPolicyHeading(vellum::RendererV2* renderer, Kel::String const& name);

// The end of one policy: unless in the errors view its named counters and rules; the end of its
// JSON object; the warnings about undefined field sets and counters.
void renderPolicyRulesAndWarnings(ShowTrafficPolicyBase& show, vellum::RendererV2* renderer,
                                  PolicyState::PtrConst const& policyState);

// Text only: "Total number of rules configured: N".
void renderRulesModel(vellum::RendererV2* renderer, std::uint32_t ruleCount);

// One line per failed interface (or VRF): "NAME (error text)". Nothing at all, not even an empty
// JSON list, when there is no error record.
void renderInterfaceInstallErrors(vellum::RendererV2* renderer, Kel::String const& jsonKey,
                                  PolicyStateInterface::PtrConst const& policyStateInterface,
                                  InterfaceInstallError::PtrConst const& installError,
                                  std::uint32_t indent, bool printText);
void renderCpuInstallErrors(vellum::RendererV2* renderer, Kel::String const& jsonKey,
                            PolicyStateCpu::PtrConst const& policyStateCpu,
                            PolicyMap::ClassMapMatchOption matchOption, std::uint32_t indent);

// The summary view's "counter NAME ..." line of the policy's declared named counters.
void renderNamedCounter(vellum::RendererV2* renderer, PolicyState::PtrConst const& policyState);

// The counters view of one direction: "trafficPolicies" (input) or "egressTrafficPolicies".
void _renderTrafficPolicyCounters(vellum::RendererV2* renderer,
                                  ShowTrafficPolicyBase::PolicyStateMap const& policies,
                                  Kel::String const& policyName, bool byteCountersSupported,
                                  bool isInput);

// The summary and errors views of a command, inside its "trafficPolicies": the policies in name
// order, limited to the asked-for name (an empty name asks for all), each with its heading,
// `renderAttachments(renderer, record)` for where it is configured, applied or failed, then its
// counters line, rules and warnings. Outside the errors view, `note` follows unless it is empty,
// then `failureWarning` when `installationFailed(record)` holds for any policy shown.
template <typename RenderAttachments, typename InstallationFailed>
void renderPolicyViews(ShowTrafficPolicyBase& show, std::uint32_t fd, std::uint32_t format,
                       std::uint32_t revision, std::string_view note,
                       std::string_view failureWarning, RenderAttachments&& renderAttachments,
                       InstallationFailed&& installationFailed) {
   CommandOutput output(fd, format, revision, "trafficPolicies");
   auto* const renderer = &output.renderer();
   bool anyFailed = false;
   for (auto const& [name, record] : show.policyState()) {
      if (!show.policyName().empty() && name != show.policyName()) {
         continue;
      }
      renderAttachments(renderer, PolicyState::PtrConst(record));
      renderPolicyRulesAndWarnings(show, renderer, record);
      anyFailed = anyFailed || installationFailed(*record);
   }
   if (!show.errors()) {
      renderer->writeString(note);
      if (anyFailed) {
         renderer->writeString(failureWarning);
      }
   }
   output.close();
}

}  // namespace TrafficPolicyCli
