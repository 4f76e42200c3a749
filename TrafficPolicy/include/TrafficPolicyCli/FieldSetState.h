// The sizes of every defined field set, recorded once per command so that rules can print counts
// without walking the configuration again. A name without an entry is an undefined field set.
#pragma once

#include <cstdint>
#include <type_traits>

#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"
#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "TrafficPolicyCli/RecentNames.h"

namespace TrafficPolicyCli {

class PrefixFieldSetState : public Kel::Entity {
 public:
   explicit PrefixFieldSetState(Kel::String fieldSetName)
       : fieldSetName_(std::move(fieldSetName)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& fieldSetName() const noexcept { return fieldSetName_; }
   std::uint32_t totalAcceptPrefixes() const noexcept { return totalAcceptPrefixes_; }
   void totalAcceptPrefixesIs(std::uint32_t count) noexcept { totalAcceptPrefixes_ = count; }
   std::uint32_t totalExceptPrefixes() const noexcept { return totalExceptPrefixes_; }
   void totalExceptPrefixesIs(std::uint32_t count) noexcept { totalExceptPrefixes_ = count; }

 private:
   Kel::String fieldSetName_;
   std::uint32_t totalAcceptPrefixes_ = 0;
   std::uint32_t totalExceptPrefixes_ = 0;
};

// L4-port and VLAN field sets record one count each.
class CountedFieldSetState : public Kel::Entity {
 public:
   explicit CountedFieldSetState(Kel::String fieldSetName)
       : fieldSetName_(std::move(fieldSetName)) {}

   Kel::String const& fieldSetName() const noexcept { return fieldSetName_; }
   std::uint32_t totalEntries() const noexcept { return totalEntries_; }
   void totalEntriesIs(std::uint32_t count) noexcept { totalEntries_ = count; }

 private:
   Kel::String fieldSetName_;
   std::uint32_t totalEntries_ = 0;
};

class L4PortFieldSetState : public CountedFieldSetState {
 public:
   using CountedFieldSetState::CountedFieldSetState;
   Kel::TypeInfo const& fwkType() const override;
};

class VlanFieldSetState : public CountedFieldSetState {
 public:
   using CountedFieldSetState::CountedFieldSetState;
   Kel::TypeInfo const& fwkType() const override;
};

class FieldSetState : public Kel::Entity {
 public:
   template <typename Entry>
   using EntryMap = Kel::OrderedMap<Kel::String, Kel::Ptr<Entry>>;

   explicit FieldSetState(Kel::String name) : name_(std::move(name)) {}
   Kel::TypeInfo const& fwkType() const override;

   Kel::String const& name() const noexcept { return name_; }

   EntryMap<PrefixFieldSetState> const& ipPrefixFieldSet() const noexcept { return ipPrefix_; }
   Kel::Ptr<PrefixFieldSetState> ipPrefixFieldSetIs(Kel::String const& name) {
      return entryIs(ipPrefix_, name);
   }
   void ipPrefixFieldSetDel(Kel::String const& name) {
      ipPrefix_.erase(name);
      forgetFound();
   }
   void ipPrefixFieldSetDelAll() {
      ipPrefix_.clear();
      forgetFound();
   }

   EntryMap<PrefixFieldSetState> const& ipv6PrefixFieldSet() const noexcept { return ipv6Prefix_; }
   Kel::Ptr<PrefixFieldSetState> ipv6PrefixFieldSetIs(Kel::String const& name) {
      return entryIs(ipv6Prefix_, name);
   }
   void ipv6PrefixFieldSetDel(Kel::String const& name) {
      ipv6Prefix_.erase(name);
      forgetFound();
   }
   void ipv6PrefixFieldSetDelAll() {
      ipv6Prefix_.clear();
      forgetFound();
   }

   EntryMap<L4PortFieldSetState> const& l4PortFieldSet() const noexcept { return l4Port_; }
   Kel::Ptr<L4PortFieldSetState> l4PortFieldSetIs(Kel::String const& name) {
      return entryIs(l4Port_, name);
   }
   void l4PortFieldSetDel(Kel::String const& name) {
      l4Port_.erase(name);
      forgetFound();
   }
   void l4PortFieldSetDelAll() {
      l4Port_.clear();
      forgetFound();
   }

   EntryMap<VlanFieldSetState> const& vlanFieldSet() const noexcept { return vlan_; }
   Kel::Ptr<VlanFieldSetState> vlanFieldSetIs(Kel::String const& name) {
      return entryIs(vlan_, name);
   }
   void vlanFieldSetDel(Kel::String const& name) {
      vlan_.erase(name);
      forgetFound();
   }
   void vlanFieldSetDelAll() {
      vlan_.clear();
      forgetFound();
   }

   // The entry of the named set among `entries`, one of this record's maps; null when the set is
   // not defined. Rules name the same few sets again and again, so the entries found are kept
   // (see RecentNames) until an entry is deleted.
   template <typename Entry>
   Entry const* definedEntry(EntryMap<Entry> const& entries, Kel::String const& name) const {
      auto const search = [&entries](Kel::String const& key) -> Entry const* {
         auto const* entry = entries.lookup(key);
         return entry ? entry->get() : nullptr;
      };
      auto* found = foundIn(entries);
      return found ? found->find(name, search) : search(name);
   }

 private:
   template <typename Entry>
   using Found = RecentNames<Entry const*>;

   template <typename Entry>
   Found<Entry>* foundIn(EntryMap<Entry> const& entries) const noexcept {
      if constexpr (std::is_same_v<Entry, PrefixFieldSetState>) {
         return &entries == &ipPrefix_     ? &ipPrefixFound_
                : &entries == &ipv6Prefix_ ? &ipv6PrefixFound_
                                           : nullptr;
      } else if constexpr (std::is_same_v<Entry, L4PortFieldSetState>) {
         return &entries == &l4Port_ ? &l4PortFound_ : nullptr;
      } else {
         return &entries == &vlan_ ? &vlanFound_ : nullptr;
      }
   }
   void forgetFound() noexcept {
      ipPrefixFound_.clear();
      ipv6PrefixFound_.clear();
      l4PortFound_.clear();
      vlanFound_.clear();
   }

   // Creates the entry with the given name, or returns the one there.
   template <typename Entry>
   static Kel::Ptr<Entry> entryIs(EntryMap<Entry>& entries, Kel::String const& name) {
      auto& entry = entries.getOrCreate(name);
      if (!entry) {
         entry = Kel::make<Entry>(name);
      }
      return entry;
   }

   Kel::String name_;
   EntryMap<PrefixFieldSetState> ipPrefix_;
   EntryMap<PrefixFieldSetState> ipv6Prefix_;
   EntryMap<L4PortFieldSetState> l4Port_;
   EntryMap<VlanFieldSetState> vlan_;
   // Rendering asks through a const record; what it found is not part of the record.
   mutable Found<PrefixFieldSetState> ipPrefixFound_;
   mutable Found<PrefixFieldSetState> ipv6PrefixFound_;
   mutable Found<L4PortFieldSetState> l4PortFound_;
   mutable Found<VlanFieldSetState> vlanFound_;
};

Kel::Ptr<FieldSetState> FieldSetStateIs(Kel::String const& name);
Kel::Ptr<FieldSetState> fieldSetStateFactory(Kel::String const& name);

}  // namespace TrafficPolicyCli
