// The show-command object behind `show traffic-policy interface` and `show traffic-policy cpu`:
// it holds the command's model handles and options. Caching and rendering of policies build on
// it in the subclasses for interfaces and for the control plane.
#pragma once

#include <cstdint>

#include "TrafficPolicyCli/Factories.h"
#include "TrafficPolicyCli/ShowCommand.h"

namespace TrafficPolicyCli {

class ShowTrafficPolicyBase : public ShowCommand {
 public:
   ShowTrafficPolicyBase(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS);

   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   // Renders the policies or, with the counters view, their counters. An interrupt from the
   // renderer ends the output with "exiting ..." and a normal return.
   void render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override;

   virtual void renderTrafficPolicy(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision);
   virtual void renderTrafficPolicyCounters(std::uint32_t fd, std::uint32_t fmt,
                                            std::uint32_t revision);

   Kel::Ptr<TrafficPolicy::TrafficPolicyConfig const> const& config() const noexcept {
      return config_;
   }
   Kel::Ptr<TrafficPolicy::Status const> const& status() const noexcept { return status_; }
   Kel::Ptr<TrafficPolicy::Counter const> const& counter() const noexcept { return counter_; }
   Kel::String const& policyName() const noexcept { return policyName_; }
   bool summary() const noexcept { return summary_; }
   bool errors() const noexcept { return errors_; }
   bool detail() const noexcept { return detail_; }
   bool counters() const noexcept { return counters_; }
   bool fifthFlag() const noexcept { return fifthFlag_; }
   Kel::Ptr<Classification::FieldSetConfig const> const& fieldSetConfig() const noexcept {
      return fieldSetConfig_;
   }
   Kel::Ptr<TrafficPolicy::HwStatus const> const& trafficPolicyHwStatus() const noexcept {
      return trafficPolicyHwStatus_;
   }
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters const> const& counterTable() const noexcept {
      return counterTable_;
   }

 private:
   Kel::Ptr<TrafficPolicy::TrafficPolicyConfig const> config_;
   Kel::Ptr<TrafficPolicy::Status const> status_;
   Kel::Ptr<TrafficPolicy::Counter const> counter_;
   Kel::String policyName_;
   bool summary_;
   bool errors_;
   bool detail_;
   bool counters_;
   bool fifthFlag_;
   Kel::Ptr<Classification::FieldSetConfig const> fieldSetConfig_;
   Kel::Ptr<TrafficPolicy::HwStatus const> trafficPolicyHwStatus_;
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters const> counterTable_;
};

}  // namespace TrafficPolicyCli
