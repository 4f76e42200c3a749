// Numbers in the command line, and the values a command can filter on: a port or VLAN, alone or as
// a range LOW-HIGH, and a prefix of the family that the command lists. On failure the reason says
// what was expected, for the grammar to put after the word it rejects.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Classification/Range.h"
#include "Kel/Expected.h"
#include "Quoll/IpGenPrefix.h"

namespace tpcli {

// A plain decimal number within [lowest, highest]: no sign, no blanks, nothing after it.
std::optional<std::uint32_t> parseNumber(std::string_view text, std::uint32_t lowest,
                                         std::uint32_t highest);

// Seconds as a plain decimal number ("10", "0.25"), from 0 to a day.
std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text);

// 0 to 65535, as in a state file.
Kel::Expected<Classification::PortRange> parsePortRange(std::string_view text);
// 1 to 4095, as in a state file.
Kel::Expected<Classification::VlanRange> parseVlanRange(std::string_view text);
// "ADDRESS/LENGTH" or a bare address for its host prefix, in IPv4 or IPv6 as asked.
Kel::Expected<Quoll::IpGenPrefix> parsePrefixOfFamily(std::string_view text, bool ipv4);

}  // namespace tpcli
