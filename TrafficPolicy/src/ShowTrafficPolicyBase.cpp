// The show object's shared caching pipeline: every policy of the status in name order, its
// configuration and status, its named counters, its rules and its live counters.
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"

#include <optional>
#include <vector>

#include "Kel/Assert.h"
#include "Kel/RobustWalk.h"
#include "Kel/Value.h"
#include "TrafficPolicyCli/CommandOutput.h"
#include "TrafficPolicyCli/PolicyStateVariants.h"
#include "TrafficPolicyCli/RecentNames.h"
#include "TrafficPolicyCli/RuleEntities.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

constexpr std::uint32_t kIndentCountPerLevel = 3;

template <typename Map>
typename Map::mapped_type valueOr(Map const& map, typename Map::key_type const& key) {
   auto const* value = map.lookup(key);
   return value ? *value : typename Map::mapped_type();
}

}  // namespace

// The field-set names of each kind that the rules name and that are defined, kept as they are
// found (see RecentNames), for the rules of one policy or of every policy of a walk.
class ShowTrafficPolicyBase::FoundFieldSets {
 public:
   // Without definitions there is nothing to check against, and no check is asked for.
   explicit FoundFieldSets(Classification::FieldSetConfig const* fieldSets)
       : fieldSets_(fieldSets) {}

   // Every field-set name a filter refers to, checked against the sets of its kind: VLAN sets
   // first, then prefix sets of the family, then L4-port sets.
   bool allDefined(Classification::StructuredFilter const& filter, bool ipv4) {
      KEL_ASSERT(fieldSets_);
      auto const& fieldSets = *fieldSets_;
      for (auto const& tag : filter.vlanTags()) {
         if (!allDefined(tag.vlanFieldSets(), fieldSets.fieldSetVlan(), vlan_)) {
            return false;
         }
      }
      auto const& prefixSets = ipv4 ? fieldSets.fieldSetIpPrefix() : fieldSets.fieldSetIpv6Prefix();
      auto& prefixFound = ipv4 ? ipv4Prefix_ : ipv6Prefix_;
      for (auto const* names : {&filter.srcPrefixSets(), &filter.srcLpmPrefixSets(),
                                &filter.dstPrefixSets(), &filter.dstLpmPrefixSets()}) {
         if (!allDefined(*names, prefixSets, prefixFound)) {
            return false;
         }
      }
      for (auto const& [protocols, protoField] : filter.proto()) {
         for (auto const& ports : protoField->port()) {
            if (!allDefined(ports.srcL4PortFieldSets(), fieldSets.fieldSetL4Port(), l4Port_) ||
                !allDefined(ports.dstL4PortFieldSets(), fieldSets.fieldSetL4Port(), l4Port_)) {
               return false;
            }
         }
      }
      // An inner header is looked up in the sets of its own family, as it is shown.
      auto const& inner = filter.innerMatch();
      return !inner || allDefined(*inner, inner->addressFamily() == Quoll::AddressFamily::ipv4);
   }

 private:
   // Most of a rule's name lists are empty: those cost a test in line, not a walk.
   template <typename SubConfig>
   [[gnu::always_inline]] static bool allDefined(
       Classification::NameSet const& names, Classification::FieldSetMap<SubConfig> const& defined,
       RecentNames<bool>& found) {
      return names.empty() || allNamesDefined(names, defined, found);
   }
   template <typename SubConfig>
   static bool allNamesDefined(Classification::NameSet const& names,
                               Classification::FieldSetMap<SubConfig> const& defined,
                               RecentNames<bool>& found) {
      auto const isDefined = [&defined](Kel::String const& name) { return defined.contains(name); };
      for (auto const& name : names) {
         if (!found.find(name, isDefined)) {
            return false;
         }
      }
      return true;
   }

   Classification::FieldSetConfig const* fieldSets_;
   RecentNames<bool> vlan_;
   RecentNames<bool> ipv4Prefix_;
   RecentNames<bool> ipv6Prefix_;
   RecentNames<bool> l4Port_;
};

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
      counterTable_(counterTable) {
   fieldSetStateIs("");
}

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
        Kel::readOnly("counterTable", &Self::counterTable),
        Kel::readOnly("fieldSetState", &Self::fieldSetState),
        Kel::readOnly("policyState",
                      static_cast<PolicyStateMap const& (Self::*)() const>(&Self::policyState)),
        Kel::readOnly("inputCounterHelper", &Self::inputCounterHelper)});
   return info;
}

void ShowTrafficPolicyBase::render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) {
   renderUntilInterrupted([&] {
      cacheState();
      if (counters_) {
         renderTrafficPolicyCounters(fd, fmt, revision);
      } else {
         renderTrafficPolicy(fd, fmt, revision);
      }
   });
}

