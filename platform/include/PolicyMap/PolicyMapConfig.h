// Configuration of one policy map: its current sub-configuration holds the rules (classes) by
// sequence number, each rule's match per match option, its actions, and the named counters the
// policy declares.
#pragma once

#include <cstdint>

#include "Classification/StructuredFilter.h"
#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "PolicyMap/Actions.h"
#include "PolicyMap/Types.h"

namespace PolicyMap {

class ClassMapMatch : public Kel::Entity {
 public:
   explicit ClassMapMatch(ClassMapMatchOption option) : option_(option) {}
   Kel::TypeInfo const& fwkType() const override;

   ClassMapMatchOption option() const noexcept { return option_; }
   // Null for a match without criteria.
   Kel::Ptr<Classification::StructuredFilter const> const& structuredFilter() const noexcept {
      return structuredFilter_;
   }
   void structuredFilterIs(Kel::Ptr<Classification::StructuredFilter const> filter) {
      structuredFilter_ = std::move(filter);
   }

 private:
   ClassMapMatchOption option_;
   Kel::Ptr<Classification::StructuredFilter const> structuredFilter_;
};

// One rule's matches, per match option.
class ClassMapConfig : public Kel::Entity {
 public:
   explicit ClassMapConfig(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   Kel::OrderedMap<ClassMapMatchOption, Kel::Ptr<ClassMapMatch const>> const& match()
       const noexcept {
      return match_;
   }
   Kel::OrderedMap<ClassMapMatchOption, Kel::Ptr<ClassMapMatch const>>& match() noexcept {
      return match_;
   }

 private:
   Kel::String name_;
   Kel::OrderedMap<ClassMapMatchOption, Kel::Ptr<ClassMapMatch const>> match_;
};

class PolicyMapSubConfig : public Kel::Entity {
 public:
   explicit PolicyMapSubConfig(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   // Rule names by sequence number.
   Kel::OrderedMap<std::uint32_t, Kel::String> const& rule() const noexcept { return rule_; }
   Kel::OrderedMap<std::uint32_t, Kel::String>& rule() noexcept { return rule_; }
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassMapConfig const>> const& classMap() const noexcept {
      return classMap_;
   }
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassMapConfig const>>& classMap() noexcept {
      return classMap_;
   }
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassAction const>> const& classAction() const noexcept {
      return classAction_;
   }
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassAction const>>& classAction() noexcept {
      return classAction_;
   }
   // The named counters the policy declares.
   Kel::OrderedSet<Kel::String> const& namedCounter() const noexcept { return namedCounter_; }
   Kel::OrderedSet<Kel::String>& namedCounter() noexcept { return namedCounter_; }

 private:
   Kel::String name_;
   Kel::OrderedMap<std::uint32_t, Kel::String> rule_;
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassMapConfig const>> classMap_;
   Kel::OrderedMap<Kel::String, Kel::Ptr<ClassAction const>> classAction_;
   Kel::OrderedSet<Kel::String> namedCounter_;
};

class PolicyMapConfig : public Kel::Entity {
 public:
   explicit PolicyMapConfig(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }
   // Null while the policy is being defined.
   Kel::Ptr<PolicyMapSubConfig const> currCfg() const noexcept { return currCfg_; }
   void currCfgIs(Kel::Ptr<PolicyMapSubConfig const> config) { currCfg_ = std::move(config); }

 private:
   Kel::String name_;
   Kel::Ptr<PolicyMapSubConfig const> currCfg_;
};

}  // namespace PolicyMap
