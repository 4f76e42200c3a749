// Small formatting pieces that every renderer of the show commands shares: text indentation, the
// heading of a labelled line, and the names that stand in for DSCP and protocol numbers.
#pragma once

#include <cstdint>
#include <string_view>

#include "Kel/String.h"
#include "PolicyMap/Types.h"
#include "vellum/Renderer.h"

namespace TrafficPolicyCli {

// Exactly `blanks` blanks at the start of a text line.
void writeIndent(vellum::RendererV2& renderer, std::uint32_t blanks);

// Text: the indentation, the label and ": ". Returns the column at which the value starts, where
// the later values of a list stand.
std::uint32_t writeHeading(vellum::RendererV2& renderer, std::uint32_t indent,
                           std::string_view label);

// The name of a single DSCP value ("DSCP") or protocol number ("Protocol", per match option), or
// the empty string when the value has none or the field has no names.
Kel::String numericalValueToStrFor(std::string_view fieldName, std::uint32_t value,
                                   PolicyMap::ClassMapMatchOption matchOption);

}  // namespace TrafficPolicyCli