void ShowTrafficPolicyBase::cacheState() {
   cacheFieldSetState();
   cachePoliciesState();
}

void ShowTrafficPolicyBase::renderTrafficPolicy(std::uint32_t, std::uint32_t, std::uint32_t) {}

void ShowTrafficPolicyBase::renderTrafficPolicyCounters(std::uint32_t, std::uint32_t,
                                                        std::uint32_t) {}

void ShowTrafficPolicyBase::renderCountAction(vellum::RendererV2*, std::uint32_t,
                                              PolicyState::PtrConst const&,
                                              Kel::Ptr<PolicyMap::CountAction const> const&,
                                              std::uint32_t) {}

void ShowTrafficPolicyBase::cachePoliciesState() {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyBase::cachePoliciesState()";
   inputCounterHelper_ = createCounterStatusHelper(true);
   if (!status_) {
      return;
   }
   // The definitions do not change while a command runs, so what is found defined for one policy
   // holds for the next.
   FoundFieldSets found(fieldSetConfig_.get());
   foundFieldSets_ = &found;
   struct ForgetFound {
      FoundFieldSets*& found;
      ~ForgetFound() { found = nullptr; }
   } const forgetFound{foundFieldSets_};
   Kel::robustWalk(status_->policyMapStatus(),
                   [this](Kel::String const& name) { cachePolicyState(name); });
}

void ShowTrafficPolicyBase::cachePolicyState(Kel::String const& policyName) {
   TP_TRACE(8) << "virtual void TrafficPolicyCli::ShowTrafficPolicyBase::cachePolicyState("
                  "const Kel::String&)policyName:"
               << policyName.view();
   auto record = getOrCreatePolicyState(policyName);
   KEL_ASSERT(record && "only the interface and CPU show objects make policy records");
   record->byteCountersSupportedIs(status_ && status_->byteCountersSupported());
   record->summaryIs(summary_);
   record->errorsIs(errors_);
   record->detailIs(detail_);
   record->indentCountPerLevelIs(kIndentCountPerLevel);
   record->policyMapConfigIs(config_ ? valueOr(config_->policyMapConfig(), policyName) : nullptr);

   auto const policyStatus = getPolicyMapStatus(policyName);
   KEL_ASSERT(policyStatus);
   cachePolicyMapStatus(policyStatus);

   if (!record->policyMapConfig()) {
      TP_TRACE(7) << "PolicyMapConfig not found for " << policyName.view();
      return;
   }
   auto const currCfg = record->policyMapConfig()->currCfg();
   if (!currCfg) {
      TP_TRACE(7) << "currCfg not found for " << policyName.view();
      return;
   }
   for (auto const& counterName : currCfg->namedCounter()) {
      record->namedCounterIs(counterName, true);
   }
   cacheClassState(currCfg);
   cacheIntfStatus(policyStatus);
   record->matchOptionListIs(PolicyMap::ClassMapMatchOption::ipv4);
   record->matchOptionListIs(PolicyMap::ClassMapMatchOption::ipv6);
   for (auto const option : record->matchOptionList()) {
      cacheInstalledState(policyStatus, option);
      cacheInstallError(policyStatus, option);
   }
   cacheCounters(policyName);
   record->counterIs(counter_);
}

void ShowTrafficPolicyBase::cacheIntfStatus(PolicyMapStatusPtr const&) {}

void ShowTrafficPolicyBase::cacheInstalledState(PolicyMapStatusPtr const&,
                                                PolicyMap::ClassMapMatchOption) {}

void ShowTrafficPolicyBase::cacheInstallError(PolicyMapStatusPtr const&,
                                              PolicyMap::ClassMapMatchOption) {}

void ShowTrafficPolicyBase::cacheCounters(Kel::String const& policyName) {
   cacheCountersThrough(inputCounterHelper_, policyName, true);
}

void ShowTrafficPolicyBase::cacheCountersThrough(Kel::Ptr<CounterReader const> const& reader,
                                                 Kel::String const& policyName, bool isInput) {
   auto record = getOrCreatePolicyState(policyName);
   PolicyMap::PolicyMapSmKey const key{policyName, Kel::String()};
   auto const policyStatus = getPolicyMapStatus(policyName);
   if (!reader) {
      return;
   }
   // Only interface records have an output half, and only the interface object caches it.
   auto const outputHalf = [&record] { return static_cast<PolicyStateInterface*>(record.get()); };
   Kel::robustWalk(record->namedCounter(), [&](Kel::String const& name) {
      if (auto data = reader->namedCounterData(key, name)) {
         if (isInput) {
            record->inputNamedCountersIs(data);
         } else {
            outputHalf()->outputNamedCountersIs(data);
         }
      }
   });
   if (!policyStatus) {
      return;
   }
   Kel::robustWalk(policyStatus->classMapStatus(), [&](Kel::String const& name) {
      if (auto data = reader->classCounterData(key, name)) {
         if (isInput) {
            record->inputClassCountersIs(data);
         } else {
            outputHalf()->outputClassCountersIs(data);
         }
      }
   });
}

