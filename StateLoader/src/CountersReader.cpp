// A counter record is made once its instance id is known, which may come after its counts in the
// object, so the members are gathered first.
#include "CountersReader.h"

#include <array>

#include "Members.h"
#include "NameOrder.h"
#include "TextValues.h"

namespace StateLoader {

namespace {

using PolicyMap::PacketAndByte;

struct CounterTarget {
   std::uint64_t instanceId = 0;
   PacketAndByte count;
   Kel::OrderedMap<Quoll::IntfId, PacketAndByte> perInterface;
};

void readPackets(Node const& value, PacketAndByte& count) {
   count.packets = asUnsigned(value, UINT64_MAX);
}

void readBytes(Node const& value, PacketAndByte& count) {
   count.bytes = asUnsigned(value, UINT64_MAX);
}

constexpr MemberTable kInterfaceCountMembers = std::array{
    Member<PacketAndByte>{"packets", readPackets, true},
    Member<PacketAndByte>{"bytes", readBytes},
};

void readPerInterface(Node const& value, CounterTarget& counter) {
   forEachMember(value, [&counter](std::string_view key, Node const& entry) {
      auto intf = checkedIntfId(key, entry.where);
      PacketAndByte count;
      readMembers(entry, kInterfaceCountMembers, count);
      if (!insertedNew(counter.perInterface, intf, count)) {
         failDuplicateKey(entry.where, key);
      }
   });
}

constexpr MemberTable kRuleCounterMembers = std::array{
    Member<CounterTarget>{"instanceId",
                          [](Node const& value, CounterTarget& counter) {
                             counter.instanceId = asUnsigned(value, UINT64_MAX);
                          },
                          true},
    Member<CounterTarget>{
        "packets",
        [](Node const& value, CounterTarget& counter) { readPackets(value, counter.count); }, true},
    Member<CounterTarget>{"bytes", [](Node const& value,
                                      CounterTarget& counter) { readBytes(value, counter.count); }},
};

constexpr auto kNamedCounterMembers =
    joined(kRuleCounterMembers, std::array{Member<CounterTarget>{"interfaces", readPerInterface}});

using NameOf = Kel::String (ConfiguredNames::*)(std::string_view, Where const&);

// A large policy's counters are read on every processor, as its rules are.
template <std::size_t N>
void readCounters(Node const& node, PolicyMap::PacketDataMap& into, ConfiguredNames const& names,
                  NameOf nameOf, MemberTable<CounterTarget, N> const& members) {
   readMembersByName(
       node,
       [names = names, nameOf, &members](std::string_view key, Node const& value) mutable {
          auto const name = (names.*nameOf)(key, value.where);
          CounterTarget counter;
          readMembers(value, members, counter);
          auto data = Kel::make<PolicyMap::PacketDataStatus>(name, counter.instanceId);
          data->countIs(counter.count);
          data->perIntfCount() = std::move(counter.perInterface);
          return data;
       },
       into);
}

}  // namespace

void readRuleCounters(Node const& node, PolicyMap::PacketDataMap& into,
                      ConfiguredNames const& names) {
   readCounters(node, into, names, &ConfiguredNames::rule, kRuleCounterMembers);
}

void readNamedCounters(Node const& node, PolicyMap::PacketDataMap& into,
                       ConfiguredNames const& names) {
   readCounters(node, into, names, &ConfiguredNames::counter, kNamedCounterMembers);
}

}  // namespace StateLoader
