// The cache of everything one show command prints about one traffic policy: pointers into its
// live configuration and status, its rules in rule order, its named counters and counter values,
// the match options in play and the command's view flags. Interface and CPU views add what they
// need in PolicyStateInterface and PolicyStateCpu.
#pragma once

#include <cstdint>

#include "Kel/DenseArray.h"
#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/PolicyMapConfig.h"
#include "PolicyMap/PolicyMapStatus.h"
#include "TrafficPolicy/Counter.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"
#include "TrafficPolicyCli/InterfaceRecords.h"

namespace TrafficPolicyCli {

// Filled in name order (caching walks the status's rules and the policy's counters in order), which
// the ordered map appends without a search or an allocation per entry.
using CounterDataMap = Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMap::PacketDataStatus const>>;

class PolicyState : public Kel::Entity {
 public:
   using PtrConst = Kel::Ptr<PolicyState const>;

   explicit PolicyState(Kel::String name) : name_(std::move(name)) {}
   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   Kel::String const& name() const noexcept { return name_; }

   Kel::OrderedSet<PolicyMap::ClassMapMatchOption> const& matchOptionList() const noexcept {
      return matchOptionList_;
   }
   void matchOptionListIs(PolicyMap::ClassMapMatchOption option) {
      matchOptionList_.insert(option);
   }
   void matchOptionListDel(PolicyMap::ClassMapMatchOption option) {
      matchOptionList_.erase(option);
   }
   void matchOptionListDelAll() { matchOptionList_.clear(); }

   Kel::Ptr<PolicyMap::PolicyMapConfig const> const& policyMapConfig() const noexcept {
      return policyMapConfig_;
   }
   void policyMapConfigIs(Kel::Ptr<PolicyMap::PolicyMapConfig const> config) {
      policyMapConfig_ = std::move(config);
   }
   Kel::Ptr<PolicyMap::PolicyMapStatus const> const& policyStatus() const noexcept {
      return policyStatus_;
   }
   void policyStatusIs(Kel::Ptr<PolicyMap::PolicyMapStatus const> status) {
      policyStatus_ = std::move(status);
   }

   // The rules in rule order: the match cached for each, and the name of the rule that match
   // belongs to. Both are set and removed together, so that a rule is always shown whole under its
   // own name, whichever direction's status cached it.
   Kel::DenseArray<Kel::Ptr<PolicyMap::ClassMapMatch const>> const& classMapConfig()
       const noexcept {
      return classMapConfig_;
   }
   Kel::DenseArray<Kel::String> const& ruleNames() const noexcept { return ruleNames_; }
   void classMapConfigIs(std::uint32_t index, Kel::String ruleName,
                         Kel::Ptr<PolicyMap::ClassMapMatch const> match) {
      ruleNames_.set(index, std::move(ruleName));
      classMapConfig_.set(index, std::move(match));
   }
   void classMapConfigDel(std::uint32_t index) {
      ruleNames_.erase(index);
      classMapConfig_.erase(index);
   }
   void classMapConfigDelAll() {
      ruleNames_.clear();
      classMapConfig_.clear();
   }
   // The name of the rule at `ruleIndex`; empty when there is none.
   Kel::String const& ruleName(std::uint32_t ruleIndex) const;

   Kel::DenseArray<Kel::Ptr<PolicyMap::ClassMapStatus const>> const& classMapStatusInput()
       const noexcept {
      return classMapStatusInput_;
   }
   void classMapStatusInputIs(std::uint32_t index,
                              Kel::Ptr<PolicyMap::ClassMapStatus const> status) {
      classMapStatusInput_.set(index, std::move(status));
   }
   void classMapStatusInputDel(std::uint32_t index) { classMapStatusInput_.erase(index); }
   void classMapStatusInputDelAll() { classMapStatusInput_.clear(); }

   std::uint32_t ruleCount() const noexcept { return ruleCount_; }
   void ruleCountIs(std::uint32_t count) noexcept { ruleCount_ = count; }
   // Adds n (wrapping) and returns the new count.
   std::uint32_t ruleCountInc(std::uint32_t n) noexcept { return ruleCount_ += n; }