Kel::Ptr<PolicyState> ShowTrafficPolicyBase::getOrCreatePolicyState(Kel::String const&) {
   return nullptr;
}

Kel::Ptr<ShowTrafficPolicyBase::CounterReader const>
ShowTrafficPolicyBase::createCounterStatusHelper(bool) {
   return counterReaderOver(status_, counterTable_);
}

Kel::Ptr<ShowTrafficPolicyBase::CounterReader const> ShowTrafficPolicyBase::counterReaderOver(
    Kel::Ptr<TrafficPolicy::Status const> const& directionStatus,
    Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters const> const& directionTable) const {
   if (TrafficPolicy::counterBackEndOf(trafficPolicyHwStatus_.get()) ==
       TrafficPolicy::CounterBackEnd::pylon) {
      return Kel::make<PolicyMap::PolicyMapPylonCounterStatusReader>(directionTable);
   }
   return Kel::make<PolicyMap::PolicyMapLedgerCounterStatusReader>(directionStatus);
}

ShowTrafficPolicyBase::PolicyMapStatusPtr ShowTrafficPolicyBase::getPolicyMapStatus(
    Kel::String const& policyName) {
   return status_ ? valueOr(status_->policyMapStatus(), policyName) : nullptr;
}

void ShowTrafficPolicyBase::cachePolicyMapStatus(PolicyMapStatusPtr const& policyStatus) {
   if (!policyStatus) {
      return;
   }
   auto record = getOrCreatePolicyState(policyStatus->name());
   if (record->policyStatus() != policyStatus) {
      record->policyStatusIs(policyStatus);
   }
}

void ShowTrafficPolicyBase::cacheClassMapStatus(
    Kel::String const& policyName, std::uint32_t ruleIndex,
    Kel::Ptr<PolicyMap::ClassMapStatus const> const& classMapStatus) {
   if (!classMapStatus) {
      return;
   }
   getOrCreatePolicyState(policyName)->classMapStatusInputIs(ruleIndex, classMapStatus);
}

void ShowTrafficPolicyBase::cacheClassState(
    Kel::Ptr<PolicyMap::PolicyMapSubConfig const> const& pmapSubConfig) {
   auto const& policyName = pmapSubConfig->name();
   auto record = getOrCreatePolicyState(policyName);
   auto const policyStatus = getPolicyMapStatus(policyName);
   KEL_ASSERT(policyStatus);

   std::vector<Kel::String> ruleNames;
   ruleNames.reserve(pmapSubConfig->rule().size());
   Kel::robustWalk(pmapSubConfig->rule(), [&ruleNames](std::uint32_t, Kel::String name) {
      ruleNames.push_back(std::move(name));
   });
   auto rules = ruleEntitiesByName(ruleNames, *policyStatus, *pmapSubConfig);

   std::optional<FoundFieldSets> ownFound;
   auto& found = foundFieldSets_ ? *foundFieldSets_ : ownFound.emplace(fieldSetConfig_.get());

   // A policy applied in both directions is cached once per direction, and the two statuses may
   // list different rules. The record shows every rule that either pass processed, once and in
   // sequence order, with the match of the latest pass that processed it. Both passes walk the
   // same rules in the same order, so the rules an earlier pass left are met in step. The match to
   // show is left in the rule's entry; an entry without one is not shown.
   auto const& earlierNames = record->ruleNames();
   auto earlier = earlierNames.begin();
   std::uint32_t ruleIndex = 0;
   std::uint32_t shownCount = 0;
   for (std::size_t position = 0; position < ruleNames.size(); ++position) {
      auto const& name = ruleNames[position];
      auto& rule = rules[position];
      bool const cachedEarlier = earlier != earlierNames.end() && (*earlier).value == name;
      if (cacheProcessedRule(*record, policyName, name, rule, ruleIndex, found)) {
         ++ruleIndex;
      } else if (cachedEarlier) {
         rule.match = *record->classMapConfig().lookup((*earlier).index);
      }
      if (cachedEarlier) {
         ++earlier;
      }
      shownCount += rule.match ? 1 : 0;
   }
   TP_TRACE(4) << "ruleCount " << ruleIndex << ", total class count " << ruleNames.size();
   record->ruleCountIs(ruleIndex);

   // Filled from the last index down, so that both arrays are sized once, to the rules shown,
   // instead of doubling on the way up.
   record->classMapConfigDelAll();
   for (auto position = ruleNames.size(); position-- > 0;) {
      if (auto& match = rules[position].match) {
         record->classMapConfigIs(--shownCount, std::move(ruleNames[position]), std::move(match));
      }
   }
}

