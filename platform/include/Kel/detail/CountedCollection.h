// What every object-model collection shares: a container plus a change count that moves on every
// insert of a new key and every delete. The change count is what lets a walk over live state
// notice that the collection changed under it (see RobustWalk.h). The container keeps the count
// (the ordered ones keep it with their entries, so that an empty collection costs one word);
// WithChangeCount gives one to a standard container.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

namespace Kel::detail {

template <typename Container>
class CountedCollection {
 public:
   using key_type = typename Container::key_type;
   using iterator = typename Container::iterator;
   using const_iterator = typename Container::const_iterator;

   std::size_t size() const noexcept { return items_.size(); }
   bool empty() const noexcept { return items_.empty(); }
   // True when the collection holds anything, so that "!filter->sources()" reads as "no sources".
   explicit operator bool() const noexcept { return !items_.empty(); }
   std::uint64_t changeCount() const noexcept { return items_.changeCount(); }

   iterator begin() noexcept { return items_.begin(); }
   iterator end() noexcept { return items_.end(); }
   const_iterator begin() const noexcept { return items_.begin(); }
   const_iterator end() const noexcept { return items_.end(); }

   // The same entries in the same order (values of the map too); the change counts may differ.
   friend bool operator==(CountedCollection const& left, CountedCollection const& right) {
      return std::ranges::equal(left, right);
   }

   bool contains(key_type const& key) const { return items_.contains(key); }
   const_iterator find(key_type const& key) const { return items_.find(key); }
   iterator find(key_type const& key) { return items_.find(key); }

   bool erase(key_type const& key) {
      if (items_.erase(key) == 0) {
         return false;
      }
      items_.countChange();
      return true;
   }
   iterator erase(const_iterator position) {
      auto next = items_.erase(position);
      items_.countChange();
      return next;
   }
   void clear() noexcept {
      if (!items_.empty()) {
         items_.clear();
         items_.countChange();
      }
   }

 protected:
   void noteInserted(bool inserted) noexcept {
      if (inserted) {
         items_.countChange();
      }
   }

   Container items_;
};

template <typename Container>
class WithChangeCount : public Container {
 public:
   std::uint64_t changeCount() const noexcept { return changeCount_; }
   void countChange() noexcept { ++changeCount_; }

 private:
   std::uint64_t changeCount_ = 0;
};

// Collections with a value per key.
template <typename Container>
class CountedMap : public CountedCollection<Container> {
 public:
   using mapped_type = typename Container::mapped_type;
   using key_type = typename Container::key_type;

   // Creates the entry or replaces its value; returns the stored value.
   mapped_type& insertOrAssign(key_type const& key, mapped_type value) {
      auto [position, inserted] = this->items_.insert_or_assign(key, std::move(value));
      this->noteInserted(inserted);
      return position->second;
   }
   // Returns the entry's value, creating it from the arguments when the key is new.
   template <typename... Args>
   mapped_type& getOrCreate(key_type const& key, Args&&... args) {
      auto [position, inserted] = this->items_.try_emplace(key, std::forward<Args>(args)...);
      this->noteInserted(inserted);
      return position->second;
   }
   mapped_type const* lookup(key_type const& key) const {
      auto position = this->items_.find(key);
      return position == this->items_.end() ? nullptr : &position->second;
   }
   mapped_type* lookup(key_type const& key) {
      auto position = this->items_.find(key);
      return position == this->items_.end() ? nullptr : &position->second;
   }
};

// Collections of keys alone.
template <typename Container>
class CountedSet : public CountedCollection<Container> {
 public:
   using key_type = typename Container::key_type;

   // Returns true when the key was not there before.
   bool insert(key_type key) {
      bool const inserted = this->items_.insert(std::move(key)).second;
      this->noteInserted(inserted);
      return inserted;
   }
};

// The lookups only an ordered container can answer.
template <typename Base>
class Ordered : public Base {
 public:
   using typename Base::const_iterator;
   using typename Base::key_type;

   const_iterator firstGreaterThan(key_type const& key) const {
      return this->items_.upper_bound(key);
   }
   const_iterator firstNotLessThan(key_type const& key) const {
      return this->items_.lower_bound(key);
   }
   // The entry whose key equals `probe`, which orders against the keys without being one (the
   // text of a name, found without making a name of it).
   template <typename Probe>
   const_iterator findLike(Probe const& probe) const {
      return this->items_.findLike(probe);
   }
};

}  // namespace Kel::detail
