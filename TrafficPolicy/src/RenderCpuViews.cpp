// The CPU command's views: per policy the VRFs it is configured, applied or failed on, and its
// counters, which on the CPU are never kept per interface.
#include <array>

#include "Kel/Assert.h"
#include "TrafficPolicyCli/CommandOutput.h"
#include "TrafficPolicyCli/PolicyViews.h"
#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"

namespace TrafficPolicyCli {

namespace {

using PolicyMap::ClassMapMatchOption;
using Record = PolicyStateCpu::PtrConst;

constexpr std::array kMatchOptions = {ClassMapMatchOption::ipv4, ClassMapMatchOption::ipv6};
struct OptionLabels {
   char const* applied;
   char const* appliedKey;
   char const* failed;
   char const* failedKey;
   char const* installationErrorsKey;
};
constexpr OptionLabels kOptionLabels[] = {
    {"Applied on CPU for IPv4 traffic in VRFs: ", "ipv4AppliedVrfs",
     "Failed on CPU for IPv4 traffic in VRFs: ", "ipv4FailedVrfs", "ipv4InstallationErrors"},
    {"Applied on CPU for IPv6 traffic in VRFs: ", "ipv6AppliedVrfs",
     "Failed on CPU for IPv6 traffic in VRFs: ", "ipv6FailedVrfs", "ipv6InstallationErrors"},
};

PerAfVrfList::NameMap const& vrfsIn(PolicyStateCpu::OptionVrfLists const& lists,
                                    ClassMapMatchOption option) {
   static PerAfVrfList::NameMap const none;
   auto const* list = lists.lookup(option);
   return list ? (*list)->vrfList() : none;
}

void renderCommonModelCpu(vellum::RendererV2* renderer, Record const& policyState) {
   KEL_ASSERT(policyState);
   renderPolicyHeading(renderer, policyState->name());
   bool const showAll = policyState->detail();
   if (policyState->errors()) {
      KEL_ASSERT(!policyState->detail());
      for (auto const option : kMatchOptions) {
         auto const& labels = kOptionLabels[static_cast<std::size_t>(option)];
         renderListEntry(*renderer, labels.failed, labels.failedKey,
                         vrfsIn(policyState->failedVrf(), option), showAll, true);
         renderCpuInstallErrors(renderer, labels.installationErrorsKey, policyState, option,
                                policyState->indentCountPerLevel() + kListIndent);
      }
      return;
   }
   renderListEntry(*renderer, "Configured on CPU for VRFs: ", "configuredVrfs",
                   policyState->configuredVrf(), showAll, true);
   for (auto const option : kMatchOptions) {
      auto const& labels = kOptionLabels[static_cast<std::size_t>(option)];
      renderListEntry(*renderer, labels.applied, labels.appliedKey,
                      vrfsIn(policyState->appliedVrf(), option), showAll, true);
   }
   renderRulesModel(renderer, policyState->ruleCount());
}

}  // namespace

void ShowTrafficPolicyCpu::renderTrafficPolicy(std::uint32_t fd, std::uint32_t fmt,
                                               std::uint32_t revision) {
   bool const vrfAll = vrfConfig_ && vrfConfig_->vrf().contains("all");
   renderPolicyViews(
       *this, fd, fmt, revision,
       vrfAll ? "NOTE: \"vrf all\" option is applied on CPU for VRFs which are not attached to a "
                "specific traffic policy\n"
              : "",
       "WARNING: Policy installation failed. See \"show traffic-policy cpu errors\" for "
       "details about the failures.\n",
       [](vellum::RendererV2* renderer, PolicyState::PtrConst const& record) {
          renderCommonModelCpu(renderer, Kel::ptrCast<PolicyStateCpu const>(record));
       },
       [](PolicyState const& record) {
          return !static_cast<PolicyStateCpu const&>(record).failedVrf().empty();
       });
}

void ShowTrafficPolicyCpu::renderTrafficPolicyCounters(std::uint32_t fd, std::uint32_t fmt,
                                                       std::uint32_t revision) {
   CommandOutput output(fd, fmt, revision);
   _renderTrafficPolicyCounters(&output.renderer(), policyState(), policyName(),
                                status() && status()->byteCountersSupported(), true);
   output.close();
}

}  // namespace TrafficPolicyCli
