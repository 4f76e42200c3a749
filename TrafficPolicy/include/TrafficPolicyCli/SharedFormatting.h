// Small formatting pieces that every renderer of the show commands shares: text indentation, the
// heading of a labelled line, the names that stand in for DSCP and protocol numbers, lists of
// interface or VRF names, and the counter-granularity line.
#pragma once

#include <cstdint>
#include <string_view>

#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/Types.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"
#include "vellum/Renderer.h"

namespace TrafficPolicyCli {

// Exactly `blanks` blanks at the start of a text line. This and the heading are in line because
// nearly every line has them: in JSON they come down to one test of the format.
inline void writeIndent(vellum::RendererV2& renderer, std::uint32_t blanks) {
   renderer.writeIndented(blanks, {});
}

// Text: the indentation, the label and ": ". Returns the column at which the value starts, where
// the later values of a list stand.
inline std::uint32_t writeHeading(vellum::RendererV2& renderer, std::uint32_t indent,
                                  std::string_view label) {
   renderer.writeIndented(indent, label);
   renderer.addFrill(": ");
   return indent + static_cast<std::uint32_t>(label.size()) + 2;
}

// The name of a single DSCP value ("DSCP") or protocol number ("Protocol", per match option), or
// the empty string when the value has none or the field has no names. The name lives as long as
// the process.
std::string_view numericalValueToStrFor(std::string_view fieldName, std::uint32_t value,
                                        PolicyMap::ClassMapMatchOption matchOption);

// How far the lists of interfaces and VRFs, and the installation errors below them, are indented.
inline constexpr std::uint32_t kListIndent = 3;

// One labelled line of interface or VRF names in key order, indented by kListIndent: in text at
// most three names and then "..." unless `showAll`; in JSON every name under `jsonKey`. With
// `printText` clear only the JSON list is written (a second copy of a list kept for older readers).
void renderListEntry(vellum::RendererV2& renderer, std::string_view label, std::string_view jsonKey,
                     Kel::OrderedMap<Kel::String, bool> const& names, bool showAll, bool printText);

// "Counter granularity: ..." for the ingress or egress direction; nothing without the status.
void renderCounterGranularity(
    vellum::RendererV2& renderer,
    Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus const> const& intfParamStatus,
    bool ingress);

}  // namespace TrafficPolicyCli
