// Field sets: named lists of prefixes, L4 ports or VLANs that rules refer to by name. Each set has
// a current sub-configuration (absent while the set is being defined) with its contents and where
// they came from.
#pragma once

#include <cstdint>
#include <string_view>

#include "Classification/Range.h"
#include "Classification/StructuredFilter.h"
#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"

namespace Classification {

// Where a field set's contents came from.
enum class ContentsSource : std::uint8_t {
   unknown = 0,
   staticSource = 1,
   bgp = 2,
   controller = 3,
};

// The enumeration's own text form: "unknown", "static", "bgp", "controller".
std::string_view toString(ContentsSource source) noexcept;

class PrefixFieldSetSubConfig : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   ContentsSource source() const noexcept { return source_; }
   void sourceIs(ContentsSource source) noexcept { source_ = source; }
   PrefixSet const& prefixes() const noexcept { return prefixes_; }
   PrefixSet& prefixes() noexcept { return prefixes_; }
   PrefixSet const& exceptPrefixes() const noexcept { return exceptPrefixes_; }
   PrefixSet& exceptPrefixes() noexcept { return exceptPrefixes_; }

   std::uint32_t numPrefixes() const noexcept {
      return static_cast<std::uint32_t>(prefixes_.size());
   }
   std::uint32_t numExceptPrefixes() const noexcept {
      return static_cast<std::uint32_t>(exceptPrefixes_.size());
   }

 private:
   ContentsSource source_ = ContentsSource::staticSource;
   PrefixSet prefixes_;
   PrefixSet exceptPrefixes_;
};

// L4-port and VLAN sets share their shape: ranges and a source.
class RangeFieldSetSubConfig : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   ContentsSource source() const noexcept { return source_; }
   void sourceIs(ContentsSource source) noexcept { source_ = source; }
   RangeSet const& ranges() const noexcept { return ranges_; }
   RangeSet& ranges() noexcept { return ranges_; }

   // The number of values the ranges cover (a range 1000-1009 counts ten).
   std::uint32_t numValues() const noexcept;

 private:
   ContentsSource source_ = ContentsSource::staticSource;
   RangeSet ranges_;
};

class L4PortFieldSetSubConfig : public RangeFieldSetSubConfig {
 public:
   RangeSet const& ports() const noexcept { return ranges(); }
   std::uint32_t numPorts() const noexcept { return numValues(); }
};

class VlanFieldSetSubConfig : public RangeFieldSetSubConfig {
 public:
   RangeSet const& vlans() const noexcept { return ranges(); }
   std::uint32_t numVlans() const noexcept { return numValues(); }
};

// One named field set of any kind.
template <typename SubConfig>
class FieldSet : public Kel::Entity {
 public:
   explicit FieldSet(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   Kel::Ptr<SubConfig const> currCfg() const noexcept { return currCfg_; }
   void currCfgIs(Kel::Ptr<SubConfig const> config) { currCfg_ = std::move(config); }

 private:
   Kel::String name_;
   Kel::Ptr<SubConfig const> currCfg_;
};

using FieldSetIpPrefix = FieldSet<PrefixFieldSetSubConfig>;
using FieldSetIpv6Prefix = FieldSet<PrefixFieldSetSubConfig>;
using FieldSetL4Port = FieldSet<L4PortFieldSetSubConfig>;
using FieldSetVlan = FieldSet<VlanFieldSetSubConfig>;

template <typename SubConfig>
using FieldSetMap = Kel::OrderedMap<Kel::String, Kel::Ptr<FieldSet<SubConfig> const>>;

class FieldSetConfig : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   FieldSetMap<PrefixFieldSetSubConfig> const& fieldSetIpPrefix() const noexcept {
      return ipPrefix_;
   }
   FieldSetMap<PrefixFieldSetSubConfig>& fieldSetIpPrefix() noexcept { return ipPrefix_; }
   FieldSetMap<PrefixFieldSetSubConfig> const& fieldSetIpv6Prefix() const noexcept {
      return ipv6Prefix_;
   }
   FieldSetMap<PrefixFieldSetSubConfig>& fieldSetIpv6Prefix() noexcept { return ipv6Prefix_; }
   FieldSetMap<L4PortFieldSetSubConfig> const& fieldSetL4Port() const noexcept { return l4Port_; }
   FieldSetMap<L4PortFieldSetSubConfig>& fieldSetL4Port() noexcept { return l4Port_; }
   FieldSetMap<VlanFieldSetSubConfig> const& fieldSetVlan() const noexcept { return vlan_; }
   FieldSetMap<VlanFieldSetSubConfig>& fieldSetVlan() noexcept { return vlan_; }

 private:
   FieldSetMap<PrefixFieldSetSubConfig> ipPrefix_;
   FieldSetMap<PrefixFieldSetSubConfig> ipv6Prefix_;
   FieldSetMap<L4PortFieldSetSubConfig> l4Port_;
   FieldSetMap<VlanFieldSetSubConfig> vlan_;
};

}  // namespace Classification
