// "status": per direction (interface input, interface output, CPU) the policies as the agents
// report them: the match option each rule was processed for, the installation state per interface
// and match option, and the live counters. Counters go where the hardware section says this
// platform keeps them: the shared-memory table, or the policy's own status.
#include <array>
#include <string>

#include "Choice.h"
#include "ConfiguredNames.h"
#include "CountersReader.h"
#include "Members.h"
#include "NameOrder.h"
#include "Sections.h"
#include "StateError.h"
#include "TextValues.h"

namespace StateLoader {

namespace {

using PolicyMap::ClassMapMatchOption;
using PolicyMap::InstalledStatus;
using PolicyMap::PolicyMapStatus;

constexpr std::array kMatchOptions = {
    Choice<ClassMapMatchOption>{"ipv4", ClassMapMatchOption::ipv4},
    Choice<ClassMapMatchOption>{"ipv6", ClassMapMatchOption::ipv6},
};

constexpr std::array kInstallStates = {
    Choice<std::uint8_t>{"pending", PolicyMap::installPending},
    Choice<std::uint8_t>{"programmed", PolicyMap::installProgrammed},
    Choice<std::uint8_t>{"failed", PolicyMap::installFailed},
};

// The show library takes a rule's one match option; a status with more would break it.
void readMatchOptions(Node const& value, PolicyMap::ClassMapStatus& rule) {
   forEachElement(value, [&rule](Node const& element) {
      if (!rule.matchs().insert(readChoice(element, kMatchOptions, "match option"))) {
         fail(element.where, quoted(asString(element)) + " is already listed");
      }
   });
   if (rule.matchs().size() > 1) {
      fail(value.where, "a rule is processed for one match option at most, found " +
                            std::to_string(rule.matchs().size()));
   }
}

// A large policy's rules are read on every processor, as its configuration's are; each thread
// looks names up with its own copy of `names`, which remembers where the last one was found.
void readRuleStatuses(Node const& node, PolicyMapStatus& policy, ConfiguredNames const& names) {
   readMembersByName(
       node,
       [names = names](std::string_view key, Node const& value) mutable {
          auto rule = Kel::make<PolicyMap::ClassMapStatus>(names.rule(key, value.where));
          readMatchOptions(value, *rule);
          return rule;
       },
       policy.classMapStatus());
}

constexpr MemberTable kInstalledMembers = std::array{
    Member<InstalledStatus>{"state",
                            [](Node const& value, InstalledStatus& installed) {
                               installed.state =
                                   readChoice(value, kInstallStates, "installation state");
                            },
                            true},
    Member<InstalledStatus>{"error",
                            [](Node const& value, InstalledStatus& installed) {
                               installed.errorText = readText(value, "error text");
                            }},
};

template <ClassMapMatchOption option>
void readInstalled(Node const& value, PolicyMap::IntfStatus& intf) {
   InstalledStatus installed;
   readMembers(value, kInstalledMembers, installed);
   intf.installed().insertOrAssign(option, std::move(installed));
}

constexpr MemberTable kIntfStatusMembers = std::array{
    Member<PolicyMap::IntfStatus>{"ipv4", readInstalled<ClassMapMatchOption::ipv4>},
    Member<PolicyMap::IntfStatus>{"ipv6", readInstalled<ClassMapMatchOption::ipv6>},
};

void readInstallation(Node const& node, PolicyMapStatus& policy) {
   forEachMember(node, [&policy](std::string_view key, Node const& value) {
      auto intf = checkedIntfId(key, value.where);
      auto status = Kel::make<PolicyMap::IntfStatus>(intf);
      readMembers(value, kIntfStatusMembers, *status);
      if (!insertedNew(policy.intfStatus(), intf, std::move(status))) {
         failDuplicateKey(value.where, key);
      }
   });
}

// One policy's status, the maps its live counters go into, and the names its configuration holds.
struct PolicyStatusTarget {
   PolicyMapStatus& status;
   PolicyMap::PacketDataMap& classCounters;
   PolicyMap::PacketDataMap& namedCounters;
   ConfiguredNames const& names;
};

constexpr MemberTable kPolicyStatusMembers = std::array{
    Member<PolicyStatusTarget>{"rules",
                               [](Node const& value, PolicyStatusTarget& policy) {
                                  readRuleStatuses(value, policy.status, policy.names);
                               }},
    Member<PolicyStatusTarget>{"interfaces",
                               [](Node const& value, PolicyStatusTarget& policy) {
                                  readInstallation(value, policy.status);
                               }},
    Member<PolicyStatusTarget>{"ruleCounters",
                               [](Node const& value, PolicyStatusTarget& policy) {
                                  readRuleCounters(value, policy.classCounters, policy.names);
                               }},
    Member<PolicyStatusTarget>{"namedCounters",
                               [](Node const& value, PolicyStatusTarget& policy) {
                                  readNamedCounters(value, policy.namedCounters, policy.names);
                               }},
};

struct DirectionTarget {
   DirectionState& direction;
   TrafficPolicy::TrafficPolicyConfig const& config;
   bool sharedMemoryCounters;
};

// One policy's status with its counter table, when the platform keeps counters in one.
struct ReadPolicyStatus {
   Kel::Ptr<PolicyMapStatus> status;
   Kel::Ptr<PolicyMap::Counters::PolicyMapCounters> table;
};

ReadPolicyStatus readPolicyStatus(std::string_view key, Node const& value,
                                  DirectionTarget const& target) {
   ConfiguredNames names(target.config, key);
   ReadPolicyStatus read{
       Kel::make<PolicyMapStatus>(names.policy(key, value.where)),
       target.sharedMemoryCounters ? Kel::make<PolicyMap::Counters::PolicyMapCounters>() : nullptr};
   auto& [status, table] = read;
   PolicyStatusTarget policy{*status, table ? table->classCounter() : status->classCounter(),
                             table ? table->namedCounter() : status->namedCounter(), names};
   readMembers(value, kPolicyStatusMembers, policy);
   return read;
}

// Policies are read on every processor, as in the configuration, and entered in document order.
// The configuration is complete by now, and the reading threads only look names up in it.
void readPolicyStatuses(Node const& node, DirectionTarget& target) {
   forEachMemberInParallel(
       node,
       [&target](std::string_view key, Node const& value) {
          return readPolicyStatus(key, value, target);
       },
       [&target](std::string_view key, Where const& where, ReadPolicyStatus read) {
          auto const name = read.status->name();
          if (target.direction.status->policyMapStatus().contains(name)) {
             failDuplicateKey(where, key);
          }
          if (read.table) {
             target.direction.counterTable->policyMapCounters().insertOrAssign(
                 {name, ""}, std::move(read.table));
          }
          target.direction.status->policyMapStatus().insertOrAssign(name, std::move(read.status));
       });
}

constexpr MemberTable kDirectionMembers = std::array{
    Member<DirectionTarget>{"byteCountersSupported",
                            [](Node const& value, DirectionTarget& target) {
                               target.direction.status->byteCountersSupportedIs(asBool(value));
                            }},
    Member<DirectionTarget>{"perInterfaceCounters",
                            [](Node const& value, DirectionTarget& target) {
                               target.direction.status->perInterfaceCountersIs(asBool(value));
                            }},
    Member<DirectionTarget>{"policies", readPolicyStatuses},
};

template <DirectionState DeviceState::*direction>
void readDirection(Node const& value, DeviceState& state) {
   DirectionTarget target{state.*direction, *state.config, state.hwStatus->sharedMemoryCounters()};
   readMembers(value, kDirectionMembers, target);
}

constexpr MemberTable kStatusMembers = std::array{
    Member<DeviceState>{"interfaceInput", readDirection<&DeviceState::interfaceInput>},
    Member<DeviceState>{"interfaceOutput", readDirection<&DeviceState::interfaceOutput>},
    Member<DeviceState>{"cpu", readDirection<&DeviceState::cpu>},
};

}  // namespace

void readStatus(Node const& node, DeviceState& state) {
   readMembers(node, kStatusMembers, state);
}

}  // namespace StateLoader
