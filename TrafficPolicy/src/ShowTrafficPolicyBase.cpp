// The show object's handles and the interrupt handling around rendering.
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"

#include <cstdio>

#include "vellum/SigIntException.h"

namespace TrafficPolicyCli {

ShowTrafficPolicyBase::ShowTrafficPolicyBase(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS)
    : config_(config),
      status_(status),
      counter_(counter),
      policyName_(policyName),
      summary_(summary),
      errors_(errors),
      detail_(detail),
      counters_(counters),
      fifthFlag_(fifthFlag),
      fieldSetConfig_(fieldSetConfig),
      trafficPolicyHwStatus_(trafficPolicyHwStatus),
      counterTable_(counterTable) {}

Kel::TypeInfo const& ShowTrafficPolicyBase::typeInfo() {
   using Self = ShowTrafficPolicyBase;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::ShowTrafficPolicyBase", nullptr,
       {Kel::readOnly("config", &Self::config), Kel::readOnly("status", &Self::status),
        Kel::readOnly("counter", &Self::counter), Kel::readOnly("policyName", &Self::policyName),
        Kel::readOnly("summary", &Self::summary), Kel::readOnly("errors", &Self::errors),
        Kel::readOnly("detail", &Self::detail), Kel::readOnly("counters", &Self::counters),
        Kel::readOnly("fifthFlag", &Self::fifthFlag),
        Kel::readOnly("fieldSetConfig", &Self::fieldSetConfig),
        Kel::readOnly("trafficPolicyHwStatus", &Self::trafficPolicyHwStatus),
        Kel::readOnly("counterTable", &Self::counterTable)});
   return info;
}

void ShowTrafficPolicyBase::render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) {
   try {
      if (counters_) {
         renderTrafficPolicyCounters(fd, fmt, revision);
      } else {
         renderTrafficPolicy(fd, fmt, revision);
      }
   } catch (vellum::SigIntException const& interrupted) {
      std::printf("exiting %s\n", interrupted.what());
   }
}

void ShowTrafficPolicyBase::renderTrafficPolicy(std::uint32_t, std::uint32_t, std::uint32_t) {}

void ShowTrafficPolicyBase::renderTrafficPolicyCounters(std::uint32_t, std::uint32_t,
                                                        std::uint32_t) {}

}  // namespace TrafficPolicyCli
