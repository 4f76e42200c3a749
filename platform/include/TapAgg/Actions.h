// Actions of the tap-aggregation module that a traffic policy can carry.
#pragma once

#include "Kel/OrderedMap.h"
#include "Kel/String.h"
#include "PolicyMap/Actions.h"

namespace TapAgg {

// Redirects to aggregation groups and tool interfaces.
class TapAggActionSetAggGroup : public PolicyMap::Action {
 public:
   TapAggActionSetAggGroup() : Action(PolicyMap::ActionType::setAggGroup) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::OrderedSet<Kel::String> const& aggGroup() const noexcept { return aggGroup_; }
   Kel::OrderedSet<Kel::String>& aggGroup() noexcept { return aggGroup_; }
   Kel::OrderedSet<Kel::String> const& aggIntf() const noexcept { return aggIntf_; }
   Kel::OrderedSet<Kel::String>& aggIntf() noexcept { return aggIntf_; }

 private:
   Kel::OrderedSet<Kel::String> aggGroup_;
   Kel::OrderedSet<Kel::String> aggIntf_;
};

// Removes header bytes (the outer dot1q tag); the text says which.
class TapAggActionStripHeaderBytes : public PolicyMap::Action {
 public:
   explicit TapAggActionStripHeaderBytes(Kel::String stripHeader)
       : Action(PolicyMap::ActionType::stripHeaderBytes), stripHeader_(std::move(stripHeader)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& stripHeader() const noexcept { return stripHeader_; }

 private:
   Kel::String stripHeader_;
};

}  // namespace TapAgg
