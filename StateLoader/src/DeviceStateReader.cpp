// The top level is checked like any object with a fixed vocabulary, and the sections are read in a
// fixed order whatever their order in the file. A large section is read as soon as the walk over
// the top level meets it, while the rest of the file may still be coming in from the disk, once
// the sections it depends on have been met; the others are kept, by their value or their place in
// the text, and read after the walk. A section read early that fails keeps its fault until the
// walk is done and every section before it in reading order has been read: the file is refused for
// the same problem as when every section was read after the walk.
#include "DeviceStateReader.h"

#include <array>
#include <cstdint>
#include <exception>
#include <optional>

#include "Members.h"
#include "Sections.h"
#include "StateError.h"
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

constexpr std::array<std::string_view, sectionCount> kSectionKeys = {
    "hardware", "fieldSets", "trafficPolicies", "interfaces", "vrfs", "status",
};

constexpr std::array<void (*)(Node const&, DeviceState&), sectionCount> kSectionReaders = {
    readHardware, readFieldSets, readTrafficPolicies, readInterfaces, readVrfs, readStatus,
};

constexpr std::uint32_t bit(SectionIndex index) {
   return std::uint32_t{1} << index;
}

// What must be read before a section can be: where live counters go, and the rules they count.
constexpr std::array<std::uint32_t, sectionCount> kNeeds = {
    0, 0, 0, 0, 0, bit(hardwareSection) | bit(trafficPoliciesSection),
};

// A section kept to be read after the walk. A large section's members are found as the top level
// is checked, which its walk over the text would have to skim again otherwise.
struct KeptSection {
   simdjson::dom::element value;
   std::optional<TextValue> text;
   std::vector<MemberSpan> members;
};

class SectionReading {
 public:
   explicit SectionReading(Node const& root)
       : where_(root.where),
         // A section that fails is skimmed over once read: its text must still be there.
         mayReadEarly_(root.unparsed && root.text->state->releasedTextComesBack()) {}

   void met(SectionIndex index, Node const& value) {
      met_ |= bit(index);
      if (mayReadEarly_ && value.unparsed && !failed_ && (met_ & kNeeds[index]) == kNeeds[index]) {
         for (std::size_t needed = 0; needed < index; ++needed) {
            if ((kNeeds[index] & bit(static_cast<SectionIndex>(needed))) != 0 && kept_[needed]) {
               readKept(needed);
            }
         }
         if (!failed_) {
            read(index, value);
            return;
         }
      }
      keep(index, value);
   }

   // The kept sections, in reading order up to the first that fails.
   DeviceState done() && {
      for (std::size_t index = 0; index < sectionCount; ++index) {
         if (kept_[index] && (!failed_ || index < failed_->index)) {
            readKept(index);
         }
      }
      if (failed_) {
         std::rethrow_exception(failed_->fault);
      }
      return std::move(state_);
   }

 private:
   struct Failure {
      std::size_t index;
      std::exception_ptr fault;
   };

   void keep(std::size_t index, Node const& value) {
      auto& kept = kept_[index].emplace(KeptSection{value.value, std::nullopt, {}});
      if (value.text) {
         kept.text = *value.text;
      }
      if (value.unparsed) {
         kept.members = gatherMembers(*value.text);
         kept.text->members = &kept.members;
      }
   }

   void readKept(std::size_t index) {
      auto const& section = *kept_[index];
      Where const where = where_.member(kSectionKeys[index]);
      read(index, section.text ? nodeOf(*section.text, where) : Node{section.value, where});
      kept_[index].reset();
   }

   void read(std::size_t index, Node const& node) {
      try {
         kSectionReaders[index](node, state_);
      } catch (StateError const&) {
         if (!failed_ || index < failed_->index) {
            failed_ = Failure{index, std::current_exception()};
         }
      }
   }

   Where const& where_;
   bool mayReadEarly_;
   std::uint32_t met_ = 0;
   std::array<std::optional<KeptSection>, sectionCount> kept_;
   std::optional<Failure> failed_;
   DeviceState state_ = emptyDeviceState();
};

template <SectionIndex index>
void meet(Node const& value, SectionReading& reading) {
   reading.met(index, value);
}

constexpr MemberTable kSectionMembers = std::array{
    Member<SectionReading>{kSectionKeys[hardwareSection], meet<hardwareSection>},
    Member<SectionReading>{kSectionKeys[fieldSetsSection], meet<fieldSetsSection>},
    Member<SectionReading>{kSectionKeys[trafficPoliciesSection], meet<trafficPoliciesSection>},
    Member<SectionReading>{kSectionKeys[interfacesSection], meet<interfacesSection>},
    Member<SectionReading>{kSectionKeys[vrfsSection], meet<vrfsSection>},
    Member<SectionReading>{kSectionKeys[statusSection], meet<statusSection>},
};

}  // namespace

DeviceState readDeviceState(Node const& root) {
   SectionReading reading(root);
   readMembers(root, kSectionMembers, reading, Behind::kept);
   return std::move(reading).done();
}

}  // namespace StateLoader
