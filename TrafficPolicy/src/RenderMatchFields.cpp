// The criteria of a rule that carry more than a list of values: 802.1Q VLAN tags, and protocols
// with what hangs under each (TCP flags, L4 ports and port field sets, ICMP types and codes).
#include <algorithm>
#include <array>
#include <vector>

#include "Kel/Assert.h"
#include "ListRendering.h"
#include "TrafficPolicyCli/CliMap.h"
#include "TrafficPolicyCli/MatchRenderers.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

using Classification::NumericalRange;
using Classification::ProtoField;
using PolicyMap::ClassMapMatchOption;

constexpr NumericalRange kTcp{6, 6};

// Calls `visit` for each item in ascending order. Tags arrive sorted from the configuration in
// the common case, which is then walked as it stands; otherwise an ordered view is made.
template <typename T, typename Visit>
void forEachInOrder(std::vector<T> const& items, Visit&& visit) {
   if (std::ranges::is_sorted(items)) {
      std::ranges::for_each(items, visit);
      return;
   }
   std::vector<T const*> ordered;
   ordered.reserve(items.size());
   for (auto const& item : items) {
      ordered.push_back(&item);
   }
   std::ranges::sort(ordered, [](T const* left, T const* right) { return *left < *right; });
   for (auto const* item : ordered) {
      visit(*item);
   }
}

struct TcpFlagName {
   std::uint16_t bit;
   vellum::JsonKey name;
   // "initial-syn" and "established" are connection states, not header bits.
   bool connectionState;
};

// The order in which the flags of a group are shown.
constexpr std::array<TcpFlagName, 8> kTcpFlagOrder{{
    {Classification::tcpInitialSyn, "initial-syn", true},
    {Classification::tcpEstablished, "established", true},
    {Classification::tcpAck, "ack", false},
    {Classification::tcpFin, "fin", false},
    {Classification::tcpPsh, "psh", false},
    {Classification::tcpRst, "rst", false},
    {Classification::tcpSyn, "syn", false},
    {Classification::tcpUrg, "urg", false},
}};

// The flags a group's mask tests, in display order.
class ActiveFlags {
 public:
   explicit ActiveFlags(std::uint16_t mask) {
      for (auto const& flag : kTcpFlagOrder) {
         if (mask & flag.bit) {
            flags_[size_++] = &flag;
         }
      }
   }
   std::size_t size() const noexcept { return size_; }
   TcpFlagName const* const* begin() const noexcept { return flags_.data(); }
   TcpFlagName const* const* end() const noexcept { return flags_.data() + size_; }

 private:
   std::array<TcpFlagName const*, kTcpFlagOrder.size()> flags_{};
   std::size_t size_ = 0;
};

// One group: in text "ack:1 syn:0" on one line. A connection state stands alone and is always
// set, so it reads as the bare word ("established"): a ":1" after it would suggest it could be 0.
void renderTcpFlagGroup(vellum::RendererV2& renderer, Classification::TcpFlagGroup const& group) {
   ActiveFlags const activeFlags(group.mask);
   KEL_ASSERT(activeFlags.size() != 0);
   bool first = true;
   for (auto const* flag : activeFlags) {
      bool const flagBool = (group.value & flag->bit) != 0;
      renderer.listEntry([&] {
         renderer._addJsonKeyValuePair("name", flag->name);
         renderer._addJsonKeyValuePair("value", flagBool);
      });
      if (!first) {
         renderer.writeString(" ");
      }
      first = false;
      renderer.writeString(flag->name.text());
      if (flag->connectionState) {
         KEL_ASSERT(activeFlags.size() == 1);
         KEL_ASSERT(flagBool);
      } else {
         renderer.writeString(flagBool ? ":1" : ":0");
      }
   }
   renderer.eol();
}

void renderIcmpTypes(vellum::RendererV2& renderer, ProtoField const& protoField,
                     std::uint32_t indent, ClassMapMatchOption option) {
   renderer.list("icmps", [&] {
      for (auto const& [type, typeAndCode] : protoField.icmpType()) {
         // Structured bindings are named in init-captures: clang 14 cannot capture them.
         renderer.listEntry([&, &type = type, &typeAndCode = typeAndCode] {
            writeHeading(renderer, indent, "ICMP type");
            writeRangeText(renderer, type, "ICMP type", option);
            renderer.eol();
            writeRangeObject(renderer, Criterion("ICMP type").jsonKey(), type);
            if (typeAndCode.icmpCode()) {
               renderNumericalRange(renderer, "ICMP code", typeAndCode.icmpCode(), indent, option);
            } else {
               writeHeading(renderer, indent, "ICMP code");
               renderer.writeString("all");
               renderer.eol();
               renderer.list(Criterion("ICMP code").jsonKey(), [] {});
            }
         });
      }
   });
}

// Each port field in turn, one protocol line above them all. The grouped form gives each its own
// object in "ports"; the older form writes their keys straight into the protocol's object, as
// its readers expect of a protocol with one port field.
void renderPortFields(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                      ProtoField const& protoField, bool showFieldSetCounts, std::uint32_t indent,
                      ClassMapMatchOption option, bool grouped) {
   auto const renderOne = [&](Classification::PortField const& portField) {
      renderL4Ports(renderer, fieldSetState, portField, showFieldSetCounts, indent, option);
   };
   if (!grouped) {
      std::ranges::for_each(protoField.port(), renderOne);
      return;
   }
   renderer.list("ports", [&] {
      for (auto const& portField : protoField.port()) {
         renderer.listEntry([&] { renderOne(portField); });
      }
   });
}

