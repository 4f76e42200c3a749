// What a command line asks for once its words are parsed: one value per command form, holding the
// choices the user made and nothing else. The runner turns a request into factory arguments.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "Classification/Range.h"
#include "Quoll/IpGenPrefix.h"

namespace tpcli {

// Which attachment directions an interface command or a clear covers.
enum class Direction { both, input, output };

// `standard` is the view without a view keyword.
enum class PolicyView { standard, summary, detail, errors, counters };

struct InterfaceRequest {
   std::string policyName;  // empty: every policy
   Direction direction = Direction::both;
   PolicyView view = PolicyView::standard;
   friend bool operator==(InterfaceRequest const&, InterfaceRequest const&) = default;
};

struct CpuRequest {
   std::string policyName;
   PolicyView view = PolicyView::standard;
   friend bool operator==(CpuRequest const&, CpuRequest const&) = default;
};

struct PrefixFieldSetRequest {
   bool ipv4 = true;
   std::string name;  // empty: every set
   std::optional<Quoll::IpGenPrefix> contains = std::nullopt;
   bool exact = false;
   friend bool operator==(PrefixFieldSetRequest const&, PrefixFieldSetRequest const&) = default;
};

struct L4PortFieldSetRequest {
   std::string name;
   std::optional<Classification::PortRange> contains = std::nullopt;
   friend bool operator==(L4PortFieldSetRequest const&, L4PortFieldSetRequest const&) = default;
};

struct VlanFieldSetRequest {
   std::string name;
   std::optional<Classification::VlanRange> contains = std::nullopt;
   friend bool operator==(VlanFieldSetRequest const&, VlanFieldSetRequest const&) = default;
};

using ShowRequest = std::variant<InterfaceRequest, CpuRequest, PrefixFieldSetRequest,
                                 L4PortFieldSetRequest, VlanFieldSetRequest>;

enum class ClearScope { all, interface, cpu };

struct ClearCountersRequest {
   ClearScope scope = ClearScope::all;
   Direction direction = Direction::both;  // interfaces only
   friend bool operator==(ClearCountersRequest const&, ClearCountersRequest const&) = default;
};

// Commands of the interactive shell alone.
enum class SessionRequest { reload, exit };

using Request = std::variant<ShowRequest, ClearCountersRequest, SessionRequest>;

struct ParsedCommand {
   Request request;
   bool json = false;  // the line ended in "| json"
   friend bool operator==(ParsedCommand const&, ParsedCommand const&) = default;
};

}  // namespace tpcli
