// The show-command object behind `show traffic-policy interface` and `show traffic-policy cpu`.
// `render` works in two phases: it caches everything it will print into one PolicyState per
// policy (and one FieldSetState), then renders those records. This base holds the caching
// pipeline; the interface and CPU subclasses override the steps that differ and render.
#pragma once

#include <cstdint>

#include "Kel/OrderedMap.h"
#include "PolicyMap/Actions.h"
#include "PolicyMap/CounterStatusReader.h"
#include "TrafficPolicyCli/Factories.h"
#include "TrafficPolicyCli/FieldSetState.h"
#include "TrafficPolicyCli/PolicyState.h"
#include "TrafficPolicyCli/RuleLookups.h"
#include "TrafficPolicyCli/ShowCommand.h"

namespace vellum {
class RendererV2;
}

namespace TrafficPolicyCli {

struct RuleEntities;

class ShowTrafficPolicyBase : public ShowCommand {
 public:
   using PolicyStateMap = Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyState>>;
   using CounterReader = PolicyMap::PolicyMapCounterStatusReaderBase;
   using PolicyMapStatusPtr = Kel::Ptr<PolicyMap::PolicyMapStatus const>;

   explicit ShowTrafficPolicyBase(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS);

   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   // Caches, then renders the policies or, with the counters view, their counters. An interrupt
   // from the renderer ends the output with "exiting ..." and a normal return.
   void render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override;
   // Field-set usage first, then the policies.
   void cacheState() override;

   // ---- Virtual steps, in slot order ----
   virtual void renderTrafficPolicy(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision);
   virtual void renderTrafficPolicyCounters(std::uint32_t fd, std::uint32_t fmt,
                                            std::uint32_t revision);
   // `indent` is where the action's later lines start (under the first action).
   virtual void renderCountAction(vellum::RendererV2* renderer, std::uint32_t ruleIndex,
                                  PolicyState::PtrConst const& policyState,
                                  Kel::Ptr<PolicyMap::CountAction const> const& action,
                                  std::uint32_t indent);
   virtual void cachePoliciesState();
   virtual void cachePolicyState(Kel::String const& policyName);
   virtual void cacheIntfStatus(PolicyMapStatusPtr const& policyStatus);
   virtual void cacheInstalledState(PolicyMapStatusPtr const& policyStatus,
                                    PolicyMap::ClassMapMatchOption matchOption);
   virtual void cacheInstallError(PolicyMapStatusPtr const& policyStatus,
                                  PolicyMap::ClassMapMatchOption matchOption);
   virtual void cacheCounters(Kel::String const& policyName);
   virtual Kel::Ptr<PolicyState> getOrCreatePolicyState(Kel::String const& policyName);
   virtual Kel::Ptr<CounterReader const> createCounterStatusHelper(bool isInput);
   virtual PolicyMapStatusPtr getPolicyMapStatus(Kel::String const& policyName);
   virtual void cachePolicyMapStatus(PolicyMapStatusPtr const& policyStatus);
   virtual void cacheClassMapStatus(
       Kel::String const& policyName, std::uint32_t ruleIndex,
       Kel::Ptr<PolicyMap::ClassMapStatus const> const& classMapStatus);

   // ---- Caching steps that every variant shares ----
   void cacheClassState(Kel::Ptr<PolicyMap::PolicyMapSubConfig const> const& pmapSubConfig);
   void cacheFieldSetState();

   // ---- Rendering steps that every variant shares ----
   // Every rule of one policy, each as one element of the JSON list the caller has opened: the
   // header line "match NAME OPTION" at `indent`, then its matches (unless the policy's first
   // view flag leaves them out) and its actions one level further in. The renderer's output
   // context chooses the JSON form of protocols.
   void renderRules(vellum::RendererV2* renderer, PolicyState::PtrConst const& policyState,
                    std::uint32_t indent);
   // The actions of one rule at `indent`; nothing when the rule has none.
   void renderActions(vellum::RendererV2* renderer, Kel::String const& ruleName,
                      std::uint32_t ruleIndex, PolicyState::PtrConst const& policyState,
                      std::uint32_t indent);
   // A count action naming a counter the policy never declared.
   static void renderUndeclaredInputNamedCounter(vellum::RendererV2* renderer,
                                                 Kel::String const& counterName);