bool hasSubCriteria(Kel::Ptr<ProtoField> const& protoField) {
   return protoField &&
          (!protoField->port().empty() || protoField->icmpType() || protoField->tcpFlag());
}

// The L4-port criteria of one direction: literal ports, then field sets (as objects, then names).
void renderPortDirection(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                         Classification::RangeSet const& ports,
                         Classification::NameSet const& fieldSets, Criterion criterion,
                         vellum::JsonKey extFieldSetKey, vellum::JsonKey fieldSetNamesKey,
                         bool showFieldSetCounts, std::uint32_t indent,
                         ClassMapMatchOption option) {
   if (ports) {
      renderNumericalRange(renderer, criterion, ports, indent, option);
   }
   if (fieldSets) {
      renderFieldSetReferences(renderer, criterion.label(), extFieldSetKey, indent, fieldSets,
                               fieldSetState, fieldSetState.l4PortFieldSet(), showFieldSetCounts);
      renderFieldSetNames(renderer, fieldSetNamesKey, fieldSets);
   }
}

}  // namespace

void renderVlanTag(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                   Classification::StructuredFilter const& structuredFilter, std::uint32_t indent,
                   ClassMapMatchOption option, bool showFieldSetCounts) {
   renderer.list("dot1qVlanTags", [&] {
      forEachInOrder(structuredFilter.vlanTags(), [&](Classification::VlanRangeSet const& range) {
         KEL_ASSERT(!range.vlans() || !range.vlanFieldSets());
         renderer.listEntry([&] {
            if (range.vlanFieldSets()) {
               renderFieldSetReferences(renderer, "802.1Q VLAN", "dot1qVlanFieldSets", indent,
                                        range.vlanFieldSets(), fieldSetState,
                                        fieldSetState.vlanFieldSet(), showFieldSetCounts);
            } else {
               renderNumericalRange(renderer, "802.1Q VLAN", range.vlans(), indent, option);
            }
         });
      });
   });
}

void renderProtocol(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                    Criterion criterion, Classification::StructuredFilter const& structuredFilter,
                    std::uint32_t indent, std::uint32_t indentCountPerLevel,
                    ClassMapMatchOption option, bool showFieldSetCounts) {
   // The map orders protocol ranges by low, then high end: the order they are shown in.
   auto const& protocols = structuredFilter.proto();
   bool const compact = std::ranges::none_of(
       protocols, [](auto const& entry) { return hasSubCriteria(entry.second); });
   auto const label = criterion.label();
   auto const jsonKey = criterion.jsonKey();
   TP_TRACE(8) << label << " --> " << jsonKey.text();
   auto const subIndent = indent + indentCountPerLevel;
   bool const grouped = renderer.context().groupedJsonForm;

   renderer.list(jsonKey, [&] {
      std::uint32_t column = 0;
      for (auto const& [range, protoField] : protocols) {
         if (compact && column != 0) {
            writeIndent(renderer, column);
         } else {
            column = writeHeading(renderer, indent, label);
         }
         writeRangeText(renderer, range, label, option);
         renderer.eol();
         renderer.listEntry([&, &range = range, &protoField = protoField] {
            writeRangeObject(renderer, "protocolRange", range);
            if (!hasSubCriteria(protoField)) {
               return;
            }
            if (range == kTcp && protoField->tcpFlag()) {
               renderTcpFlags(renderer, *protoField, subIndent);
            }
            if (!protoField->port().empty()) {
               renderPortFields(renderer, fieldSetState, *protoField, showFieldSetCounts, subIndent,
                                option, grouped);
            }
            if (protoField->icmpType()) {
               renderIcmpTypes(renderer, *protoField, subIndent, option);
            }
         });
      }
   });
}

void renderL4Ports(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                   Classification::PortField const& portField, bool showFieldSetCounts,
                   std::uint32_t indent, ClassMapMatchOption option) {
   renderPortDirection(renderer, fieldSetState, portField.sport(), portField.srcL4PortFieldSets(),
                       "Source port", "srcExtL4PortFieldSet", "srcL4PortFieldSets",
                       showFieldSetCounts, indent, option);
   renderPortDirection(renderer, fieldSetState, portField.dport(), portField.dstL4PortFieldSets(),
                       "Destination port", "destExtL4PortFieldSet", "destL4PortFieldSets",
                       showFieldSetCounts, indent, option);
}

void renderTcpFlags(vellum::RendererV2& renderer, ProtoField const& protoField,
                    std::uint32_t indent) {
   constexpr auto jsonKey = Criterion("TCP flags").jsonKey();
   TP_TRACE(8) << "TCP flags --> " << jsonKey.text();
   // The older form has no groups: the flags of every group make up one list.
   bool const grouped = renderer.context().groupedJsonForm;
   renderLabelledList(renderer, "TCP flags", grouped ? vellum::JsonKey("tcpFlagGroups") : jsonKey,
                      indent, protoField.tcpFlag(), [&](Classification::TcpFlagGroup const& group) {
                         if (!grouped) {
                            renderTcpFlagGroup(renderer, group);
                            return;
                         }
                         renderer.listEntry([&] {
                            renderer.list(jsonKey, [&] { renderTcpFlagGroup(renderer, group); });
                         });
                      });
}

}  // namespace TrafficPolicyCli
