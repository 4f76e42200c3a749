// The match criteria of one rule: addresses (literal, field sets, longest-prefix match), VLAN tags,
// protocols with their ports, ICMP types and TCP flags, lengths, fragments, DSCP, TTL, a few
// protocol flags, and an encapsulated inner header. The state loader guarantees the invariants the
// show library relies on (one source kind per direction, no longest-prefix match inside an inner
// header, a VLAN tag never holding both VLANs and field sets, TCP flag groups with a mask).
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Classification/Range.h"
#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/String.h"
#include "Quoll/IpAddr.h"
#include "Quoll/IpGenPrefix.h"

namespace Classification {

using RangeSet = Kel::OrderedSet<NumericalRange>;
using NameSet = Kel::OrderedSet<Kel::String>;
using PrefixSet = Kel::OrderedSet<Quoll::IpGenPrefix>;

// One 802.1Q tag criterion: VLANs or VLAN field sets, never both.
struct VlanRangeSet {
   RangeSet const& vlans() const noexcept { return vlans_; }
   RangeSet& vlans() noexcept { return vlans_; }
   NameSet const& vlanFieldSets() const noexcept { return vlanFieldSets_; }
   NameSet& vlanFieldSets() noexcept { return vlanFieldSets_; }

   friend std::strong_ordering operator<=>(VlanRangeSet const& left, VlanRangeSet const& right);
   friend bool operator==(VlanRangeSet const& left, VlanRangeSet const& right) {
      return (left <=> right) == 0;
   }

   RangeSet vlans_;
   NameSet vlanFieldSets_;
};

// Ports of one protocol: literal ranges and L4-port field sets, per direction.
struct PortField {
   RangeSet const& sport() const noexcept { return sport_; }
   RangeSet& sport() noexcept { return sport_; }
   RangeSet const& dport() const noexcept { return dport_; }
   RangeSet& dport() noexcept { return dport_; }
   NameSet const& srcL4PortFieldSets() const noexcept { return srcFieldSets_; }
   NameSet& srcL4PortFieldSets() noexcept { return srcFieldSets_; }
   NameSet const& dstL4PortFieldSets() const noexcept { return dstFieldSets_; }
   NameSet& dstL4PortFieldSets() noexcept { return dstFieldSets_; }

   friend bool operator==(PortField const&, PortField const&) = default;

   RangeSet sport_;
   RangeSet dport_;
   NameSet srcFieldSets_;
   NameSet dstFieldSets_;
};

struct TypeAndCode {
   RangeSet const& icmpCode() const noexcept { return icmpCode_; }
   RangeSet& icmpCode() noexcept { return icmpCode_; }
   friend bool operator==(TypeAndCode const&, TypeAndCode const&) = default;

   RangeSet icmpCode_;
};

// TCP flags that must hold the given values; only the flags in the mask are tested.
struct TcpFlagGroup {
   std::uint16_t value = 0;
   std::uint16_t mask = 0;
   friend auto operator<=>(TcpFlagGroup const&, TcpFlagGroup const&) = default;
};

enum TcpFlagBit : std::uint16_t {
   tcpFin = 0x0001,
   tcpSyn = 0x0002,
   tcpRst = 0x0004,
   tcpPsh = 0x0008,
   tcpAck = 0x0010,
   tcpUrg = 0x0020,
   tcpEstablished = 0x0100,
   tcpInitialSyn = 0x0200,
};

// What hangs under one protocol range of a rule.
class ProtoField : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   std::vector<PortField> const& port() const noexcept { return port_; }
   std::vector<PortField>& port() noexcept { return port_; }
   Kel::OrderedMap<IcmpTypeRange, TypeAndCode> const& icmpType() const noexcept {
      return icmpType_;
   }
   Kel::OrderedMap<IcmpTypeRange, TypeAndCode>& icmpType() noexcept { return icmpType_; }
   Kel::OrderedSet<TcpFlagGroup> const& tcpFlag() const noexcept { return tcpFlag_; }
   Kel::OrderedSet<TcpFlagGroup>& tcpFlag() noexcept { return tcpFlag_; }

   // Whether both match the same ports, ICMP types and TCP flags.
   bool sameCriteria(ProtoField const& other) const {
      return port_ == other.port_ && icmpType_ == other.icmpType_ && tcpFlag_ == other.tcpFlag_;
   }

 private:
   std::vector<PortField> port_;
   Kel::OrderedMap<IcmpTypeRange, TypeAndCode> icmpType_;
   Kel::OrderedSet<TcpFlagGroup> tcpFlag_;
};

// Fragment matching: kind 0 matches every fragment, kind 2 the fragments at the given offsets.
struct Fragment {
   enum Kind : std::uint8_t { matchAll = 0, matchOffsets = 2 };

   std::uint8_t kind = matchAll;
   RangeSet offset;
};

enum class EncapsulationType : std::uint8_t { none = 0, gtpv1 = 1 };

struct EncapsulationField {
   EncapsulationType encapsulationType = EncapsulationType::none;
};