   bool summary() const noexcept { return summary_; }
   void summaryIs(bool summary) noexcept { summary_ = summary; }
   bool errors() const noexcept { return errors_; }
   void errorsIs(bool errors) noexcept { errors_ = errors; }
   bool detail() const noexcept { return detail_; }
   void detailIs(bool detail) noexcept { detail_ = detail; }
   std::uint32_t indentCountPerLevel() const noexcept { return indentCountPerLevel_; }
   void indentCountPerLevelIs(std::uint32_t indent) noexcept { indentCountPerLevel_ = indent; }

   Kel::Ptr<TrafficPolicy::Counter const> const& counter() const noexcept { return counter_; }
   void counterIs(Kel::Ptr<TrafficPolicy::Counter const> counter) { counter_ = std::move(counter); }

   Kel::OrderedMap<Kel::String, bool> const& namedCounter() const noexcept { return namedCounter_; }
   void namedCounterIs(Kel::String const& name, bool declared) {
      namedCounter_.insertOrAssign(name, declared);
   }
   void namedCounterDel(Kel::String const& name) { namedCounter_.erase(name); }
   void namedCounterDelAll() { namedCounter_.clear(); }

   CounterDataMap const& inputClassCounters() const noexcept { return inputClassCounters_; }
   // Entered under the record's own name.
   void inputClassCountersIs(Kel::Ptr<PolicyMap::PacketDataStatus const> status) {
      auto const& name = status->name();  // kept alive by the entry
      inputClassCounters_.insertOrAssign(name, std::move(status));
   }
   void inputClassCountersDel(Kel::String const& name) { inputClassCounters_.erase(name); }
   void inputClassCountersDelAll() { inputClassCounters_.clear(); }

   CounterDataMap const& inputNamedCounters() const noexcept { return inputNamedCounters_; }
   void inputNamedCountersIs(Kel::Ptr<PolicyMap::PacketDataStatus const> status) {
      auto const& name = status->name();  // kept alive by the entry
      inputNamedCounters_.insertOrAssign(name, std::move(status));
   }
   void inputNamedCountersDel(Kel::String const& name) { inputNamedCounters_.erase(name); }
   void inputNamedCountersDelAll() { inputNamedCounters_.clear(); }

   bool undefinedCounter() const noexcept { return undefinedCounter_; }
   void undefinedCounterIs(bool undefined) noexcept { undefinedCounter_ = undefined; }
   bool undefinedFieldSet() const noexcept { return undefinedFieldSet_; }
   void undefinedFieldSetIs(bool undefined) noexcept { undefinedFieldSet_ = undefined; }
   bool byteCountersSupported() const noexcept { return byteCountersSupported_; }
   void byteCountersSupportedIs(bool supported) noexcept { byteCountersSupported_ = supported; }

 private:
   Kel::String name_;
   Kel::OrderedSet<PolicyMap::ClassMapMatchOption> matchOptionList_;
   Kel::Ptr<PolicyMap::PolicyMapConfig const> policyMapConfig_;
   Kel::Ptr<PolicyMap::PolicyMapStatus const> policyStatus_;
   Kel::DenseArray<Kel::Ptr<PolicyMap::ClassMapMatch const>> classMapConfig_;
   Kel::DenseArray<Kel::String> ruleNames_;
   Kel::DenseArray<Kel::Ptr<PolicyMap::ClassMapStatus const>> classMapStatusInput_;
   std::uint32_t ruleCount_ = 0;
   bool summary_ = false;
   bool errors_ = false;
   bool detail_ = false;
   std::uint32_t indentCountPerLevel_ = 0;
   Kel::Ptr<TrafficPolicy::Counter const> counter_;
   Kel::OrderedMap<Kel::String, bool> namedCounter_;
   CounterDataMap inputClassCounters_;
   CounterDataMap inputNamedCounters_;
   bool undefinedCounter_ = false;
   bool undefinedFieldSet_ = false;
   bool byteCountersSupported_ = false;
};

Kel::Ptr<PolicyState> PolicyStateIs(Kel::String const& name);
Kel::Ptr<PolicyState> policyStateFactory(Kel::String const& name);

}  // namespace TrafficPolicyCli
