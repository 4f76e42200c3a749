// Hash map of the object model: lookup by key, no promised iteration order, and the same change
// count as the ordered collections.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <utility>

namespace Kel {

template <typename K, typename V, typename Hash = std::hash<K>>
class HashMap {
   using Container = std::unordered_map<K, V, Hash>;

 public:
   using key_type = K;
   using mapped_type = V;
   using iterator = typename Container::iterator;
   using const_iterator = typename Container::const_iterator;

   std::size_t size() const noexcept { return items_.size(); }
   bool empty() const noexcept { return items_.empty(); }
   std::uint64_t changeCount() const noexcept { return changeCount_; }

   iterator begin() noexcept { return items_.begin(); }
   iterator end() noexcept { return items_.end(); }
   const_iterator begin() const noexcept { return items_.begin(); }
   const_iterator end() const noexcept { return items_.end(); }

   bool contains(K const& key) const { return items_.contains(key); }
   V const* lookup(K const& key) const {
      auto position = items_.find(key);
      return position == items_.end() ? nullptr : &position->second;
   }
   V* lookup(K const& key) {
      auto position = items_.find(key);
      return position == items_.end() ? nullptr : &position->second;
   }

   V& insertOrAssign(K const& key, V value) {
      auto [position, inserted] = items_.insert_or_assign(key, std::move(value));
      changeCount_ += inserted ? 1 : 0;
      return position->second;
   }
   bool erase(K const& key) {
      if (items_.erase(key) == 0) {
         return false;
      }
      ++changeCount_;
      return true;
   }
   void clear() noexcept {
      if (!items_.empty()) {
         items_.clear();
         ++changeCount_;
      }
   }

 private:
   Container items_;
   std::uint64_t changeCount_ = 0;
};

}  // namespace Kel
