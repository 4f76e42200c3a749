// What the field-set listings share: rendering with interrupts handled, the source word and the
// reflected attributes.
#include "TrafficPolicyCli/ShowTrafficPolicyFieldSet.h"

#include <string>

#include "Kel/Value.h"

namespace TrafficPolicyCli {

ShowTrafficPolicyFieldSetBase::ShowTrafficPolicyFieldSetBase(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName)
    : fieldSetConfig_(fieldSetConfig), fieldSetName_(fieldSetName) {}

void ShowTrafficPolicyFieldSetBase::render(std::uint32_t fd, std::uint32_t fmt,
                                           std::uint32_t revision) {
   renderUntilInterrupted([&] { renderFieldSets(fd, fmt, revision); });
}

std::string_view ShowTrafficPolicyFieldSetBase::contentsSourceShowString(
    Classification::ContentsSource source, bool json) {
   using Classification::ContentsSource;
   if (source == ContentsSource::staticSource) {
      return "static";
   }
   if (source == ContentsSource::bgp && !json) {
      return "BGP";
   }
   static std::string const firstText(Classification::toString(source));
   return firstText;
}

std::vector<Kel::TypeInfo::Attribute> ShowTrafficPolicyFieldSetBase::listingAttributes(
    std::vector<Kel::TypeInfo::Attribute> own) {
   using Self = ShowTrafficPolicyFieldSetBase;
   std::vector<Kel::TypeInfo::Attribute> attributes{
       Kel::readOnly("fieldSetConfig", &Self::fieldSetConfig),
       Kel::readOnly("fieldSetName", &Self::fieldSetName)};
   std::move(own.begin(), own.end(), std::back_inserter(attributes));
   attributes.push_back(Kel::scalar("foundMatches", &Self::foundMatches, &Self::foundMatchesIs));
   return attributes;
}

}  // namespace TrafficPolicyCli
