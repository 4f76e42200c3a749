// Type descriptors and creators of the field-set usage records.
#include "TrafficPolicyCli/FieldSetState.h"

#include "Kel/Value.h"

namespace TrafficPolicyCli {

namespace {
template <typename Entry>
Kel::TypeInfo::Attribute fieldSetNameAttribute() {
   return Kel::readOnly("fieldSetName", &Entry::fieldSetName);
}
}  // namespace

Kel::TypeInfo const& PrefixFieldSetState::fwkType() const {
   using Self = PrefixFieldSetState;
   static Kel::TypeInfo const info("TrafficPolicyCli::PrefixFieldSetState", nullptr,
                                   {fieldSetNameAttribute<Self>(),
                                    Kel::scalar("totalAcceptPrefixes", &Self::totalAcceptPrefixes,
                                                &Self::totalAcceptPrefixesIs),
                                    Kel::scalar("totalExceptPrefixes", &Self::totalExceptPrefixes,
                                                &Self::totalExceptPrefixesIs)});
   return info;
}

namespace {
// One descriptor per record type (the static is per instantiation), both of the counted shape.
template <typename Record>
Kel::TypeInfo const& countedTypeInfo(char const* name) {
   static Kel::TypeInfo const info(name, nullptr,
                                   {fieldSetNameAttribute<CountedFieldSetState>(),
                                    Kel::scalar("totalEntries", &CountedFieldSetState::totalEntries,
                                                &CountedFieldSetState::totalEntriesIs)});
   return info;
}
}  // namespace

Kel::TypeInfo const& L4PortFieldSetState::fwkType() const {
   return countedTypeInfo<L4PortFieldSetState>("TrafficPolicyCli::L4PortFieldSetState");
}
Kel::TypeInfo const& VlanFieldSetState::fwkType() const {
   return countedTypeInfo<VlanFieldSetState>("TrafficPolicyCli::VlanFieldSetState");
}

Kel::TypeInfo const& FieldSetState::fwkType() const {
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::FieldSetState", nullptr,
       {Kel::readOnly("name", &FieldSetState::name),
        Kel::readOnly("ipPrefixFieldSet", &FieldSetState::ipPrefixFieldSet),
        Kel::readOnly("ipv6PrefixFieldSet", &FieldSetState::ipv6PrefixFieldSet),
        Kel::readOnly("l4PortFieldSet", &FieldSetState::l4PortFieldSet),
        Kel::readOnly("vlanFieldSet", &FieldSetState::vlanFieldSet)});
   return info;
}

Kel::Ptr<FieldSetState> FieldSetStateIs(Kel::String const& name) {
   return Kel::make<FieldSetState>(name);
}
Kel::Ptr<FieldSetState> fieldSetStateFactory(Kel::String const& name) {
   return FieldSetStateIs(name);
}

}  // namespace TrafficPolicyCli
