// "interfaces" and "vrfs": which policy is applied on which interface per direction, which VRF
// each routed interface is in, the VRFs of the system and the CPU policy of each VRF (or of "all"
// VRFs without one of their own).
#include <array>

#include "Members.h"
#include "Sections.h"
#include "TextValues.h"

namespace StateLoader {

namespace {

constexpr std::string_view kPolicyName = "policy name";
constexpr std::string_view kVrfName = "VRF name";

void readPolicyByInterface(Node const& node, PolicyMap::IntfConfig& config) {
   forEachMember(node, [&config](std::string_view key, Node const& value) {
      auto intf = checkedIntfId(key, value.where);
      if (!insertedNew(config.intf(), intf, readName(value, kPolicyName))) {
         failDuplicateKey(value.where, key);
      }
   });
}

void readVrfByInterface(Node const& node, L3::Intf::StatusDir& statusDir) {
   forEachMember(node, [&statusDir](std::string_view key, Node const& value) {
      auto intf = checkedIntfId(key, value.where);
      auto status = Kel::make<L3::Intf::Status>(intf, readName(value, kVrfName));
      if (!insertedNew(statusDir.intfStatus(), intf, std::move(status))) {
         failDuplicateKey(value.where, key);
      }
   });
}

constexpr MemberTable kInterfacesMembers = std::array{
    Member<DeviceState>{"input",
                        [](Node const& value, DeviceState& state) {
                           readPolicyByInterface(value, *state.intfConfigInput);
                        }},
    Member<DeviceState>{"output",
                        [](Node const& value, DeviceState& state) {
                           readPolicyByInterface(value, *state.intfConfigOutput);
                        }},
    Member<DeviceState>{"vrf",
                        [](Node const& value, DeviceState& state) {
                           readVrfByInterface(value, *state.l3IntfStatusDir);
                        }},
};

void readPolicyByVrf(Node const& node, PolicyMap::VrfConfig& config) {
   forEachMember(node, [&config](std::string_view key, Node const& value) {
      auto const vrf = checkedName(key, kVrfName, value.where);
      if (!insertedNew(config.vrf(), vrf, readName(value, kPolicyName))) {
         failDuplicateKey(value.where, key);
      }
   });
}

constexpr MemberTable kVrfsMembers = std::array{
    Member<DeviceState>{"names",
                        [](Node const& value, DeviceState& state) {
                           readNameList(value, kVrfName, state.allVrfConfig->vrf());
                        }},
    Member<DeviceState>{
        "cpuPolicy",
        [](Node const& value, DeviceState& state) { readPolicyByVrf(value, *state.vrfConfig); }},
};

}  // namespace

void readInterfaces(Node const& node, DeviceState& state) {
   readMembers(node, kInterfacesMembers, state);
}

void readVrfs(Node const& node, DeviceState& state) {
   readMembers(node, kVrfsMembers, state);
}

}  // namespace StateLoader
