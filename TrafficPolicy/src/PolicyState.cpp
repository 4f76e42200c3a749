// Type descriptor and creators of the policy record.
#include "TrafficPolicyCli/PolicyState.h"

#include "Kel/Value.h"

namespace TrafficPolicyCli {

Kel::TypeInfo const& PolicyState::typeInfo() {
   using Self = PolicyState;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::PolicyState", nullptr,
       {Kel::readOnly("name", &Self::name),
        Kel::readOnly("matchOptionList", &Self::matchOptionList),
        Kel::readOnly("policyMapConfig", &Self::policyMapConfig),
        Kel::readOnly("policyStatus", &Self::policyStatus),
        Kel::readOnly("classMapConfig", &Self::classMapConfig),
        Kel::readOnly("ruleNames", &Self::ruleNames),
        Kel::readOnly("classMapStatusInput", &Self::classMapStatusInput),
        Kel::scalar("ruleCount", &Self::ruleCount, &Self::ruleCountIs),
        Kel::scalar("summary", &Self::summary, &Self::summaryIs),
        Kel::scalar("errors", &Self::errors, &Self::errorsIs),
        Kel::scalar("detail", &Self::detail, &Self::detailIs),
        Kel::scalar("indentCountPerLevel", &Self::indentCountPerLevel,
                    &Self::indentCountPerLevelIs),
        Kel::readOnly("counter", &Self::counter),
        Kel::readOnly("namedCounter", &Self::namedCounter),
        Kel::readOnly("inputClassCounters", &Self::inputClassCounters),
        Kel::readOnly("inputNamedCounters", &Self::inputNamedCounters),
        Kel::scalar("undefinedCounter", &Self::undefinedCounter, &Self::undefinedCounterIs),
        Kel::scalar("undefinedFieldSet", &Self::undefinedFieldSet, &Self::undefinedFieldSetIs),
        Kel::scalar("byteCountersSupported", &Self::byteCountersSupported,
                    &Self::byteCountersSupportedIs)});
   return info;
}

Kel::String const& PolicyState::ruleName(std::uint32_t ruleIndex) const {
   static Kel::String const none;
   auto const* name = ruleNames_.lookup(ruleIndex);
   return name ? *name : none;
}

Kel::Ptr<PolicyState> PolicyStateIs(Kel::String const& name) {
   return Kel::make<PolicyState>(name);
}
Kel::Ptr<PolicyState> policyStateFactory(Kel::String const& name) {
   return PolicyStateIs(name);
}

}  // namespace TrafficPolicyCli
