// Readers of live policy counters. The show library reads counts through the base interface and
// does not care where they live: in the state database (the "ledger" reader over a type status)
// or in the shared-memory counter table (the "pylon" reader).
#pragma once

#include <cstdint>
#include <iterator>

#include "Kel/Entity.h"
#include "Kel/Ptr.h"
#include "PolicyMap/Counters.h"
#include "PolicyMap/PolicyMapStatus.h"
#include "PolicyMap/Types.h"

namespace PolicyMap {

// Finds counters by name in one map of one policy. Caching asks for a policy's counters in name
// order, and often only some of its rules count. So the cursor keeps the gap between the last
// counter found and the entry after it: a name equal to that entry is found with one comparison,
// and a name inside the gap is known to have no counter after two, both without a search. The gap
// is trusted only while the map has not changed since.
class CounterCursor {
 public:
   Kel::Ptr<PacketDataStatus const> find(PacketDataMap const& counters, Kel::String const& name) {
      if (counters.changeCount() != changeCount_) {
         reset(counters);
      }
      auto const end = counters.end();
      if (next_ != end && next_->first == name) {
         return take(next_);
      }
      if (inGap(name, end)) {
         return nullptr;
      }
      auto const position = counters.find(name);
      return position == end ? nullptr : take(position);
   }
   // For a map it has not seen yet: the gap before its first entry.
   void reset(PacketDataMap const& counters) {
      changeCount_ = counters.changeCount();
      next_ = counters.begin();
      hasPrevious_ = false;
   }

 private:
   bool inGap(Kel::String const& name, PacketDataMap::const_iterator const& end) const {
      return (!hasPrevious_ || previous_->first < name) && (next_ == end || name < next_->first);
   }
   Kel::Ptr<PacketDataStatus const> take(PacketDataMap::const_iterator position) {
      previous_ = position;
      hasPrevious_ = true;
      next_ = std::next(position);
      return position->second;
   }

   std::uint64_t changeCount_ = 0;
   bool hasPrevious_ = false;
   PacketDataMap::const_iterator previous_;
   PacketDataMap::const_iterator next_;
};

// The answer to the last lookup of a policy's counters, kept while the same policy is asked for
// and the collection it came from has not changed, with a cursor into each of its counter maps.
template <typename PolicyCounters>
struct LastLookup {
   template <typename Collection, typename Key>
   PolicyCounters const* get(PolicyMapSmKey const& key, Collection const* collection,
                             Key const& collectionKey) {
      auto const changeCount = collection ? collection->changeCount() : 0;
      if (!valid || lastKey != key || lastChangeCount != changeCount) {
         auto const* entry = collection ? collection->lookup(collectionKey) : nullptr;
         found = entry ? *entry : nullptr;
         lastKey = key;
         lastChangeCount = changeCount;
         valid = true;
         if (found) {
            classCursor.reset(found->classCounter());
            namedCursor.reset(found->namedCounter());
         }
      }
      return found.get();
   }

   bool valid = false;
   PolicyMapSmKey lastKey;
   std::uint64_t lastChangeCount = 0;
   Kel::Ptr<PolicyCounters const> found;
   CounterCursor classCursor;
   CounterCursor namedCursor;
};

class PolicyMapCounterStatusReaderBase : public Kel::Entity {
 public:
   // Null when the policy or the counter is unknown.
   virtual Kel::Ptr<PacketDataStatus const> classCounterData(
       PolicyMapSmKey const& key, Kel::String const& className) const = 0;
   virtual Kel::Ptr<PacketDataStatus const> namedCounterData(
       PolicyMapSmKey const& key, Kel::String const& counterName) const = 0;
   virtual std::uint32_t numClasses(PolicyMapSmKey const& key) const = 0;
   virtual std::uint32_t numNamedCounters(PolicyMapSmKey const& key) const = 0;
};

// Both readers keep their counters per policy, each policy with a rule and a named-counter map;
// they differ only in where a policy's counters are found (policy()).
template <typename PolicyCounters>
class PerPolicyCounterReader : public PolicyMapCounterStatusReaderBase {
 public:
   Kel::Ptr<PacketDataStatus const> classCounterData(PolicyMapSmKey const& key,
                                                     Kel::String const& className) const override {
      auto const* counters = policy(key);
      return counters ? lastPolicy_.classCursor.find(counters->classCounter(), className) : nullptr;
   }
   Kel::Ptr<PacketDataStatus const> namedCounterData(
       PolicyMapSmKey const& key, Kel::String const& counterName) const override {
      auto const* counters = policy(key);
      return counters ? lastPolicy_.namedCursor.find(counters->namedCounter(), counterName)
                      : nullptr;
   }
   std::uint32_t numClasses(PolicyMapSmKey const& key) const override {
      auto const* counters = policy(key);
      return counters ? static_cast<std::uint32_t>(counters->classCounter().size()) : 0;
   }
   std::uint32_t numNamedCounters(PolicyMapSmKey const& key) const override {
      auto const* counters = policy(key);
      return counters ? static_cast<std::uint32_t>(counters->namedCounter().size()) : 0;
   }

 protected:
   // The policy's counters, or null.
   virtual PolicyCounters const* policy(PolicyMapSmKey const& key) const = 0;

   // Readers are asked about one policy's counters many times in a row.
   mutable LastLookup<PolicyCounters> lastPolicy_;
};

class PolicyMapLedgerCounterStatusReader : public PerPolicyCounterReader<PolicyMapStatus> {
 public:
   // A null type status reads as empty.
   explicit PolicyMapLedgerCounterStatusReader(Kel::Ptr<PolicyMapTypeStatus const> typeStatus)
       : typeStatus_(std::move(typeStatus)) {}
   Kel::TypeInfo const& fwkType() const override;

 protected:
   Kel::Ptr<PolicyMapTypeStatus const> const& typeStatus() const noexcept { return typeStatus_; }
   PolicyMapStatus const* policy(PolicyMapSmKey const& key) const override;

 private:
   Kel::Ptr<PolicyMapTypeStatus const> typeStatus_;
};

class PolicyMapPylonCounterStatusReader
    : public PerPolicyCounterReader<Counters::PolicyMapCounters> {
 public:
   // A null table reads as empty.
   explicit PolicyMapPylonCounterStatusReader(
       Kel::Ptr<Counters::PolicyMapTypeCounters const> typeCounters)
       : typeCounters_(std::move(typeCounters)) {}
   Kel::TypeInfo const& fwkType() const override;

 protected:
   Kel::Ptr<Counters::PolicyMapTypeCounters const> const& typeCounters() const noexcept {
      return typeCounters_;
   }
   Counters::PolicyMapCounters const* policy(PolicyMapSmKey const& key) const override;

 private:
   Kel::Ptr<Counters::PolicyMapTypeCounters const> typeCounters_;
};

}  // namespace PolicyMap
