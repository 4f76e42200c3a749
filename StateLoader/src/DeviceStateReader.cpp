// The top level is checked like any object with a fixed vocabulary, keeping each section's value,
// or its place in the text when the file is read piece by piece; the sections are then read in a
// fixed order whatever their order in the file.
#include "DeviceStateReader.h"

#include <array>
#include <optional>

#include "Members.h"
#include "Sections.h"
#include "TextMembers.h"

namespace StateLoader {

namespace {

// In reading order: the hardware section says where the status section's counters go.
enum SectionIndex : std::size_t {
   hardwareSection,
   fieldSetsSection,
   trafficPoliciesSection,
   interfacesSection,
   vrfsSection,
   statusSection,
   sectionCount,
};

// A large section's members are found as the top level is checked, which its walk over the
// text would have to skim again otherwise.
struct KeptSection {
   simdjson::dom::element value;
   std::optional<TextValue> text;
   std::vector<MemberSpan> members;
};

using SectionValues = std::array<std::optional<KeptSection>, sectionCount>;

template <SectionIndex index>
void keep(Node const& value, SectionValues& sections) {
   auto& kept = sections[index].emplace(KeptSection{value.value, std::nullopt, {}});
   if (value.text) {
      kept.text = *value.text;
   }
   if (value.unparsed) {
      kept.members = gatherMembers(*value.text);
      kept.text->members = &kept.members;
   }
}

constexpr std::array kSectionMembers = {
    Member<SectionValues>{"hardware", keep<hardwareSection>},
    Member<SectionValues>{"fieldSets", keep<fieldSetsSection>},
    Member<SectionValues>{"trafficPolicies", keep<trafficPoliciesSection>},
    Member<SectionValues>{"interfaces", keep<interfacesSection>},
    Member<SectionValues>{"vrfs", keep<vrfsSection>},
    Member<SectionValues>{"status", keep<statusSection>},
};

constexpr std::array<void (*)(Node const&, DeviceState&), sectionCount> kSectionReaders = {
    readHardware, readFieldSets, readTrafficPolicies, readInterfaces, readVrfs, readStatus,
};

DirectionState emptyDirection() {
   return {Kel::make<TrafficPolicy::Status>(), Kel::make<TrafficPolicy::Counter>(),
           Kel::make<PolicyMap::Counters::PolicyMapTypeCounters>()};
}

DeviceState emptyDeviceState() {
   return {Kel::make<TrafficPolicy::TrafficPolicyConfig>(),
           Kel::make<Classification::FieldSetConfig>(),
           Kel::make<PolicyMap::IntfConfig>(),
           Kel::make<PolicyMap::IntfConfig>(),
           Kel::make<L3::Intf::StatusDir>(),
           Kel::make<PolicyMap::VrfConfig>(),
           Kel::make<Ip::AllVrfConfig>(),
           Kel::make<TrafficPolicy::HwStatus>(),
           Kel::make<TrafficPolicy::TrafficPolicyIntfParamStatus>(),
           emptyDirection(),
           emptyDirection(),
           emptyDirection()};
}

}  // namespace

DeviceState readDeviceState(Node const& root) {
   SectionValues sections;
   readMembers(root, kSectionMembers, sections, Behind::kept);
   DeviceState state = emptyDeviceState();
   for (std::size_t index = 0; index < sectionCount; ++index) {
      if (auto const& section = sections[index]) {
         Where const where = root.where.member(kSectionMembers[index].key);
         kSectionReaders[index](
             section->text ? nodeOf(*section->text, where) : Node{section->value, where}, state);
      }
   }
   return state;
}

}  // namespace StateLoader
