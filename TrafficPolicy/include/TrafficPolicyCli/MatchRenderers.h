// The renderers of a rule's match criteria, in text and JSON from one walk. renderMatches writes
// one rule's criteria in a fixed order; the others each draw one kind of criterion and are shared
// by the outer and the inner (encapsulated) header.
//
// The renderer's output context chooses the JSON form of protocols: revision 1 in JSON keeps the
// older form that lists ports and TCP flags without their grouping lists; every other
// combination writes the grouped form.
#pragma once

#include <cstdint>
#include <string_view>

#include "Classification/StructuredFilter.h"
#include "PolicyMap/PolicyMapConfig.h"
#include "TrafficPolicyCli/CliMap.h"
#include "TrafficPolicyCli/FieldSetState.h"
#include "TrafficPolicyCli/PolicyState.h"
#include "vellum/Renderer.h"

namespace TrafficPolicyCli {

// "ipv4", "ipv6", "mac", "mpls", or the empty string for any other option; a JSON key for the
// knowledge that it needs no escaping.
vellum::JsonKey matchOptionWord(PolicyMap::ClassMapMatchOption option) noexcept;

// One rule's criteria; `showFieldSetCounts` adds field-set sizes to the text.
void renderMatches(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                   PolicyState const& policyState, PolicyMap::ClassMapMatch const& match,
                   bool showFieldSetCounts, std::uint32_t indent);

// Literal prefixes under their criterion's label and key, in prefix order.
void renderPrefixSet(vellum::RendererV2& renderer, Criterion criterion,
                     Classification::PrefixSet const& prefixes, std::uint32_t indent);

// Prefix field sets, looked up among the IPv6 sets for an ipv6 rule and the IPv4 sets otherwise.
// The extended pass writes text and one JSON object per set; the other pass only a JSON list of
// the names.
void renderPrefixFieldSet(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                          PolicyMap::ClassMapMatchOption option, std::string_view label,
                          vellum::JsonKey jsonName, Classification::NameSet const& names,
                          bool showFieldSetCounts, std::uint32_t indent, bool extended);

// Numeric ranges under their criterion's label and key, in ascending order; single DSCP and
// protocol values print as names where they have one.
void renderNumericalRange(vellum::RendererV2& renderer, Criterion criterion,
                          Classification::RangeSet const& ranges, std::uint32_t indent,
                          PolicyMap::ClassMapMatchOption option);

// The encapsulation line and the inner header's addresses.
void renderInnerMatch(vellum::RendererV2& renderer, std::uint32_t indent, bool showFieldSetCounts,
                      FieldSetState const& fieldSetState,
                      Classification::EncapsulationField const& encapsulation,
                      Classification::StructuredFilter const& inner);

// ---- Criteria that carry more than a list of values ----

void renderVlanTag(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                   Classification::StructuredFilter const& structuredFilter, std::uint32_t indent,
                   PolicyMap::ClassMapMatchOption option, bool showFieldSetCounts);

// Protocols with their TCP flags, ports and ICMP types and codes. Protocols without any of these
// stand in one column after the label; once one protocol has one, each gets a line of its own
// with its criteria indented one level below it.
void renderProtocol(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                    Criterion criterion, Classification::StructuredFilter const& structuredFilter,
                    std::uint32_t indent, std::uint32_t indentCountPerLevel,
                    PolicyMap::ClassMapMatchOption option, bool showFieldSetCounts);

void renderL4Ports(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                   Classification::PortField const& portField, bool showFieldSetCounts,
                   std::uint32_t indent, PolicyMap::ClassMapMatchOption option);

void renderTcpFlags(vellum::RendererV2& renderer, Classification::ProtoField const& protoField,
                    std::uint32_t indent);

}  // namespace TrafficPolicyCli
