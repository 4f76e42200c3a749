// The grammar of tpcli's commands:
//
//   show traffic-policy [policy NAME] interface [input|output] [summary|detail|errors|counters]
//   show traffic-policy [policy NAME] cpu [summary|detail|errors|counters]
//   show traffic-policy field-set ipv4|ipv6 prefix [NAME] [contains PREFIX [exact]]
//   show traffic-policy field-set l4-port [NAME] [contains PORT|LOW-HIGH]
//   show traffic-policy field-set vlan [NAME] [contains VLAN|LOW-HIGH]
//   clear traffic-policy counters [interface [input|output] | cpu]
//
// each optionally followed by "| json" ("|json" as one word too). Keywords may be abbreviated;
// where a field-set name may stand, a word that abbreviates "contains" is taken as the keyword.
#pragma once

#include <string>
#include <vector>

#include "Kel/Expected.h"
#include "tpcli/Command.h"

namespace tpcli {

// On failure the reason is the usage message (without the "tpcli: " prefix).
Kel::Expected<ParsedCommand> parseCommand(std::vector<std::string> const& words);

}  // namespace tpcli
