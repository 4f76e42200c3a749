// Clearing counters: the snapshot helpers record, for every live counter of one direction, its
// instance id and count in the direction's snapshot store, so that later displays show counts since
// the clear. Each helper is itself a reader of the live counters it snapshots (the state database's
// type status, or the shared-memory counter table), and passes itself to the clean-up that drops
// snapshots of counters that are gone. The command layer reaches them through their factories and
// calls only the virtual clearCounter().
#pragma once

#include <utility>

#include "Kel/Ptr.h"
#include "PolicyMap/CounterStatusReader.h"
#include "TrafficPolicy/Counter.h"

namespace TrafficPolicyCli {

class TrafficPolicyLedgerCounterSnapshotHelper
    : public PolicyMap::PolicyMapLedgerCounterStatusReader {
 public:
   TrafficPolicyLedgerCounterSnapshotHelper(
       Kel::Ptr<PolicyMap::PolicyMapTypeStatus const> typeStatus,
       Kel::Ptr<TrafficPolicy::Counter> counter)
       : PolicyMapLedgerCounterStatusReader(std::move(typeStatus)), counter_(std::move(counter)) {}
   Kel::TypeInfo const& fwkType() const override;

   // Snapshots every rule and named counter of the type status; named counters also per
   // interface when the type status keeps them so.
   virtual void clearCounter();

   Kel::Ptr<TrafficPolicy::Counter> const& counter() const noexcept { return counter_; }

 private:
   Kel::Ptr<TrafficPolicy::Counter> counter_;
};

class TrafficPolicyPylonCounterSnapshotHelper
    : public PolicyMap::PolicyMapPylonCounterStatusReader {
 public:
   TrafficPolicyPylonCounterSnapshotHelper(
       Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters const> typeCounters,
       Kel::Ptr<TrafficPolicy::Counter> counter, bool perInterface)
       : PolicyMapPylonCounterStatusReader(std::move(typeCounters)),
         counter_(std::move(counter)),
         perInterface_(perInterface) {}
   Kel::TypeInfo const& fwkType() const override;

   // Snapshots every policy's totals in the table; named counters also per interface when
   // perInterface() is set.
   virtual void clearCounter();

   Kel::Ptr<TrafficPolicy::Counter> const& counter() const noexcept { return counter_; }
   bool perInterface() const noexcept { return perInterface_; }

 private:
   Kel::Ptr<TrafficPolicy::Counter> counter_;
   bool perInterface_;
};

// Drops the snapshots whose counter `reader` no longer has: rule snapshots first, then named
// snapshots, and of the named ones that stay, the interfaces the live counter no longer lists.
void _cleanupStaleSnapshots(
    Kel::Ptr<TrafficPolicy::Counter> const& counter,
    Kel::Ptr<PolicyMap::PolicyMapCounterStatusReaderBase const> const& reader);

}  // namespace TrafficPolicyCli
