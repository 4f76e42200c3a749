// An array indexed by a 32-bit number whose slots may be empty; iteration visits the filled slots
// in index order and passes over the empty ones. Rules are kept this way, by rule index.
#pragma once

#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace Kel {

template <typename V>
class DenseArray {
   using Slots = std::vector<std::optional<V>>;

 public:
   struct Entry {
      std::uint32_t index;
      V const& value;
   };

   class const_iterator {
    public:
      using iterator_category = std::forward_iterator_tag;
      using value_type = Entry;
      using difference_type = std::ptrdiff_t;

      const_iterator() = default;
      Entry operator*() const { return {index(), **position_}; }
      const_iterator& operator++() {
         ++position_;
         skipEmpty();
         return *this;
      }
      const_iterator operator++(int) {
         auto before = *this;
         ++*this;
         return before;
      }
      bool operator==(const_iterator const& other) const { return position_ == other.position_; }

    private:
      friend class DenseArray;
      const_iterator(Slots const* slots, typename Slots::const_iterator position)
          : slots_(slots), position_(position) {
         skipEmpty();
      }
      std::uint32_t index() const {
         return static_cast<std::uint32_t>(position_ - slots_->begin());
      }
      void skipEmpty() {
         while (position_ != slots_->end() && !position_->has_value()) {
            ++position_;
         }
      }

      Slots const* slots_ = nullptr;
      typename Slots::const_iterator position_;
   };

   const_iterator begin() const { return {&slots_, slots_.begin()}; }
   const_iterator end() const { return {&slots_, slots_.end()}; }

   // Number of filled slots.
   std::size_t size() const noexcept { return filled_; }
   bool empty() const noexcept { return filled_ == 0; }

   V const* lookup(std::uint32_t index) const {
      return index < slots_.size() && slots_[index] ? &*slots_[index] : nullptr;
   }

   V& set(std::uint32_t index, V value) {
      if (index >= slots_.size()) {
         slots_.resize(std::size_t{index} + 1);
      }
      auto& slot = slots_[index];
      filled_ += slot ? 0 : 1;
      slot = std::move(value);
      return *slot;
   }
   bool erase(std::uint32_t index) {
      if (index >= slots_.size() || !slots_[index]) {
         return false;
      }
      slots_[index].reset();
      --filled_;
      return true;
   }
   void clear() noexcept {
      slots_.clear();
      filled_ = 0;
   }

 private:
   Slots slots_;
   std::size_t filled_ = 0;
};

}  // namespace Kel
