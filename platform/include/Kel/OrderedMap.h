// Ordered collections of the object model: iteration in ascending key order, lookup of the first
// key greater than a given one, and a change count that moves on every insert and delete. The
// change count is what lets a walk over live state notice that the collection changed under it
// and find its place again (see RobustWalk.h) without copying the collection first.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <utility>

namespace Kel {

namespace detail {

// The behaviour shared by OrderedMap and OrderedSet over their std:: container.
template <typename Container>
class OrderedBase {
 public:
   using key_type = typename Container::key_type;
   using iterator = typename Container::iterator;
   using const_iterator = typename Container::const_iterator;

   std::size_t size() const noexcept { return items_.size(); }
   bool empty() const noexcept { return items_.empty(); }
   std::uint64_t changeCount() const noexcept { return changeCount_; }

   iterator begin() noexcept { return items_.begin(); }
   iterator end() noexcept { return items_.end(); }
   const_iterator begin() const noexcept { return items_.begin(); }
   const_iterator end() const noexcept { return items_.end(); }

   bool contains(key_type const& key) const { return items_.contains(key); }
   const_iterator find(key_type const& key) const { return items_.find(key); }
   iterator find(key_type const& key) { return items_.find(key); }
   const_iterator firstGreaterThan(key_type const& key) const { return items_.upper_bound(key); }
   const_iterator firstNotLessThan(key_type const& key) const { return items_.lower_bound(key); }

   bool erase(key_type const& key) {
      if (items_.erase(key) == 0) {
         return false;
      }
      ++changeCount_;
      return true;
   }
   iterator erase(const_iterator position) {
      ++changeCount_;
      return items_.erase(position);
   }
   void clear() noexcept {
      if (!items_.empty()) {
         items_.clear();
         ++changeCount_;
      }
   }

 protected:
   void noteInserted(bool inserted) noexcept { changeCount_ += inserted ? 1 : 0; }

   Container items_;
   std::uint64_t changeCount_ = 0;
};

}  // namespace detail

template <typename K, typename V>
class OrderedMap : public detail::OrderedBase<std::map<K, V>> {
 public:
   using mapped_type = V;

   // Creates the entry or replaces its value; returns the stored value.
   V& insertOrAssign(K const& key, V value) {
      auto [position, inserted] = this->items_.insert_or_assign(key, std::move(value));
      this->noteInserted(inserted);
      return position->second;
   }
   // Returns the entry's value, creating it from the arguments when the key is new.
   template <typename... Args>
   V& getOrCreate(K const& key, Args&&... args) {
      auto [position, inserted] = this->items_.try_emplace(key, std::forward<Args>(args)...);
      this->noteInserted(inserted);
      return position->second;
   }
   V const* lookup(K const& key) const {
      auto position = this->items_.find(key);
      return position == this->items_.end() ? nullptr : &position->second;
   }
   V* lookup(K const& key) {
      auto position = this->items_.find(key);
      return position == this->items_.end() ? nullptr : &position->second;
   }
};

template <typename K>
class OrderedSet : public detail::OrderedBase<std::set<K>> {
 public:
   // Returns true when the key was not there before.
   bool insert(K key) {
      bool inserted = this->items_.insert(std::move(key)).second;
      this->noteInserted(inserted);
      return inserted;
   }
};

}  // namespace Kel