// Most rules match on addresses, field sets, protocols and a DSCP value; those criteria live in the
// filter itself. The rest, which most rules leave empty, sit in one block that the first write to
// any of them allocates, so that a rule pays only for the criteria it uses. Reading an absent
// criterion gives an empty one.
class StructuredFilter : public Kel::Entity {
   struct RareCriteria {
      std::vector<VlanRangeSet> vlanTags;
      PrefixSet sourceLpms;
      NameSet srcLpmPrefixSets;
      PrefixSet destinationLpms;
      NameSet dstLpmPrefixSets;
      RangeSet length;
      std::optional<Fragment> fragment;
      RangeSet ttl;
      Kel::Ptr<StructuredFilter const> innerMatch;
   };

 public:
   StructuredFilter() = default;
   ~StructuredFilter() override;

   Kel::TypeInfo const& fwkType() const override;

   std::vector<VlanRangeSet> const& vlanTags() const noexcept { return rare().vlanTags; }
   std::vector<VlanRangeSet>& vlanTags() { return rare().vlanTags; }

   PrefixSet const& sources() const noexcept { return sources_; }
   PrefixSet& sources() noexcept { return sources_; }
   NameSet const& srcPrefixSets() const noexcept { return srcPrefixSets_; }
   NameSet& srcPrefixSets() noexcept { return srcPrefixSets_; }
   PrefixSet const& sourceLpms() const noexcept { return rare().sourceLpms; }
   PrefixSet& sourceLpms() { return rare().sourceLpms; }
   NameSet const& srcLpmPrefixSets() const noexcept { return rare().srcLpmPrefixSets; }
   NameSet& srcLpmPrefixSets() { return rare().srcLpmPrefixSets; }

   PrefixSet const& destinations() const noexcept { return destinations_; }
   PrefixSet& destinations() noexcept { return destinations_; }
   NameSet const& dstPrefixSets() const noexcept { return dstPrefixSets_; }
   NameSet& dstPrefixSets() noexcept { return dstPrefixSets_; }
   PrefixSet const& destinationLpms() const noexcept { return rare().destinationLpms; }
   PrefixSet& destinationLpms() { return rare().destinationLpms; }
   NameSet const& dstLpmPrefixSets() const noexcept { return rare().dstLpmPrefixSets; }
   NameSet& dstLpmPrefixSets() { return rare().dstLpmPrefixSets; }

   Kel::OrderedMap<ProtocolRange, Kel::Ptr<ProtoField>> const& proto() const noexcept {
      return proto_;
   }
   Kel::OrderedMap<ProtocolRange, Kel::Ptr<ProtoField>>& proto() noexcept { return proto_; }

   RangeSet const& length() const noexcept { return rare().length; }
   RangeSet& length() { return rare().length; }
   std::optional<Fragment> const& fragment() const noexcept { return rare().fragment; }
   void fragmentIs(std::optional<Fragment> fragment) { rare().fragment = std::move(fragment); }
   RangeSet const& dscp() const noexcept { return dscp_; }
   RangeSet& dscp() noexcept { return dscp_; }
   RangeSet const& ttl() const noexcept { return rare().ttl; }
   RangeSet& ttl() { return rare().ttl; }

   bool matchBgpNeighbors() const noexcept { return matchBgpNeighbors_; }
   void matchBgpNeighborsIs(bool match) noexcept { matchBgpNeighbors_ = match; }
   bool matchBgpProtocol() const noexcept { return matchBgpProtocol_; }
   void matchBgpProtocolIs(bool match) noexcept { matchBgpProtocol_ = match; }
   bool matchIpOptions() const noexcept { return matchIpOptions_; }
   void matchIpOptionsIs(bool match) noexcept { matchIpOptions_ = match; }

   EncapsulationField const& encapField() const noexcept { return encapField_; }
   void encapFieldIs(EncapsulationField field) noexcept { encapField_ = field; }
   // The inner header of an encapsulated packet; null when the rule does not look inside.
   Kel::Ptr<StructuredFilter const> const& innerMatch() const noexcept { return rare().innerMatch; }
   void innerMatchIs(Kel::Ptr<StructuredFilter const> inner) {
      rare().innerMatch = std::move(inner);
   }
   // The address family of this header (meaningful for an inner header).
   Quoll::AddressFamily addressFamily() const noexcept { return addressFamily_; }
   void addressFamilyIs(Quoll::AddressFamily family) noexcept { addressFamily_ = family; }

 private:
   // What a filter without rare criteria reads: an object, not a function's static, so that each
   // read of a criterion is a load and not a call with a guard (renderers read a dozen a rule).
   static RareCriteria const kNoRareCriteria;
   RareCriteria const& rare() const noexcept { return rare_ ? *rare_ : kNoRareCriteria; }
   RareCriteria& rare();

   // The bytes first: they fill the padding at the end of the entity's header, so that a filter
   // takes 72 bytes and not 80.
   bool matchBgpNeighbors_ : 1 = false;
   bool matchBgpProtocol_ : 1 = false;
   bool matchIpOptions_ : 1 = false;
   EncapsulationField encapField_;
   Quoll::AddressFamily addressFamily_ = Quoll::AddressFamily::none;
   PrefixSet sources_;
   NameSet srcPrefixSets_;
   PrefixSet destinations_;
   NameSet dstPrefixSets_;
   Kel::OrderedMap<ProtocolRange, Kel::Ptr<ProtoField>> proto_;
   RangeSet dscp_;
   std::unique_ptr<RareCriteria> rare_;
};

}  // namespace Classification
