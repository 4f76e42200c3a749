// Reading a snapshot file back into the directions' snapshot stores. It is checked as strictly as a
// state file: a damaged file must stop the command, since taking it as "no snapshots" would show
// counts that were cleared as if they never had been.
#include <cmath>
#include <new>
#include <set>
#include <vector>

#include "Document.h"
#include "Members.h"
#include "SnapshotDirections.h"
#include "StateError.h"
#include "StateLoader/Snapshots.h"
#include "TextValues.h"
#include "TrustedFile.h"

namespace StateLoader {

namespace {

using PolicyMap::PacketAndByte;
using TrafficPolicy::Counter;

std::uint64_t readCount(Node const& value) {
   return asUnsigned(value, UINT64_MAX);
}

struct IntfSnapshot {
   std::uint64_t instanceId = 0;
   PacketAndByte count;
};

// A named counter's snapshot is made once its instance id is known, which may come after its
// counts, so the members are gathered first.
struct NamedSnapshot {
   std::uint64_t instanceId = 0;
   PacketAndByte total;
   std::vector<std::pair<Quoll::IntfId, IntfSnapshot>> perInterface;
};

PacketAndByte& countOf(IntfSnapshot& target) {
   return target.count;
}
PacketAndByte& countOf(NamedSnapshot& target) {
   return target.total;
}

template <typename Target>
constexpr MemberTable kCountMembers = std::array{
    Member<Target>{"instanceId",
                   [](Node const& value, Target& target) { target.instanceId = readCount(value); },
                   true},
    Member<Target>{
        "packets",
        [](Node const& value, Target& target) { countOf(target).packets = readCount(value); },
        true},
    Member<Target>{"bytes", [](Node const& value,
                               Target& target) { countOf(target).bytes = readCount(value); }},
};

void readPerInterface(Node const& node, NamedSnapshot& snapshot) {
   std::set<Quoll::IntfId> seen;
   forEachMember(node, [&](std::string_view key, Node const& value) {
      auto intf = checkedIntfId(key, value.where);
      if (!seen.insert(intf).second) {
         failDuplicateKey(value.where, key);
      }
      IntfSnapshot entry;
      readMembers(value, kCountMembers<IntfSnapshot>, entry);
      snapshot.perInterface.emplace_back(std::move(intf), entry);
   });
}

constexpr auto kNamedMembers =
    joined(kCountMembers<NamedSnapshot>,
           std::array{Member<NamedSnapshot>{"interfaces", readPerInterface}});

// Rules carry packets only; a count of bytes is refused rather than dropped unseen.
constexpr MemberTable kRuleMembers =
    std::array{kCountMembers<IntfSnapshot>.members[0], kCountMembers<IntfSnapshot>.members[1]};

// Calls visit(policy name, counter name, entry) for every entry of a section, whose objects are
// keyed by policy, then by counter.
template <typename Visit>
void forEachEntry(Node const& section, Visit&& visit) {
   std::set<std::string_view> policies;
   forEachMember(section, [&](std::string_view policyKey, Node const& policy) {
      auto const policyName = checkedName(policyKey, "policy name", policy.where);
      if (!policies.insert(policyKey).second) {
         failDuplicateKey(policy.where, policyKey);
      }
      forEachMember(policy, [&](std::string_view key, Node const& entry) {
         visit(policyName, checkedName(key, "counter name", entry.where), entry, key);
      });
   });
}

void readRuleSnapshots(Node const& section, Counter& counter) {
   forEachEntry(section, [&counter](Kel::String const& policy, Kel::String const& rule,
                                    Node const& entry, std::string_view key) {
      if (counter.snapshot({policy, rule})) {
         failDuplicateKey(entry.where, key);
      }
      IntfSnapshot read;
      readMembers(entry, kRuleMembers, read);
      counter.snapshotIs({policy, rule}, {read.instanceId, read.count.packets});
   });
}

void readNamedSnapshots(Node const& section, Counter& counter) {
   forEachEntry(section, [&counter](Kel::String const& policy, Kel::String const& name,
                                    Node const& entry, std::string_view key) {
      if (counter.namedSnapshot({policy, name})) {
         failDuplicateKey(entry.where, key);
      }
      NamedSnapshot read;
      readMembers(entry, kNamedMembers, read);
      auto const snapshot = counter.namedSnapshotIs({policy, name}, read.instanceId);
      snapshot->totalCountIs(read.total);
      for (auto const& [intf, intfSnapshot] : read.perInterface) {
         snapshot->perIntfCountIs(intf, intfSnapshot.instanceId)->countDataIs(intfSnapshot.count);
      }
   });
}

void readTimestamp(Node const& value, Counter& counter) {
   auto const seconds = value.value.get_double();
   if (seconds.error() || !std::isfinite(seconds.value_unsafe()) || seconds.value_unsafe() < 0) {
      fail(value.where, "expected the seconds since 1970 as a number of 0 or more");
   }
   counter.timestampIs(seconds.value_unsafe());
}

constexpr MemberTable kStoreMembers = std::array{
    Member<Counter>{"timestamp", readTimestamp},
    Member<Counter>{"ruleCounters", readRuleSnapshots},
    Member<Counter>{"namedCounters", readNamedSnapshots},
};

template <std::size_t index>
void readDirection(Node const& value, DeviceState& state) {
   readMembers(value, kStoreMembers, *(state.*kSnapshotDirections[index].direction).counter);
}

constexpr MemberTable kDirectionMembers = std::array{
    Member<DeviceState>{kSnapshotDirections[0].key, readDirection<0>},
    Member<DeviceState>{kSnapshotDirections[1].key, readDirection<1>},
    Member<DeviceState>{kSnapshotDirections[2].key, readDirection<2>},
};
static_assert(kDirectionMembers.members.size() == kSnapshotDirections.size());

// The checked file is parsed through its own descriptor, so that the file parsed is the file
// checked even if the name is pointed elsewhere in between.
std::string pathOfDescriptor(FileDescriptor const& file) {
   return "/proc/self/fd/" + std::to_string(file.get());
}

}  // namespace

std::optional<Kel::Failure> readSnapshots(std::string const& path, DeviceState& state) {
   // Non-blocking, so that a FIFO put in its place is refused rather than waited on.
   auto const file = openTrusted(path, O_RDONLY | O_NONBLOCK);
   if (!file) {
      return Kel::Failure{path + ": " + file.reason()};
   }
   if (!*file) {
      return std::nullopt;
   }
   try {
      simdjson::dom::document document;
      Where const top = Where::root();
      readMembers(Node{parseStateFile(document, pathOfDescriptor(*file)), top}, kDirectionMembers,
                  state);
      return std::nullopt;
   } catch (StateError const& error) {
      return Kel::Failure{reasonOf(path, error)};
   } catch (std::bad_alloc const&) {
      return Kel::Failure{path + ": not enough memory to read the snapshots"};
   }
}

}  // namespace StateLoader
