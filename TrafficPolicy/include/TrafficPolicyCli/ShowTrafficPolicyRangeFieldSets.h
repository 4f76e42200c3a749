// `show traffic-policy field-set l4-port [NAME] [contains RANGE]` and `... vlan [NAME] [contains
// RANGE]`: the L4-port and VLAN field sets, each a heading and its ranges on as few lines as fit
// before column 80. The two kinds differ only in their words and their collection, so one
// template does the work and each kind names its own filter and contents renderer.
#pragma once

#include <string_view>

#include "Classification/Range.h"
#include "TrafficPolicyCli/ShowTrafficPolicyFieldSet.h"

namespace TrafficPolicyCli {

// What one kind of range listing says, and where its sets are.
template <typename SubConfig>
struct RangeListing {
   using Sets = Classification::FieldSetMap<SubConfig>;

   std::string_view typeName;
   std::string_view filterGivenAttribute;  // reflected names of the filter flag and range
   std::string_view filterAttribute;
   std::string_view jsonKey;    // the top-level JSON object
   std::string_view noMatches;  // the text line when a filter matched no set
   std::string_view heading;    // before a set's name
   std::string_view listKey;    // the JSON list of the ranges
   std::string_view renderFieldSetSignature;
   Sets const& (Classification::FieldSetConfig::*sets)() const noexcept;
};

inline constexpr RangeListing<Classification::L4PortFieldSetSubConfig> kL4PortListing{
    "TrafficPolicyCli::ShowTrafficPolicyL4PortFieldSet",
    "filterPorts",
    "ports",
    "l4PortFieldSets",
    "No matching L4 port field sets found",
    "field-set l4-port ",
    "ports",
    "void TrafficPolicyCli::ShowTrafficPolicyL4PortFieldSet::renderFieldSet(vellum::RendererV2&, "
    "const Kel::String&, "
    "Kel::Ptr<const Classification::FieldSet<Classification::L4PortFieldSetSubConfig> >)",
    &Classification::FieldSetConfig::fieldSetL4Port};

inline constexpr RangeListing<Classification::VlanFieldSetSubConfig> kVlanListing{
    "TrafficPolicyCli::ShowTrafficPolicyVlanFieldSet",
    "filterVlans",
    "vlans",
    "vlanFieldSets",
    "No matching VLAN field sets found",
    "field-set vlan ",
    "vlans",
    "void TrafficPolicyCli::ShowTrafficPolicyVlanFieldSet::renderFieldSet(vellum::RendererV2&, "
    "const Kel::String&, "
    "Kel::Ptr<const Classification::FieldSet<Classification::VlanFieldSetSubConfig> >)",
    &Classification::FieldSetConfig::fieldSetVlan};

template <typename SubConfig, RangeListing<SubConfig> const& listing>
class ShowTrafficPolicyRangeFieldSet : public ShowTrafficPolicyFieldSetBase {
 public:
   using FieldSetPtr = Kel::Ptr<Classification::FieldSet<SubConfig> const>;

   ShowTrafficPolicyRangeFieldSet(Handle<Classification::FieldSetConfig> fieldSetConfig,
                                  Kel::String const& fieldSetName, bool filterGiven,
                                  Classification::NumericalRange const& filter);

   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   void renderFieldSets(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override;
   void renderFieldSet(vellum::RendererV2& renderer, Kel::String const& name, FieldSetPtr fieldSet);
   bool skipFieldSet(FieldSetPtr const& fieldSet) const;

   // The filter flag and range, reflected as filterPorts and ports, or filterVlans and vlans.
   bool filterGiven() const noexcept { return filterGiven_; }
   Classification::NumericalRange const& filter() const noexcept { return filter_; }

 protected:
   // The set's ranges, sorted: a JSON list of {"low", "high"} objects and wrapped text. An empty
   // set writes nothing at all.
   void renderRanges(vellum::RendererV2& renderer, SubConfig const& subConfig,
                     std::uint32_t indent) const;

 private:
   virtual void renderContents(vellum::RendererV2& renderer, SubConfig const& subConfig,
                               std::uint32_t indent) const = 0;

   bool filterGiven_;
   Classification::NumericalRange filter_;
};

class ShowTrafficPolicyL4PortFieldSet final
    : public ShowTrafficPolicyRangeFieldSet<Classification::L4PortFieldSetSubConfig,
                                            kL4PortListing> {
 public:
   using ShowTrafficPolicyRangeFieldSet::ShowTrafficPolicyRangeFieldSet;
   void renderPorts(vellum::RendererV2& renderer,
                    Classification::L4PortFieldSetSubConfig const& subConfig,
                    std::uint32_t indent) const {
      renderRanges(renderer, subConfig, indent);
   }

 private:
   void renderContents(vellum::RendererV2& renderer,
                       Classification::L4PortFieldSetSubConfig const& subConfig,
                       std::uint32_t indent) const override {
      renderPorts(renderer, subConfig, indent);
   }
};

class ShowTrafficPolicyVlanFieldSet final
    : public ShowTrafficPolicyRangeFieldSet<Classification::VlanFieldSetSubConfig, kVlanListing> {
 public:
   using ShowTrafficPolicyRangeFieldSet::ShowTrafficPolicyRangeFieldSet;
   void renderVlans(vellum::RendererV2& renderer,
                    Classification::VlanFieldSetSubConfig const& subConfig,
                    std::uint32_t indent) const {
      renderRanges(renderer, subConfig, indent);
   }

 private:
   void renderContents(vellum::RendererV2& renderer,
                       Classification::VlanFieldSetSubConfig const& subConfig,
                       std::uint32_t indent) const override {
      renderVlans(renderer, subConfig, indent);
   }
};

}  // namespace TrafficPolicyCli
