// Where each name of a list stands, found by hashing the name, and the walk that joins a
// name-keyed map of the model against such a list. Rules come in sequence order and the model
// keys their entities by name, which rarely sorts the same way ("rule-10" before "rule-2"):
// walking a map in its own order and hashing each name to its rule costs one probe per entry,
// where looking each rule up costs a binary search with a cache miss at most of its steps.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "Kel/NameHash.h"
#include "Kel/String.h"

namespace TrafficPolicyCli {

// The names are read through `nameAt(position)`, so that the table costs its slots only. A name
// that stands twice is answered with its first place and listed apart. Names are compared as the
// model's strings: copies of a name share its text (a short one is a single word), so a probe that
// finds its name compares one word.
template <typename NameAt>
class PositionsByName {
 public:
   static constexpr std::uint32_t kNone = ~std::uint32_t{0};

   // The table's slots live in `slots`, whose storage a caller may keep for the next table.
   PositionsByName(std::vector<std::uint32_t>& slots, std::uint32_t count, NameAt nameAt)
       : nameAt_(std::move(nameAt)), slots_(slots) {
      slots_.assign(std::bit_ceil(std::size_t{count} + count / 2 + 1), kNone);
      mask_ = slots_.size() - 1;
      for (std::uint32_t position = 0; position < count; ++position) {
         auto const& name = nameAt_(position);
         auto& slot = slots_[slotIndex(name, hashOf(name))];
         if (slot == kNone) {
            slot = position;
         } else {
            repeated_.emplace_back(position, slot);
         }
      }
   }

   static std::size_t hashOf(Kel::String const& name) noexcept {
      return Kel::nameHash(name.view());
   }
   // Brings the slot where a probe for the hash starts into the cache.
   void prefetch(std::size_t hash) const noexcept { __builtin_prefetch(&slots_[hash & mask_]); }
   // The first place of the name (of that hash), or kNone.
   std::uint32_t find(Kel::String const& name, std::size_t hash) const {
      return slots_[slotIndex(name, hash)];
   }
   // Pairs of a later place of a name and its first place.
   std::vector<std::pair<std::uint32_t, std::uint32_t>> const& repeated() const noexcept {
      return repeated_;
   }

 private:
   // The slot that holds the name's first place, or the empty slot where it belongs. The table
   // is never more than two thirds full, so a probe ends.
   std::size_t slotIndex(Kel::String const& name, std::size_t hash) const {
      auto index = hash & mask_;
      while (slots_[index] != kNone && nameAt_(slots_[index]) != name) {
         index = (index + 1) & mask_;
      }
      return index;
   }

   NameAt nameAt_;
   std::vector<std::uint32_t>& slots_;
   std::size_t mask_ = 0;
   std::vector<std::pair<std::uint32_t, std::uint32_t>> repeated_;
};

// A position in a name-keyed map that only moves forward: asked for names in ascending order, each
// at most once, it reaches each with the entries it steps over since the last, instead of a search
// from the top. The maps it walks are keyed by the same rule names, so the entry it stands at after
// a name is found is most often the next one asked for: a test of equality (one word for a short
// name) settles that before any ordering.
template <typename Map>
class ForwardCursor {
 public:
   explicit ForwardCursor(Map const& map) : position_(map.begin()), end_(map.end()) {}

   typename Map::mapped_type const* seek(Kel::String const& name) {
      for (; position_ != end_; ++position_) {
         if (position_->first == name) {
            return &(position_++)->second;
         }
         if (position_->first > name) {
            return nullptr;
         }
      }
      return nullptr;
   }

 private:
   typename Map::const_iterator position_;
   typename Map::const_iterator end_;
};

// Calls `placed(position, entry)` for each entry of `map` (keyed by Kel::String, walked in its
// own order) whose name stands in `positions`. At scale every probe is a cache miss, so each
// name is hashed a few entries ahead of its probe and its slot fetched then: the misses overlap
// instead of queueing.
template <typename Positions, typename Map, typename Placed>
void forEachPlaced(Positions const& positions, Map const& map, Placed&& placed) {
   constexpr std::size_t kAhead = 8;
   std::array<std::size_t, kAhead> hashes{};
   auto ahead = map.begin();
   auto const end = map.end();
   auto const hashAhead = [&](std::size_t& hash) {
      hash = Positions::hashOf(ahead->first);
      positions.prefetch(hash);
      ++ahead;
   };
   for (std::size_t index = 0; index < kAhead && ahead != end; ++index) {
      hashAhead(hashes[index]);
   }
   std::size_t index = 0;
   for (auto const& entry : map) {
      auto& hash = hashes[index++ % kAhead];
      auto const position = positions.find(entry.first, hash);
      if (ahead != end) {
         hashAhead(hash);
      }
      if (position != Positions::kNone) {
         placed(position, entry);
      }
   }
}

}  // namespace TrafficPolicyCli
