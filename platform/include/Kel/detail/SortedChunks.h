// Storage of the ordered collections: entries sorted by key in contiguous chunks of at most
// kChunkCapacity entries. A lookup is a binary search over memory that sits together, and a walk
// reads entries one after the other, where a tree would chase a pointer to a separate node for
// every step. Keys arriving in ascending order (a loader reading a dump, caching walking a sorted
// source) are appended after one comparison; a key out of order moves at most one chunk's entries,
// and a full chunk is split in two, so building a collection in any order never turns quadratic.
//
// Unlike a tree, an insert or erase may move entries: references and iterators stay valid only
// while the collection's change count stays the same (see RobustWalk.h).
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace Kel::detail {

template <typename Value, typename KeyOf>
class SortedChunks {
   using Chunk = std::vector<Value>;
   using Chunks = std::vector<Chunk>;
   static constexpr std::size_t kChunkCapacity = 128;

   // A place in the collection; the end is {number of chunks, 0}, every other place has
   // position < the size of its chunk.
   struct Place {
      std::size_t chunk = 0;
      std::size_t position = 0;
   };

 public:
   using key_type = std::remove_cvref_t<decltype(KeyOf{}(std::declval<Value const&>()))>;
   using value_type = Value;
   using size_type = std::size_t;

   template <bool isConst>
   class Iterator {
      using ChunksRef = std::conditional_t<isConst, Chunks const*, Chunks*>;

    public:
      using iterator_category = std::bidirectional_iterator_tag;
      using value_type = Value;
      using difference_type = std::ptrdiff_t;
      using reference = std::conditional_t<isConst, Value const&, Value&>;
      using pointer = std::conditional_t<isConst, Value const*, Value*>;

      Iterator() = default;
      template <bool otherConst>
      requires(isConst && !otherConst) Iterator(Iterator<otherConst> const& other)
          : chunks_(other.chunks_), place_(other.place_) {}

      reference operator*() const { return (*chunks_)[place_.chunk][place_.position]; }
      pointer operator->() const { return &**this; }
      Iterator& operator++() {
         if (++place_.position == (*chunks_)[place_.chunk].size()) {
            ++place_.chunk;
            place_.position = 0;
         }
         return *this;
      }
      Iterator operator++(int) {
         auto before = *this;
         ++*this;
         return before;
      }
      Iterator& operator--() {
         if (place_.position == 0) {
            place_.position = (*chunks_)[--place_.chunk].size();
         }
         --place_.position;
         return *this;
      }
      Iterator operator--(int) {
         auto before = *this;
         --*this;
         return before;
      }
      friend bool operator==(Iterator const& left, Iterator const& right) {
         return left.place_.chunk == right.place_.chunk &&
                left.place_.position == right.place_.position;
      }

    private:
      friend class SortedChunks;
      friend class Iterator<true>;
      Iterator(ChunksRef chunks, Place place) : chunks_(chunks), place_(place) {}

      ChunksRef chunks_ = nullptr;
      Place place_;
   };
   using iterator = Iterator<false>;
   using const_iterator = Iterator<true>;

   std::size_t size() const noexcept { return size_; }
   bool empty() const noexcept { return size_ == 0; }

   iterator begin() noexcept { return {&chunks_, {}}; }
   iterator end() noexcept { return {&chunks_, endPlace()}; }
   const_iterator begin() const noexcept { return {&chunks_, {}}; }
   const_iterator end() const noexcept { return {&chunks_, endPlace()}; }

   const_iterator lower_bound(key_type const& key) const { return {&chunks_, lowerBound(key)}; }
   const_iterator upper_bound(key_type const& key) const { return {&chunks_, upperBound(key)}; }
   iterator find(key_type const& key) { return {&chunks_, findPlace(key)}; }
   const_iterator find(key_type const& key) const { return {&chunks_, findPlace(key)}; }
   bool contains(key_type const& key) const { return !atEnd(findPlace(key)); }

   std::size_t erase(key_type const& key) {
      auto const place = findPlace(key);
      if (atEnd(place)) {
         return 0;
      }
      eraseAt(place);
      return 1;
   }
   iterator erase(const_iterator position) { return {&chunks_, eraseAt(position.place_)}; }
   void clear() noexcept {
      chunks_.clear();
      size_ = 0;
   }

 protected:
   // The entry with the key, and whether make() had to create it.
   template <typename Make>
   std::pair<iterator, bool> findOrInsert(key_type const& key, Make&& make) {
      if (chunks_.empty() || less(keyOf(chunks_.back().back()), key)) {
         return {iterator(&chunks_, insertAt(endPlace(), make())), true};
      }
      auto const place = lowerBound(key);
      if (!atEnd(place) && !less(key, keyAt(place))) {
         return {iterator(&chunks_, place), false};
      }
      return {iterator(&chunks_, insertAt(place, make())), true};
   }

 private:
   static bool less(key_type const& left, key_type const& right) { return left < right; }
   static key_type const& keyOf(Value const& value) { return KeyOf{}(value); }
   key_type const& keyAt(Place place) const { return keyOf(chunks_[place.chunk][place.position]); }
   Place endPlace() const noexcept { return {chunks_.size(), 0}; }
   bool atEnd(Place place) const noexcept { return place.chunk == chunks_.size(); }

   // The first place whose key is not `before` the key: lower bound with "less than", upper bound
   // with "not greater than".
   template <typename Before>
   Place bound(key_type const& key, Before before) const {
      if (chunks_.empty()) {
         return endPlace();
      }
      // The place lies in the first chunk whose last key is not before the key, or else at the
      // end of the last chunk; a single chunk (most collections) needs no search for it.
      auto const chunk =
          std::partition_point(chunks_.begin(), chunks_.end() - 1,
                               [&](Chunk const& c) { return before(keyOf(c.back()), key); });
      auto const position =
          std::partition_point(chunk->begin(), chunk->end(),
                               [&](Value const& value) { return before(keyOf(value), key); });
      if (position == chunk->end()) {
         return endPlace();
      }
      return {static_cast<std::size_t>(chunk - chunks_.begin()),
              static_cast<std::size_t>(position - chunk->begin())};
   }
   Place lowerBound(key_type const& key) const {
      return bound(key, [](key_type const& entry, key_type const& k) { return less(entry, k); });
   }
   Place upperBound(key_type const& key) const {
      return bound(key, [](key_type const& entry, key_type const& k) { return !less(k, entry); });
   }
   Place findPlace(key_type const& key) const {
      auto const place = lowerBound(key);
      return atEnd(place) || less(key, keyAt(place)) ? endPlace() : place;
   }

   Place insertAt(Place place, Value value) {
      ++size_;
      if (atEnd(place)) {
         // Past the last key: append to the last chunk, or open a new one when it is full.
         if (chunks_.empty() || chunks_.back().size() == kChunkCapacity) {
            chunks_.emplace_back().push_back(std::move(value));
            return {chunks_.size() - 1, 0};
         }
         chunks_.back().push_back(std::move(value));
         return {chunks_.size() - 1, chunks_.back().size() - 1};
      }
      auto& chunk = chunks_[place.chunk];
      chunk.insert(chunk.begin() + static_cast<std::ptrdiff_t>(place.position), std::move(value));
      if (chunk.size() <= kChunkCapacity) {
         return place;
      }
      return split(place);
   }

   // Moves the upper half of an overfull chunk into a new chunk after it.
   Place split(Place place) {
      auto const half = chunks_[place.chunk].size() / 2;
      Chunk upper;
      upper.reserve(kChunkCapacity);
      auto& lower = chunks_[place.chunk];
      std::move(lower.begin() + static_cast<std::ptrdiff_t>(half), lower.end(),
                std::back_inserter(upper));
      lower.resize(half);
      chunks_.insert(chunks_.begin() + static_cast<std::ptrdiff_t>(place.chunk) + 1,
                     std::move(upper));
      return place.position < half ? place : Place{place.chunk + 1, place.position - half};
   }

   Place eraseAt(Place place) {
      --size_;
      auto& chunk = chunks_[place.chunk];
      chunk.erase(chunk.begin() + static_cast<std::ptrdiff_t>(place.position));
      if (chunk.empty()) {
         chunks_.erase(chunks_.begin() + static_cast<std::ptrdiff_t>(place.chunk));
         return {place.chunk, 0};
      }
      return place.position == chunk.size() ? Place{place.chunk + 1, 0} : place;
   }

   Chunks chunks_;
   std::size_t size_ = 0;
};

struct KeyOfEntry {
   template <typename Entry>
   auto const& operator()(Entry const& entry) const noexcept {
      return entry.first;
   }
};
struct KeyIsValue {
   template <typename Key>
   Key const& operator()(Key const& key) const noexcept {
      return key;
   }
};

// The map interface the counted collections use, over sorted chunks of (key, value) pairs.
template <typename K, typename V>
class SortedMap : public SortedChunks<std::pair<K, V>, KeyOfEntry> {
   using Base = SortedChunks<std::pair<K, V>, KeyOfEntry>;

 public:
   using mapped_type = V;

   template <typename Value>
   std::pair<typename Base::iterator, bool> insert_or_assign(K const& key, Value&& value) {
      auto result =
          this->findOrInsert(key, [&] { return std::pair<K, V>(key, std::forward<Value>(value)); });
      if (!result.second) {
         result.first->second = std::forward<Value>(value);
      }
      return result;
   }
   template <typename... Args>
   std::pair<typename Base::iterator, bool> try_emplace(K const& key, Args&&... args) {
      return this->findOrInsert(key, [&] {
         return std::pair<K, V>(std::piecewise_construct, std::forward_as_tuple(key),
                                std::forward_as_tuple(std::forward<Args>(args)...));
      });
   }
};

template <typename K>
class SortedSet : public SortedChunks<K, KeyIsValue> {
   using Base = SortedChunks<K, KeyIsValue>;

 public:
   std::pair<typename Base::iterator, bool> insert(K key) {
      return this->findOrInsert(key, [&] { return std::move(key); });
   }
};

}  // namespace Kel::detail