   // ---- Attributes ----
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

   Kel::Ptr<FieldSetState> const& fieldSetState() const noexcept { return fieldSetState_; }
   Kel::Ptr<FieldSetState> fieldSetStateIs(Kel::String const& name);
   void fieldSetStateDel() { fieldSetState_.reset(); }

   PolicyStateMap const& policyState() const noexcept { return policyState_; }
   Kel::Ptr<PolicyState> policyState(Kel::String const& name) const;
   void policyStateIs(Kel::String const& name, Kel::Ptr<PolicyState> state) {
      lastPolicyState_.reset();
      policyState_.insertOrAssign(name, std::move(state));
   }
   void policyStateDel(Kel::String const& name) {
      lastPolicyState_.reset();
      policyState_.erase(name);
   }
   void policyStateDelAll() {
      lastPolicyState_.reset();
      policyState_.clear();
   }

   Kel::Ptr<CounterReader const> const& inputCounterHelper() const noexcept {
      return inputCounterHelper_;
   }

 protected:
   // The policy's record, made by `factory` on the first mention of the name.
   template <typename Factory>
   Kel::Ptr<PolicyState> policyStateOrCreate(Kel::String const& name, Factory factory) {
      if (auto existing = policyState(name)) {
         return existing;
      }
      Kel::Ptr<PolicyState> record = factory(name);
      policyStateIs(name, record);
      return record;
   }

   // The reader of live counters over one direction's status or counter table, as the hardware
   // publishes them.
   Kel::Ptr<CounterReader const> counterReaderOver(
       Kel::Ptr<TrafficPolicy::Status const> const& directionStatus,
       Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters const> const& directionTable) const;

   // The policy's named and rule counters, read through one direction's reader into that
   // direction's caches of the record.
   void cacheCountersThrough(Kel::Ptr<CounterReader const> const& reader,
                             Kel::String const& policyName, bool isInput);

   // The rule's live input counter among the record's; null when there is none. The rules of the
   // policy being rendered are answered from its lookups, any other by name.
   PolicyMap::PacketDataStatus const* inputRuleCounter(PolicyState const& record,
                                                       std::uint32_t ruleIndex,
                                                       Kel::String const& ruleName) const;

 private:
   // The rule's actions in the policy's configuration; null when it has none.
   PolicyMap::ClassAction const* ruleActions(PolicyState const& record, std::uint32_t ruleIndex,
                                             Kel::String const& ruleName) const;

   // Caches the rule's status at `ruleIndex` and checks its references when this direction's
   // status lists the rule as processed, leaving the match to show in `rule`; false when the rule
   // is not processed.
   class FoundFieldSets;
   bool cacheProcessedRule(PolicyState& record, Kel::String const& policyName,
                           Kel::String const& name, RuleEntities& rule, std::uint32_t ruleIndex,
                           FoundFieldSets& found);
   void checkFieldSetReferences(PolicyState& record, PolicyMap::ClassMapMatch const& match,
                                FoundFieldSets& found) const;
   void checkCounterReference(PolicyState& record, Kel::String const& ruleName,
                              Kel::String const& counterName) const;

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
   Kel::Ptr<FieldSetState> fieldSetState_;
   PolicyStateMap policyState_;
   // Caching asks for the same policy's record once per rule; the last answer is kept.
   mutable Kel::String lastPolicyName_;
   mutable Kel::Ptr<PolicyState> lastPolicyState_;
   Kel::Ptr<CounterReader const> inputCounterHelper_;
   // The field-set names found defined, while cachePoliciesState walks the policies.
   FoundFieldSets* foundFieldSets_ = nullptr;
   // Joined by renderRules for the policy whose rules it renders, and forgotten when it is done.
   RuleLookups ruleLookups_;
};

}  // namespace TrafficPolicyCli
