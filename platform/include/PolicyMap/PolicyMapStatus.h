// Status of policy maps as the programming agents report it: per rule the match options it was
// processed for, per interface the installation state per match option, and the live counters.
#pragma once

#include <cstdint>

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/Types.h"
#include "Quoll/IntfId.h"

namespace PolicyMap {

// Installation of one policy on one interface, per match option.
class IntfStatus : public Kel::Entity {
 public:
   explicit IntfStatus(Quoll::IntfId intfId) : intfId_(std::move(intfId)) {}
   Kel::TypeInfo const& fwkType() const override;

   Quoll::IntfId const& intfId() const noexcept { return intfId_; }
   Kel::OrderedMap<ClassMapMatchOption, InstalledStatus> const& installed() const noexcept {
      return installed_;
   }
   Kel::OrderedMap<ClassMapMatchOption, InstalledStatus>& installed() noexcept {
      return installed_;
   }
   // Null when the agent reported nothing for the option.
   InstalledStatus const* installedStatus(ClassMapMatchOption option) const {
      return installed_.lookup(option);
   }

 private:
   Quoll::IntfId intfId_;
   Kel::OrderedMap<ClassMapMatchOption, InstalledStatus> installed_;
};

// One rule's status: the match options it was processed for (at most one).
class ClassMapStatus : public Kel::Entity {
 public:
   explicit ClassMapStatus(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   Kel::OrderedSet<ClassMapMatchOption> const& matchs() const noexcept { return matchs_; }
   Kel::OrderedSet<ClassMapMatchOption>& matchs() noexcept { return matchs_; }

 private:
   Kel::String name_;
   Kel::OrderedSet<ClassMapMatchOption> matchs_;
};

// Live counts of one rule or named counter. The instance id changes whenever the producer
// recreates the record, so that a snapshot of an earlier life is never subtracted.
class PacketDataStatus : public Kel::Entity {
 public:
   PacketDataStatus(Kel::String name, std::uint64_t instanceId)
       : name_(std::move(name)), instanceId_(instanceId) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   std::uint64_t instanceId() const noexcept { return instanceId_; }
   std::uint64_t pkts() const noexcept { return count_.packets; }
   std::uint64_t bytes() const noexcept { return count_.bytes; }
   PacketAndByte const& count() const noexcept { return count_; }
   void countIs(PacketAndByte count) noexcept { count_ = count; }
   Kel::OrderedMap<Quoll::IntfId, PacketAndByte> const& perIntfCount() const noexcept {
      return perIntfCount_;
   }
   Kel::OrderedMap<Quoll::IntfId, PacketAndByte>& perIntfCount() noexcept { return perIntfCount_; }

 private:
   Kel::String name_;
   std::uint64_t instanceId_;
   PacketAndByte count_;
   Kel::OrderedMap<Quoll::IntfId, PacketAndByte> perIntfCount_;
};

using PacketDataMap = Kel::OrderedMap<Kel::String, Kel::Ptr<PacketDataStatus const>>;

class PolicyMapStatus : public Kel::Entity {
 public:
   explicit PolicyMapStatus(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassMapStatus const>> const& classMapStatus()
       const noexcept {
      return classMapStatus_;
   }
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassMapStatus const>>& classMapStatus() noexcept {
      return classMapStatus_;
   }
   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<IntfStatus const>> const& intfStatus() const noexcept {
      return intfStatus_;
   }
   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<IntfStatus const>>& intfStatus() noexcept {
      return intfStatus_;
   }
   // Live counters kept in the state database: per rule and per named counter.
   PacketDataMap const& classCounter() const noexcept { return classCounter_; }
   PacketDataMap& classCounter() noexcept { return classCounter_; }
   PacketDataMap const& namedCounter() const noexcept { return namedCounter_; }
   PacketDataMap& namedCounter() noexcept { return namedCounter_; }

 private:
   Kel::String name_;
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassMapStatus const>> classMapStatus_;
   Kel::OrderedMap<Quoll::IntfId, Kel::Ptr<IntfStatus const>> intfStatus_;
   PacketDataMap classCounter_;
   PacketDataMap namedCounter_;
};

// The status of every policy map of one type (one direction of one attachment point).
class PolicyMapTypeStatus : public Kel::Entity {
 public:
   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMapStatus const>> const& policyMapStatus()
       const noexcept {
      return policyMapStatus_;
   }
   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMapStatus const>>& policyMapStatus() noexcept {
      return policyMapStatus_;
   }
   bool byteCountersSupported() const noexcept { return byteCountersSupported_; }
   void byteCountersSupportedIs(bool supported) noexcept { byteCountersSupported_ = supported; }
   // Whether named counters are also kept per interface.
   bool perInterfaceCounters() const noexcept { return perInterfaceCounters_; }
   void perInterfaceCountersIs(bool perInterface) noexcept { perInterfaceCounters_ = perInterface; }

 private:
   Kel::OrderedMap<Kel::String, Kel::Ptr<PolicyMapStatus const>> policyMapStatus_;
   bool byteCountersSupported_ = false;
   bool perInterfaceCounters_ = false;
};

}  // namespace PolicyMap
