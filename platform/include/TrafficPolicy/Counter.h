// The snapshot store of one direction's counters. A clear records, per counter, its instance id and
// count at that moment; displays subtract the snapshot while the instance id still matches.
#pragma once

#include <compare>
#include <cstdint>

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/Types.h"
#include "Quoll/IntfId.h"

namespace TrafficPolicy {

// A rule's counter: the policy name and the class (rule) name.
struct CounterKey {
   Kel::String policyName;
   Kel::String className;
   friend auto operator<=>(CounterKey const&, CounterKey const&) = default;
};

struct NamedCounterKey {
   Kel::String policyName;
   Kel::String counterName;
   friend auto operator<=>(NamedCounterKey const&, NamedCounterKey const&) = default;
};

// A rule snapshot; rules have no byte snapshot. The default instance id matches no live counter.
struct CounterVersion {
   std::uint64_t instanceId = 0;
   std::uint64_t pkts = 0;
   friend bool operator==(CounterVersion const&, CounterVersion const&) = default;
};

// A named counter's snapshot of one interface.
class IntfCountVersion : public Kel::Entity {
 public:
   explicit IntfCountVersion(std::uint64_t instanceId) : instanceId_(instanceId) {}
   Kel::TypeInfo const& fwkType() const override;

   std::uint64_t instanceId() const noexcept { return instanceId_; }
   PolicyMap::PacketAndByte const& countData() const noexcept { return countData_; }
   void countDataIs(PolicyMap::PacketAndByte count) noexcept { countData_ = count; }

 private:
   std::uint64_t instanceId_;
   PolicyMap::PacketAndByte countData_;
};

class NamedCounterVersion : public Kel::Entity {
 public:
   explicit NamedCounterVersion(std::uint64_t instanceId) : instanceId_(instanceId) {}
   Kel::TypeInfo const& fwkType() const override;

   std::uint64_t instanceId() const noexcept { return instanceId_; }
   PolicyMap::PacketAndByte const& totalCount() const noexcept { return totalCount_; }
   void totalCountIs(PolicyMap::PacketAndByte count) noexcept { totalCount_ = count; }

   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<IntfCountVersion>> const& perIntfCount() const noexcept {
      return perIntfCount_;
   }
   Kel::Ptr<IntfCountVersion> perIntfCountIs(Quoll::IntfId const& intf, std::uint64_t instanceId);
   void perIntfCountDel(Quoll::IntfId const& intf) { perIntfCount_.erase(intf); }

 private:
   std::uint64_t instanceId_;
   PolicyMap::PacketAndByte totalCount_;
   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<IntfCountVersion>> perIntfCount_;
};

class Counter : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override;

   Kel::OrderedMap<CounterKey, CounterVersion> const& snapshot() const noexcept {
      return snapshot_;
   }
   CounterVersion const* snapshot(CounterKey const& key) const { return snapshot_.lookup(key); }
   void snapshotIs(CounterKey const& key, CounterVersion version) {
      snapshot_.insertOrAssign(key, version);
   }
   void snapshotDel(CounterKey const& key) { snapshot_.erase(key); }

   Kel::OrderedMap<NamedCounterKey, Kel::Ptr<NamedCounterVersion>> const& namedSnapshot()
       const noexcept {
      return namedSnapshot_;
   }
   Kel::Ptr<NamedCounterVersion const> namedSnapshot(NamedCounterKey const& key) const;
   // Creates the snapshot for the key, or returns the one there.
   Kel::Ptr<NamedCounterVersion> namedSnapshotIs(NamedCounterKey const& key,
                                                 std::uint64_t instanceId);
   void namedSnapshotDel(NamedCounterKey const& key) { namedSnapshot_.erase(key); }

   // Seconds since the epoch of the last clear; 0 when never cleared.
   double timestamp() const noexcept { return timestamp_; }
   void timestampIs(double seconds) noexcept { timestamp_ = seconds; }

 private:
   Kel::OrderedMap<CounterKey, CounterVersion> snapshot_;
   Kel::OrderedMap<NamedCounterKey, Kel::Ptr<NamedCounterVersion>> namedSnapshot_;
   double timestamp_ = 0;
};

}  // namespace TrafficPolicy
