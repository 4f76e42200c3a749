// The interface command's views. The summary and errors views list, per direction, where each
// policy is configured, applied or failed; the input lists are written twice in JSON, inside
// "input" and again flat in the policy object, where older readers look for them.
#include <array>

#include "Kel/Assert.h"
#include "TrafficPolicyCli/CommandOutput.h"
#include "TrafficPolicyCli/PolicyViews.h"
#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"

namespace TrafficPolicyCli {

namespace {

using PolicyMap::ClassMapMatchOption;
using Record = PolicyStateInterface::PtrConst;

constexpr std::array kMatchOptions = {ClassMapMatchOption::ipv4, ClassMapMatchOption::ipv6};

struct OptionKeys {
   char const* applied;
   char const* failed;
   char const* installationErrors;
};
constexpr OptionKeys kOptionKeys[] = {
    {"ipv4AppliedIntfs", "ipv4FailedIntfs", "ipv4InstallationErrors"},
    {"ipv6AppliedIntfs", "ipv6FailedIntfs", "ipv6InstallationErrors"},
};

struct DirectionLabels {
   char const* configured;
   char const* applied[2];
   char const* failed[2];
};
constexpr DirectionLabels kOutputLabels = {"Configured on output of interfaces: ",
                                           {"Applied on output of interfaces for IPv4 traffic: ",
                                            "Applied on output of interfaces for IPv6 traffic: "},
                                           {"Failed on interfaces for IPv4 output traffic: ",
                                            "Failed on interfaces for IPv6 output traffic: "}};
constexpr DirectionLabels kInputLabels = {"Configured on input of interfaces: ",
                                          {"Applied on input of interfaces for IPv4 traffic: ",
                                           "Applied on input of interfaces for IPv6 traffic: "},
                                          {"Failed on interfaces for IPv4 input traffic: ",
                                           "Failed on interfaces for IPv6 input traffic: "}};

PerAfIntfList::NameMap const& namesOf(PerAfIntfList::PtrConst const& list) {
   static PerAfIntfList::NameMap const none;
   return list ? list->intfList() : none;
}

void renderAppliedLists(vellum::RendererV2* renderer, Record const& record, bool isInput,
                        bool printText) {
   auto const& labels = isInput ? kInputLabels : kOutputLabels;
   auto const& configured =
       isInput ? record->configuredIntfInput() : record->configuredIntfOutput();
   renderListEntry(*renderer, labels.configured, "configuredIntfs", configured, record->detail(),
                   printText);
   for (auto const option : kMatchOptions) {
      auto const at = static_cast<std::size_t>(option);
      renderListEntry(*renderer, labels.applied[at], kOptionKeys[at].applied,
                      namesOf(record->getAppliedIntfList(option, isInput)), record->detail(),
                      printText);
   }
}

void renderFailedLists(vellum::RendererV2* renderer, Record const& record, bool isInput,
                       bool printText) {
   auto const& labels = isInput ? kInputLabels : kOutputLabels;
   for (auto const option : kMatchOptions) {
      auto const at = static_cast<std::size_t>(option);
      renderListEntry(*renderer, labels.failed[at], kOptionKeys[at].failed,
                      namesOf(record->getFailedIntfList(option, isInput)), record->detail(),
                      printText);
      renderInterfaceInstallErrors(renderer, kOptionKeys[at].installationErrors, record,
                                   record->getInstallErrorList(option, isInput),
                                   record->indentCountPerLevel() + kListIndent, printText);
   }
}

// The input lists: first in text and inside "input", then once more in JSON only, flat.
void renderInputSection(vellum::RendererV2* renderer, Record const& record) {
   for (bool const firstPass : {true, false}) {
      if (firstPass) {
         renderer->_startJsonObject("input");
      }
      if (record->errors()) {
         renderFailedLists(renderer, record, true, firstPass);
      } else {
         renderAppliedLists(renderer, record, true, firstPass);
      }
      if (firstPass) {
         renderer->endJsonDict();
      }
   }
}

void renderInterfaceOutputErrors(vellum::RendererV2* renderer, Record const& policyState) {
   KEL_ASSERT(!policyState->detail());
   renderer->_startJsonObject("output");
   renderFailedLists(renderer, policyState, false, true);
   renderer->endJsonDict();
}

void renderOutputSection(vellum::RendererV2* renderer, Record const& record) {
   if (record->errors()) {
      renderInterfaceOutputErrors(renderer, record);
      return;
   }
   renderer->_startJsonObject("output");
   renderAppliedLists(renderer, record, false, true);
   renderer->endJsonDict();
}

void renderCommonInterfaceModel(vellum::RendererV2* renderer, Record const& policyState) {
   KEL_ASSERT(policyState);
   renderPolicyHeading(renderer, policyState->name());
   if (policyState->errors()) {
      KEL_ASSERT(!policyState->detail());
   }
   if (!policyState->filterOutputPolicies()) {
      renderInputSection(renderer, policyState);
   }
   if (!policyState->filterInputPolicies()) {
      renderOutputSection(renderer, policyState);
   }
   if (!policyState->errors()) {
      renderRulesModel(renderer, policyState->ruleCount());
   }
}

// A failure in a direction that is not shown is not worth a warning under this command.
bool installationFailed(PolicyStateInterface const& record) {
   return (!record.filterOutputPolicies() && !record.failedIntfInput().empty()) ||
          (!record.filterInputPolicies() && !record.failedIntfOutput().empty());
}

bool hasInterfaces(Kel::Ptr<PolicyMap::IntfConfig const> const& intfConfig) {
   return intfConfig && !intfConfig->intf().empty();
}

bool byteCountersIn(Kel::Ptr<TrafficPolicy::Status const> const& status) {
   return status && status->byteCountersSupported();
}

}  // namespace

void ShowTrafficPolicyInterface::renderTrafficPolicy(std::uint32_t fd, std::uint32_t fmt,
                                                     std::uint32_t revision) {
   renderPolicyViews(
       *this, fd, fmt, revision, "",
       "WARNING: Policy installation failed. See \"show traffic-policy interface errors\" for "
       "details about the failures.\n",
       [](vellum::RendererV2* renderer, PolicyState::PtrConst const& record) {
          renderCommonInterfaceModel(renderer, Kel::ptrCast<PolicyStateInterface const>(record));
       },
       [](PolicyState const& record) {
          return installationFailed(static_cast<PolicyStateInterface const&>(record));
       });
}

void ShowTrafficPolicyInterface::renderTrafficPolicyCounters(std::uint32_t fd, std::uint32_t fmt,
                                                             std::uint32_t revision) {
   CommandOutput output(fd, fmt, revision);
   auto& renderer = output.renderer();
   bool const showInput = !filterOutputPolicies_ && hasInterfaces(intfConfigInput_);
   bool const showOutput = !filterInputPolicies_ && hasInterfaces(intfConfigOutput_);
   if (showInput) {
      renderer.writeString("Traffic-policies applied on input:");
      renderer.eol();
      renderCounterGranularity(renderer, policyParamStatus_, true);
      _renderTrafficPolicyCounters(&renderer, policyState(), policyName(), byteCountersIn(status()),
                                   true);
   }
   if (showOutput) {
      if (showInput) {
         renderer.eol();
      }
      renderer.writeString("Traffic-policies applied on output:");
      renderer.eol();
      renderCounterGranularity(renderer, policyParamStatus_, false);
      _renderTrafficPolicyCounters(&renderer, policyState(), policyName(),
                                   byteCountersIn(statusOutput_), false);
   }
   output.close();
}

}  // namespace TrafficPolicyCli
