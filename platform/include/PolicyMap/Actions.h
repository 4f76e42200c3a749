// The actions of a rule. Drop and log carry nothing but their type; the others carry their value.
#pragma once

#include <cstdint>

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/String.h"
#include "PolicyMap/Types.h"

namespace PolicyMap {

class Action : public Kel::Entity {
 public:
   explicit Action(ActionType type) : actionType_(type) {}
   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   ActionType actionType() const noexcept { return actionType_; }

 private:
   ActionType actionType_;
};

class SetDscpAction : public Action {
 public:
   explicit SetDscpAction(std::uint8_t dscp) : Action(ActionType::setDscp), dscp_(dscp) {}
   Kel::TypeInfo const& fwkType() const override;
   std::uint8_t dscp() const noexcept { return dscp_; }

 private:
   std::uint8_t dscp_;
};

class PoliceAction : public Action {
 public:
   PoliceAction(std::uint64_t rate, RateUnit unit)
       : Action(ActionType::police), rate_(rate), rateUnit_(unit) {}
   Kel::TypeInfo const& fwkType() const override;
   std::uint64_t rate() const noexcept { return rate_; }
   RateUnit rateUnit() const noexcept { return rateUnit_; }

 private:
   std::uint64_t rate_;
   RateUnit rateUnit_;
};

// Counts into a named counter, or into the rule's own counter when the name is empty.
class CountAction : public Action {
 public:
   explicit CountAction(Kel::String counterName)
       : Action(ActionType::count), counterName_(std::move(counterName)) {}
   Kel::TypeInfo const& fwkType() const override;
   Kel::String const& counterName() const noexcept { return counterName_; }

 private:
   Kel::String counterName_;
};

// Continues with the named match, or with the next one when the name is empty.
class GotoAction : public Action {
 public:
   explicit GotoAction(Kel::String matchName)
       : Action(ActionType::gotoMatch), matchName_(std::move(matchName)) {}
   Kel::TypeInfo const& fwkType() const override;
   Kel::String const& matchName() const noexcept { return matchName_; }

 private:
   Kel::String matchName_;
};

class SetNexthopGroup : public Action {
 public:
   SetNexthopGroup() : Action(ActionType::setNexthopGroup) {}
   Kel::TypeInfo const& fwkType() const override;
   Kel::OrderedSet<Kel::String> const& nexthopGroup() const noexcept { return nexthopGroup_; }
   Kel::OrderedSet<Kel::String>& nexthopGroup() noexcept { return nexthopGroup_; }

 private:
   Kel::OrderedSet<Kel::String> nexthopGroup_;
};

// All actions of one rule, one per type.
class ClassAction : public Kel::Entity {
 public:
   explicit ClassAction(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   Kel::OrderedMap<ActionType, Kel::Ptr<Action const>> const& policyAction() const noexcept {
      return policyAction_;
   }
   Kel::OrderedMap<ActionType, Kel::Ptr<Action const>>& policyAction() noexcept {
      return policyAction_;
   }

 private:
   Kel::String name_;
   Kel::OrderedMap<ActionType, Kel::Ptr<Action const>> policyAction_;
};

}  // namespace PolicyMap
