// The L4-port and VLAN field-set listings.
#include "TrafficPolicyCli/ShowTrafficPolicyRangeFieldSets.h"

#include <algorithm>

#include "Kel/Value.h"

namespace TrafficPolicyCli {

namespace {

using Classification::ContentsSource;
using Classification::L4PortFieldSetSubConfig;
using Classification::NumericalRange;
using Classification::VlanFieldSetSubConfig;

// Text lines of ranges end before this column.
constexpr std::size_t kWrapColumn = 80;
constexpr std::string_view kRangeSeparator = ", ";

// Writes one range of a wrapped line that has reached `column` (none yet: `first`) and returns
// the column after it.
std::size_t writeWrapped(vellum::RendererV2& renderer, NumericalRange const& range, bool first,
                         std::size_t column, std::uint32_t indent) {
   char text[NumericalRange::kMaxTextLength];
   std::string_view const rangeText(text, range.format(text));
   if (!first && column + kRangeSeparator.size() + rangeText.size() < kWrapColumn) {
      renderer.writeString(kRangeSeparator);
      renderer.writeString(rangeText);
      return column + kRangeSeparator.size() + rangeText.size();
   }
   if (!first) {
      renderer.eol();
   }
   renderer.writeString(Strix::JustifyLeft<char const*>("", indent));
   renderer.writeString(rangeText);
   return indent + rangeText.size();
}

}  // namespace

template <typename SubConfig, RangeListing<SubConfig> const& listing>
ShowTrafficPolicyRangeFieldSet<SubConfig, listing>::ShowTrafficPolicyRangeFieldSet(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool filterGiven, NumericalRange const& filter)
    : ShowTrafficPolicyFieldSetBase(fieldSetConfig, fieldSetName),
      filterGiven_(filterGiven),
      filter_(filter) {}

template <typename SubConfig, RangeListing<SubConfig> const& listing>
Kel::TypeInfo const& ShowTrafficPolicyRangeFieldSet<SubConfig, listing>::typeInfo() {
   using Self = ShowTrafficPolicyRangeFieldSet;
   static Kel::TypeInfo const info(
       std::string(listing.typeName), nullptr,
       listingAttributes(
           {Kel::readOnly(std::string(listing.filterGivenAttribute), &Self::filterGiven),
            Kel::readOnly(std::string(listing.filterAttribute), &Self::filter)}));
   return info;
}

template <typename SubConfig, RangeListing<SubConfig> const& listing>
void ShowTrafficPolicyRangeFieldSet<SubConfig, listing>::renderFieldSets(std::uint32_t fd,
                                                                         std::uint32_t fmt,
                                                                         std::uint32_t) {
   auto const& config = fieldSetConfig();
   renderEachFieldSet(
       fd, fmt, config ? &((*config).*listing.sets)() : nullptr,
       {listing.jsonKey, listing.noMatches}, filterGiven_,
       [this](vellum::RendererV2& renderer, Kel::String const& name, FieldSetPtr fieldSet) {
          renderFieldSet(renderer, name, std::move(fieldSet));
       });
}

template <typename SubConfig, RangeListing<SubConfig> const& listing>
void ShowTrafficPolicyRangeFieldSet<SubConfig, listing>::renderFieldSet(
    vellum::RendererV2& renderer, Kel::String const& name, FieldSetPtr fieldSet) {
   auto const skip = [this](FieldSetPtr const& set) { return skipFieldSet(set); };
   if (!isShown(listing.renderFieldSetSignature, name, fieldSet, filterGiven_, skip)) {
      return;
   }
   auto const subConfig = fieldSet->currCfg();
   auto const source = subConfig->source();
   if (renderer.isText()) {
      renderer._addText(listing.heading, name);
      renderer.eol();
      if (source != ContentsSource::staticSource) {
         renderer.writeString(Strix::JustifyLeft<char const*>("", kFieldSetContentsIndent));
         renderer._addText("source ", contentsSourceShowString(source, false));
         renderer.eol();
      }
   }
   renderer.object(name.view(), [&] {
      if (renderer.isJson()) {
         renderer._addJsonKeyValuePair("source", contentsSourceShowString(source, true));
      }
      renderContents(renderer, *subConfig, kFieldSetContentsIndent);
   });
}

template <typename SubConfig, RangeListing<SubConfig> const& listing>
bool ShowTrafficPolicyRangeFieldSet<SubConfig, listing>::skipFieldSet(
    FieldSetPtr const& fieldSet) const {
   if (!filterGiven_) {
      return false;
   }
   auto const subConfig = fieldSet->currCfg();
   return !subConfig ||
          std::ranges::none_of(subConfig->ranges(), [this](NumericalRange const& range) {
             return filter_.overlaps(range);
          });
}

// The set's ranges are already ordered by low end, then high end, and nothing gives up the lock
// while they are written, so they are walked in place rather than copied and sorted.
template <typename SubConfig, RangeListing<SubConfig> const& listing>
void ShowTrafficPolicyRangeFieldSet<SubConfig, listing>::renderRanges(vellum::RendererV2& renderer,
                                                                      SubConfig const& subConfig,
                                                                      std::uint32_t indent) const {
   auto const& ranges = subConfig.ranges();
   if (ranges.empty()) {
      return;
   }
   renderer.list(listing.listKey, [&] {
      bool first = true;
      std::size_t column = 0;
      for (auto const& range : ranges) {
         renderer.listEntry([&] {
            renderer._addJsonKeyValuePair("low", range.low);
            renderer._addJsonKeyValuePair("high", range.high);
         });
         if (renderer.isText()) {
            column = writeWrapped(renderer, range, first, column, indent);
         }
         first = false;
      }
   });
   renderer.eol();
}

template class ShowTrafficPolicyRangeFieldSet<L4PortFieldSetSubConfig, kL4PortListing>;
template class ShowTrafficPolicyRangeFieldSet<VlanFieldSetSubConfig, kVlanListing>;

}  // namespace TrafficPolicyCli