bool ShowTrafficPolicyBase::cacheProcessedRule(PolicyState& record, Kel::String const& policyName,
                                               Kel::String const& name, RuleEntities& rule,
                                               std::uint32_t ruleIndex, FoundFieldSets& found) {
   auto const& cmapStatus = rule.status;
   if (!cmapStatus) {
      TP_TRACE(7) << "ClassMapStatus not found for " << name.view();
      return false;
   }
   if (cmapStatus->matchs().empty()) {
      TP_TRACE(1) << "No match option status found for " << name.view();
      return false;
   }
   // A rule is processed for one match option only; the state loader refuses any other.
   KEL_ASSERT(cmapStatus->matchs().size() == 1);
   auto const option = *cmapStatus->matchs().begin();

   if (rule.match) {
      TP_TRACE(7) << "Found class match config for " << name.view() << ", " << option;
   } else {
      rule.match = Kel::make<PolicyMap::ClassMapMatch>(option);
   }
   TP_TRACE(7) << "Caching " << ruleIndex << " " << name.view() << ", " << option;
   cacheClassMapStatus(policyName, ruleIndex, cmapStatus);
   if (!record.undefinedFieldSet() && fieldSetConfig_) {
      checkFieldSetReferences(record, *rule.match, found);
   }
   checkCounterReference(record, name, rule.counterName);
   return true;
}

void ShowTrafficPolicyBase::checkFieldSetReferences(PolicyState& record,
                                                    PolicyMap::ClassMapMatch const& match,
                                                    FoundFieldSets& found) const {
   auto const& filter = match.structuredFilter();
   if (!filter) {
      return;
   }
   bool const ipv4 = match.option() == PolicyMap::ClassMapMatchOption::ipv4;
   if (!found.allDefined(*filter, ipv4)) {
      record.undefinedFieldSetIs(true);
   }
}

void ShowTrafficPolicyBase::checkCounterReference(PolicyState& record, Kel::String const& ruleName,
                                                  Kel::String const& counterName) const {
   if (!counterName.empty() && !record.namedCounter().contains(counterName)) {
      TP_TRACE(1) << "Class: " << ruleName.view()
                  << " has undefined counter: " << counterName.view();
      record.undefinedCounterIs(true);
   }
}

void ShowTrafficPolicyBase::cacheFieldSetState() {
   KEL_ASSERT(fieldSetConfig());
   auto& usage = *fieldSetState_;
   for (auto const& [name, fieldSet] : fieldSetConfig_->fieldSetL4Port()) {
      auto const currCfg = fieldSet->currCfg();
      usage.l4PortFieldSetIs(name)->totalEntriesIs(currCfg ? currCfg->numPorts() : 0);
   }
   auto const countPrefixes = [](auto const& fieldSet, PrefixFieldSetState& entry) {
      if (auto const currCfg = fieldSet->currCfg()) {
         entry.totalAcceptPrefixesIs(currCfg->numPrefixes());
         entry.totalExceptPrefixesIs(currCfg->numExceptPrefixes());
      }
   };
   for (auto const& [name, fieldSet] : fieldSetConfig_->fieldSetIpPrefix()) {
      countPrefixes(fieldSet, *usage.ipPrefixFieldSetIs(name));
   }
   for (auto const& [name, fieldSet] : fieldSetConfig_->fieldSetIpv6Prefix()) {
      countPrefixes(fieldSet, *usage.ipv6PrefixFieldSetIs(name));
   }
   for (auto const& [name, fieldSet] : fieldSetConfig_->fieldSetVlan()) {
      auto const currCfg = fieldSet->currCfg();
      usage.vlanFieldSetIs(name)->totalEntriesIs(currCfg ? currCfg->numVlans() : 0);
   }
}

Kel::Ptr<FieldSetState> ShowTrafficPolicyBase::fieldSetStateIs(Kel::String const& name) {
   if (!fieldSetState_ || fieldSetState_->name() != name) {
      fieldSetState_ = fieldSetStateFactory(name);
   }
   return fieldSetState_;
}

Kel::Ptr<PolicyState> ShowTrafficPolicyBase::policyState(Kel::String const& name) const {
   if (!lastPolicyState_ || lastPolicyName_ != name) {
      lastPolicyState_ = valueOr(policyState_, name);
      lastPolicyName_ = name;
   }
   return lastPolicyState_;
}

}  // namespace TrafficPolicyCli
