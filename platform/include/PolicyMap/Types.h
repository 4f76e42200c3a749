// Small value types of the policy-map model shared by its configuration, status and counters.
#pragma once

#include <compare>
#include <cstdint>
#include <ostream>
#include <string_view>

#include "Kel/String.h"

namespace PolicyMap {

// The address family (or other match kind) a rule set is installed for.
enum class ClassMapMatchOption : std::uint8_t { ipv4 = 0, ipv6 = 1, mac = 2, mpls = 3 };

// "ipv4", "ipv6", "mac", "mpls"; the number for any other value.
std::ostream& operator<<(std::ostream& out, ClassMapMatchOption option);

// Action kinds by their wire values; only the ones a traffic policy can carry are named.
enum class ActionType : std::uint8_t {
   drop = 5,
   setDscp = 7,
   setAggGroup = 9,
   stripHeaderBytes = 11,
   setTc = 12,
   police = 13,
   count = 14,
   log = 16,
   gotoMatch = 17,
   setNexthopGroup = 20,
};

enum class RateUnit : std::uint8_t { bps = 0, kbps = 1, mbps = 2, gbps = 3, pps = 4 };

std::string_view toString(RateUnit unit) noexcept;
std::ostream& operator<<(std::ostream& out, RateUnit unit);

// Installation state of a policy on one interface for one match option, as an agent reports it.
enum InstalledState : std::uint8_t {
   installPending = 0,
   installProgrammed = 1,
   installFailed = 2,
};

struct InstalledStatus {
   std::uint8_t state = installPending;
   Kel::String errorText;
};

// Key of a policy's counters: the policy name and a second name (empty for the policy's totals).
struct PolicyMapSmKey {
   Kel::String policyName;
   Kel::String name;
   friend auto operator<=>(PolicyMapSmKey const&, PolicyMapSmKey const&) = default;
};

struct PacketAndByte {
   std::uint64_t packets = 0;
   std::uint64_t bytes = 0;
   friend bool operator==(PacketAndByte const&, PacketAndByte const&) = default;
};

}  // namespace PolicyMap
