// Ranges, field sets and structured filters: their text forms, orderings and type descriptors.
#include <charconv>
#include <numeric>

#include "Classification/FieldSetConfig.h"
#include "Classification/Range.h"
#include "Classification/StructuredFilter.h"
#include "Kel/Value.h"

namespace Classification {

std::size_t NumericalRange::format(char* out) const noexcept {
   char* cursor = std::to_chars(out, out + kMaxTextLength, low).ptr;
   if (high != low) {
      *cursor++ = '-';
      cursor = std::to_chars(cursor, out + kMaxTextLength, high).ptr;
   }
   return static_cast<std::size_t>(cursor - out);
}

std::string NumericalRange::stringValue() const {
   char text[kMaxTextLength];
   return std::string(text, format(text));
}

Kel::Value toValue(NumericalRange const& range) {
   return Kel::toValue(range.stringValue());
}

std::strong_ordering operator<=>(VlanRangeSet const& left, VlanRangeSet const& right) {
   auto byRanges = std::lexicographical_compare_three_way(left.vlans_.begin(), left.vlans_.end(),
                                                          right.vlans_.begin(), right.vlans_.end());
   if (byRanges != 0) {
      return byRanges;
   }
   return std::lexicographical_compare_three_way(
       left.vlanFieldSets_.begin(), left.vlanFieldSets_.end(), right.vlanFieldSets_.begin(),
       right.vlanFieldSets_.end());
}

std::string_view toString(ContentsSource source) noexcept {
   switch (source) {
      case ContentsSource::unknown:
         return "unknown";
      case ContentsSource::staticSource:
         return "static";
      case ContentsSource::bgp:
         return "bgp";
      case ContentsSource::controller:
         return "controller";
   }
   return "unknown";
}

std::uint32_t RangeFieldSetSubConfig::numValues() const noexcept {
   auto const total = std::accumulate(
       ranges_.begin(), ranges_.end(), std::uint64_t{0},
       [](std::uint64_t sum, NumericalRange const& range) { return sum + range.width(); });
   return static_cast<std::uint32_t>(std::min<std::uint64_t>(total, UINT32_MAX));
}

Kel::TypeInfo const& ProtoField::fwkType() const {
   static Kel::TypeInfo const info("Classification::ProtoField", nullptr, {});
   return info;
}

// The flags share the padding of the entity's header; a rule holds one filter per match option.
static_assert(sizeof(StructuredFilter) <= 72);

StructuredFilter::~StructuredFilter() = default;

StructuredFilter::RareCriteria const StructuredFilter::kNoRareCriteria;

StructuredFilter::RareCriteria& StructuredFilter::rare() {
   if (!rare_) {
      rare_ = std::make_unique<RareCriteria>();
   }
   return *rare_;
}

Kel::TypeInfo const& StructuredFilter::fwkType() const {
   static Kel::TypeInfo const info(
       "Classification::StructuredFilter", nullptr,
       {Kel::readOnly("matchBgpNeighbors", &StructuredFilter::matchBgpNeighbors),
        Kel::readOnly("matchBgpProtocol", &StructuredFilter::matchBgpProtocol),
        Kel::readOnly("matchIpOptions", &StructuredFilter::matchIpOptions),
        Kel::readOnly("innerMatch", &StructuredFilter::innerMatch)});
   return info;
}

Kel::TypeInfo const& PrefixFieldSetSubConfig::fwkType() const {
   static Kel::TypeInfo const info(
       "Classification::PrefixFieldSetSubConfig", nullptr,
       {Kel::readOnly("source", &PrefixFieldSetSubConfig::source),
        Kel::readOnly("numPrefixes", &PrefixFieldSetSubConfig::numPrefixes),
        Kel::readOnly("numExceptPrefixes", &PrefixFieldSetSubConfig::numExceptPrefixes)});
   return info;
}

Kel::TypeInfo const& RangeFieldSetSubConfig::fwkType() const {
   static Kel::TypeInfo const info(
       "Classification::RangeFieldSetSubConfig", nullptr,
       {Kel::readOnly("source", &RangeFieldSetSubConfig::source),
        Kel::readOnly("numValues", &RangeFieldSetSubConfig::numValues)});
   return info;
}

template <typename SubConfig>
Kel::TypeInfo const& FieldSet<SubConfig>::fwkType() const {
   static Kel::TypeInfo const info(
       "Classification::FieldSet", nullptr,
       {Kel::readOnly("name", &FieldSet::name), Kel::readOnly("currCfg", &FieldSet::currCfg)});
   return info;
}

template class FieldSet<PrefixFieldSetSubConfig>;
template class FieldSet<L4PortFieldSetSubConfig>;
template class FieldSet<VlanFieldSetSubConfig>;

Kel::TypeInfo const& FieldSetConfig::fwkType() const {
   static Kel::TypeInfo const info(
       "Classification::FieldSetConfig", nullptr,
       {Kel::readOnly("fieldSetIpPrefix", &FieldSetConfig::fieldSetIpPrefix),
        Kel::readOnly("fieldSetIpv6Prefix", &FieldSetConfig::fieldSetIpv6Prefix),
        Kel::readOnly("fieldSetL4Port", &FieldSetConfig::fieldSetL4Port),
        Kel::readOnly("fieldSetVlan", &FieldSetConfig::fieldSetVlan)});
   return info;
}

}  // namespace Classification
