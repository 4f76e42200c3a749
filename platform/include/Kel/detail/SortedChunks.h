// Storage of the ordered collections: entries sorted by key in contiguous chunks of at most
// kChunkCapacity entries. A lookup is a binary search over memory that sits together, and a walk
// reads entries one after the other, where a tree would chase a pointer to a separate node for
// every step. Keys arriving in ascending order (a loader reading a dump, caching walking a sorted
// source) are appended after one comparison; a key out of order moves at most one chunk's entries,
// and a full chunk is split in two, so building a collection in any order never turns quadratic.
//
// Unlike a tree, an insert or erase may move entries: references and iterators stay valid only
// while the collection's change count stays the same (see RobustWalk.h).
//
// A collection is one word: the address of its first chunk, whose header also holds the change
// count, and in front of which sits the address of the later chunks once there are any. A rule's
// filter holds a dozen collections and uses two or three, so an empty collection allocates
// nothing, and a small one is a single allocation of a word and its entries.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace Kel::detail {

template <typename Value, typename KeyOf>
class SortedChunks {
   static_assert(std::is_nothrow_move_constructible_v<Value> &&
                 std::is_nothrow_move_assignable_v<Value>);
   static constexpr std::size_t kHeaderSize = sizeof(std::uint64_t);
   // About 128 entries, as many as fill an allocation of a power of two: the allocators' size
   // classes go in four steps from one power of two to the next, so a chunk a word larger than a
   // power of two would take a quarter more room than it uses.
   static constexpr std::size_t kChunkCapacity =
       (std::bit_floor(kHeaderSize + 128 * sizeof(Value)) - kHeaderSize) / sizeof(Value);

   struct MoreChunks;

   // Up to kChunkCapacity entries in one allocation, after a header. The first chunk of a
   // collection that has later ones also holds their address, in a slot in front of its header.
   class Chunk {
      // Eight bytes: most collections of a rule hold one entry, and the allocator's size classes
      // go in steps of sixteen, so a one-entry collection of a one-word value takes sixteen
      // bytes where a second word of header would make it thirty-two.
      struct Header {
         std::uint64_t size : 8 = 0;
         std::uint64_t capacity : 8 = 0;
         // Whether the allocation starts with the slot for the later chunks.
         std::uint64_t linked : 1 = 0;
         // Of the whole collection, kept in its first chunk only; 47 bits never wrap within a
         // process's life.
         std::uint64_t changeCount : 47 = 0;
      };
      static_assert(sizeof(Header) == kHeaderSize && sizeof(MoreChunks*) == sizeof(Header) &&
                    alignof(Value) <= alignof(Header));
      static_assert(kChunkCapacity < 256, "a chunk's size and capacity are kept in a byte each");

    public:
      Chunk() noexcept = default;
      // Linked like the original, the slot empty: the copy of a collection fills it.
      Chunk(Chunk const& other) {
         if (!other.empty()) {
            header_ = allocate(other.size(), other.header_->linked);
            std::uninitialized_copy(other.begin(), other.end(), begin());
            header_->size = other.header_->size;
         }
      }
      Chunk(Chunk&& other) noexcept : header_(std::exchange(other.header_, nullptr)) {}
      Chunk& operator=(Chunk&& other) noexcept {
         Chunk(std::move(other)).swap(*this);
         return *this;
      }
      ~Chunk() {
         if (header_) {
            std::destroy(begin(), end());
            deallocate(header_);
         }
      }
      void swap(Chunk& other) noexcept { std::swap(header_, other.header_); }

      std::size_t size() const noexcept { return header_ ? header_->size : 0; }
      std::size_t capacity() const noexcept { return header_ ? header_->capacity : 0; }
      bool empty() const noexcept { return size() == 0; }
      Value* begin() noexcept { return entries(); }
      Value* end() noexcept { return entries() + size(); }
      Value const* begin() const noexcept { return entries(); }
      Value const* end() const noexcept { return entries() + size(); }
      Value& operator[](std::size_t index) noexcept { return entries()[index]; }
      Value const& operator[](std::size_t index) const noexcept { return entries()[index]; }
      Value& back() noexcept { return entries()[size() - 1]; }
      Value const& back() const noexcept { return entries()[size() - 1]; }

      std::uint64_t changeCount() const noexcept { return header_ ? header_->changeCount : 0; }
      MoreChunks* more() const noexcept {
         return header_ && header_->linked ? *slot(header_) : nullptr;
      }
      // Only once the chunk holds (or held) an entry.
      Header& header() noexcept { return *header_; }
      // Only once the chunk holds (or held) an entry. A chunk first gets a slot when it is the
      // first of a collection that grows a second: its entries move once then.
      void setMore(MoreChunks* more) {
         if (!header_->linked) {
            if (!more) {
               return;
            }
            reallocate(capacity(), true);
         }
         *slot(header_) = more;
      }

      void reserve(std::size_t capacity) {
         if (capacity > this->capacity()) {
            reallocate(capacity);
         }
      }
      void shrinkToFit() {
         if (capacityFor(size(), linked()) < capacity()) {
            reallocate(size());
         }
      }
      // Puts the value before the entry at `position`; a full chunk first grows to `grown`
      // entries, moving its entries once, around the new one.
      void insert(std::size_t position, Value&& value, std::size_t grown) {
         if (size() == capacity()) {
            insertGrown(position, std::move(value), grown);
            return;
         }
         auto* at = begin() + position;
         new (end()) Value(std::move(back()));
         std::move_backward(at, end() - 1, end());
         *at = std::move(value);
         ++header_->size;
      }
      // Past the last entry; a full chunk doubles, up to a full chunk.
      void push_back(Value&& value) {
         if (size() == capacity()) {
            reallocate(std::max<std::size_t>(1, std::min(kChunkCapacity, 2 * size())));
         }
         new (end()) Value(std::move(value));
         ++header_->size;
      }
      // A new chunk, just large enough, with the entries from `from` on, which leave this one.
      Chunk splitOff(std::size_t from) {
         Chunk upper;
         upper.header_ = allocate(size() - from, false);
         std::uninitialized_move(begin() + from, end(), upper.entries());
         upper.header_->size = static_cast<std::uint8_t>(size() - from);
         truncate(from);
         return upper;
      }
      void erase(std::size_t position) {
         std::move(begin() + position + 1, end(), begin() + position);
         truncate(size() - 1);
      }
      void truncate(std::size_t count) noexcept {
         if (count < size()) {
            std::destroy(begin() + count, end());
            header_->size = static_cast<std::uint8_t>(count);
         }
      }

    private:
      Value* entries() const noexcept { return reinterpret_cast<Value*>(header_ + 1); }
      // The room in front of a linked chunk's header holds the slot.
      static constexpr std::size_t front(bool linked) noexcept {
         return linked ? sizeof(MoreChunks*) : 0;
      }
      static std::byte* roomOf(Header* header) noexcept {
         return reinterpret_cast<std::byte*>(header) - front(header->linked);
      }
      // Of a linked chunk only.
      static MoreChunks** slot(Header* header) noexcept {
         return reinterpret_cast<MoreChunks**>(roomOf(header));
      }
      bool linked() const noexcept { return header_ && header_->linked; }

      // The size class an allocation of `bytes` takes: multiples of sixteen up to 128 bytes,
      // then four to each doubling, as mimalloc's and jemalloc's go.
      static constexpr std::size_t sizeClass(std::size_t bytes) noexcept {
         auto const step = bytes <= 128 ? 16 : std::bit_floor(bytes - 1) / 4;
         return (bytes + step - 1) / step * step;
      }
      // For every count of entries, how many fit the size class of a chunk of that many: room
      // the allocator gives anyway. Looked up, as every growth of a chunk asks.
      struct Capacities {
         std::array<std::uint8_t, kChunkCapacity + 1> byCount[2];
      };
      static constexpr Capacities kCapacities = [] {
         Capacities capacities{};
         for (bool const linked : {false, true}) {
            auto const overhead = front(linked) + kHeaderSize;
            for (std::size_t count = 0; count <= kChunkCapacity; ++count) {
               auto const fitting =
                   (sizeClass(overhead + count * sizeof(Value)) - overhead) / sizeof(Value);
               capacities.byCount[linked][count] =
                   static_cast<std::uint8_t>(std::min(kChunkCapacity, fitting));
            }
         }
         return capacities;
      }();
      static std::size_t capacityFor(std::size_t count, bool linked) noexcept {
         return kCapacities.byCount[linked][count];
      }

      // Room for at least `count` entries.
      static Header* allocate(std::size_t count, bool linked) {
         auto const capacity = capacityFor(count, linked);
         auto* room = static_cast<std::byte*>(
             ::operator new(front(linked) + sizeof(Header) + capacity * sizeof(Value)));
         if (linked) {
            new (room) MoreChunks*(nullptr);
         }
         auto* allocated = new (room + front(linked)) Header{};
         allocated->capacity = static_cast<std::uint8_t>(capacity);
         allocated->linked = linked;
         return allocated;
      }
      static void deallocate(Header* header) noexcept { ::operator delete(roomOf(header)); }
      // Gives this chunk's entries' new room its part of the collection and frees the old room,
      // once the entries have been moved there.
      void adopt(Header* moved) noexcept {
         if (header_) {
            moved->changeCount = header_->changeCount;
            moved->size = header_->size;
            if (header_->linked && moved->linked) {
               // GCC's optimiser follows this into chunks it saw allocated without the slot, not
               // knowing that their flag keeps them out, and warns of a read in front of them.
               _Pragma("GCC diagnostic push");
               _Pragma("GCC diagnostic ignored \"-Warray-bounds\"");
               *slot(moved) = *slot(header_);
               _Pragma("GCC diagnostic pop");
            }
            std::destroy(begin(), end());
            deallocate(header_);
         }
         header_ = moved;
      }
      // A chunk that never held an entry has no room yet, and no entries to move out of it.
      void reallocate(std::size_t capacity) { reallocate(capacity, linked()); }
      void reallocate(std::size_t capacity, bool linked) {
         auto* moved = allocate(capacity, linked);
         if (header_) {
            std::uninitialized_move(begin(), end(), reinterpret_cast<Value*>(moved + 1));
         }
         adopt(moved);
      }
      void insertGrown(std::size_t position, Value&& value, std::size_t grown) {
         auto* moved = allocate(grown, linked());
         auto* into = reinterpret_cast<Value*>(moved + 1);
         if (header_) {
            std::uninitialized_move(begin(), begin() + position, into);
            std::uninitialized_move(begin() + position, end(), into + position + 1);
         }
         new (into + position) Value(std::move(value));
         adopt(moved);
         ++header_->size;
      }

      Header* header_ = nullptr;
   };

   // The chunks after the first, which only large collections have.
   struct MoreChunks {
      std::vector<Chunk> chunks;
      std::size_t size = 0;  // of the whole collection
   };

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

   SortedChunks() noexcept = default;
   SortedChunks(SortedChunks const& other) : first_(other.first_) {
      if (!first_.empty()) {
         first_.header().changeCount = other.changeCount();
      }
      if (auto const* more = other.more()) {
         first_.setMore(new MoreChunks(*more));
      }
   }
   SortedChunks& operator=(SortedChunks const& other) {
      if (this != &other) {
         *this = SortedChunks(other);
      }
      return *this;
   }
   SortedChunks(SortedChunks&& other) noexcept = default;
   SortedChunks& operator=(SortedChunks&& other) noexcept {
      SortedChunks(std::move(other)).first_.swap(first_);
      return *this;
   }
   ~SortedChunks() { delete more(); }

   // Moves on every insert of a new key and every delete; kept here so that it costs an empty
   // collection nothing.
   std::uint64_t changeCount() const noexcept { return first_.changeCount(); }
   void countChange() noexcept { ++first_.header().changeCount; }

   // Holds the entry it stands on and the end of that entry's chunk, so that a step within a
   // chunk is one increment and one comparison; the collection is consulted only to pass from
   // one chunk to the next. The end has no entry.
   template <bool isConst>
   class Iterator {
      using Owner = std::conditional_t<isConst, SortedChunks const*, SortedChunks*>;

    public:
      using iterator_category = std::forward_iterator_tag;
      using value_type = Value;
      using difference_type = std::ptrdiff_t;
      using reference = std::conditional_t<isConst, Value const&, Value&>;
      using pointer = std::conditional_t<isConst, Value const*, Value*>;

      Iterator() = default;
      template <bool otherConst>
      requires(isConst && !otherConst) Iterator(Iterator<otherConst> const& other)
          : owner_(other.owner_),
            chunk_(other.chunk_),
            at_(other.at_),
            chunkEnd_(other.chunkEnd_) {}

      reference operator*() const { return *at_; }
      pointer operator->() const { return at_; }
      Iterator& operator++() {
         if (++at_ == chunkEnd_) {
            enterChunk(chunk_ + 1);
         }
         return *this;
      }
      Iterator operator++(int) {
         auto before = *this;
         ++*this;
         return before;
      }
      friend bool operator==(Iterator const& left, Iterator const& right) {
         return left.at_ == right.at_;
      }

    private:
      friend class SortedChunks;
      friend class Iterator<true>;
      Iterator(Owner owner, Place place) : owner_(owner) {
         enterChunk(place.chunk);
         if (at_) {
            at_ += place.position;
         }
      }
      // The first entry (the end of an empty collection), and the end. Every walk over a
      // collection makes both, and most collections are one chunk: neither counts the chunks.
      static Iterator first(Owner owner) noexcept {
         Iterator first = end(owner);
         if (!owner->first_.empty()) {
            first.at_ = owner->first_.begin();
            first.chunkEnd_ = owner->first_.end();
         }
         return first;
      }
      static Iterator end(Owner owner) noexcept {
         Iterator end;
         end.owner_ = owner;
         return end;
      }

      void enterChunk(std::size_t index) {
         chunk_ = index;
         if (index < owner_->chunkCount()) {
            auto& entered = owner_->chunk(index);
            at_ = entered.begin();
            chunkEnd_ = entered.end();
         } else {
            at_ = chunkEnd_ = nullptr;
         }
      }
      Place place() const {
         if (!at_) {
            return owner_->endPlace();
         }
         return {chunk_, static_cast<std::size_t>(at_ - owner_->chunk(chunk_).begin())};
      }

      Owner owner_ = nullptr;
      std::size_t chunk_ = 0;
      pointer at_ = nullptr;
      pointer chunkEnd_ = nullptr;
   };
   using iterator = Iterator<false>;
   using const_iterator = Iterator<true>;

   std::size_t size() const noexcept { return more() ? more()->size : first_.size(); }
   bool empty() const noexcept { return first_.empty(); }

   iterator begin() noexcept { return iterator::first(this); }
   iterator end() noexcept { return iterator::end(this); }
   const_iterator begin() const noexcept { return const_iterator::first(this); }
   const_iterator end() const noexcept { return const_iterator::end(this); }

   const_iterator lower_bound(key_type const& key) const { return {this, lowerBound(key)}; }
   const_iterator upper_bound(key_type const& key) const { return {this, upperBound(key)}; }
   iterator find(key_type const& key) { return {this, findPlace(key)}; }
   const_iterator find(key_type const& key) const { return {this, findPlace(key)}; }
   bool contains(key_type const& key) const { return !atEnd(findPlace(key)); }
   // Finds by anything that orders against the keys, such as the text of a name, without making
   // a key of it.
   template <typename Probe>
   const_iterator findLike(Probe const& probe) const {
      return {this, findPlace(probe)};
   }

   std::size_t erase(key_type const& key) {
      auto const place = findPlace(key);
      if (atEnd(place)) {
         return 0;
      }
      eraseAt(place);
      return 1;
   }
   iterator erase(const_iterator position) { return {this, eraseAt(position.place())}; }
   void clear() noexcept {
      if (auto* chunks = more()) {
         delete chunks;
         first_.setMore(nullptr);
      }
      first_.truncate(0);
   }

 protected:
   // The entry with the key, and whether make() had to create it.
   template <typename Make>
   std::pair<iterator, bool> findOrInsert(key_type const& key, Make&& make) {
      if (empty()) {
         first_.push_back(make());
         // Not iterator::first: GCC's optimiser then warns of a write past a chunk it sized
         // itself (-Warray-bounds), though the chunk was just made to hold the entry.
         return {iterator(this, Place{}), true};
      }
      // Loaders mostly hand keys over in ascending order: one comparison with the last key.
      auto const last = chunkCount() - 1;
      auto& lastChunk = chunk(last);
      auto const order = compare(keyOf(lastChunk.back()), key);
      if (order < 0) {
         return {iterator(this, append(make())), true};
      }
      if (order == 0) {
         return {iterator(this, {last, lastChunk.size() - 1}), false};
      }
      auto const [place, found] = search(key);
      if (found) {
         return {iterator(this, place), false};
      }
      return {iterator(this, insertAt(place, make())), true};
   }

 private:
   template <typename Left, typename Right>
   static bool less(Left const& left, Right const& right) {
      return left < right;
   }
   template <typename Left, typename Right>
   static auto compare(Left const& left, Right const& right) {
      return left <=> right;
   }
   static key_type const& keyOf(Value const& value) { return KeyOf{}(value); }

   // Chunk 0 lives in the collection itself, so that a small collection is one allocation.
   MoreChunks* more() const noexcept { return first_.more(); }
   std::size_t chunkCount() const noexcept {
      return empty() ? 0 : 1 + (more() ? more()->chunks.size() : 0);
   }
   Chunk const& chunk(std::size_t index) const noexcept {
      return index == 0 ? first_ : more()->chunks[index - 1];
   }
   Chunk& chunk(std::size_t index) noexcept {
      return index == 0 ? first_ : more()->chunks[index - 1];
   }

   Place endPlace() const noexcept { return {chunkCount(), 0}; }
   bool atEnd(Place place) const noexcept { return place.chunk == chunkCount(); }

   // The first place whose key is not `before` the key: lower bound with "less than", upper bound
   // with "not greater than".
   template <typename Probe, typename Before>
   Place bound(Probe const& key, Before before) const {
      auto const count = chunkCount();
      if (count == 0) {
         return endPlace();
      }
      // The place lies in the first chunk whose last key is not before the key, or else at the
      // end of the last chunk; a single chunk (most collections) needs no search for it.
      std::size_t low = 0;
      for (std::size_t high = count - 1; low < high;) {
         auto const middle = low + (high - low) / 2;
         if (before(keyOf(chunk(middle).back()), key)) {
            low = middle + 1;
         } else {
            high = middle;
         }
      }
      auto const& found = chunk(low);
      auto const position =
          std::partition_point(found.begin(), found.end(),
                               [&](Value const& value) { return before(keyOf(value), key); });
      if (position == found.end()) {
         return endPlace();
      }
      return {low, static_cast<std::size_t>(position - found.begin())};
   }
   Place lowerBound(key_type const& key) const {
      return bound(key, [](key_type const& entry, key_type const& k) { return less(entry, k); });
   }
   Place upperBound(key_type const& key) const {
      return bound(key, [](key_type const& entry, key_type const& k) { return !less(k, entry); });
   }

   // The lower bound of the key, and whether it holds the key. One three-way comparison a step,
   // which stops as soon as it meets the key: a name compared once instead of twice.
   template <typename Probe>
   std::pair<Place, bool> search(Probe const& key) const {
      auto const count = chunkCount();
      if (count == 0) {
         return {endPlace(), false};
      }
      std::size_t chunkIndex = 0;
      for (std::size_t high = count - 1; chunkIndex < high;) {
         auto const middle = chunkIndex + (high - chunkIndex) / 2;
         auto const& candidate = chunk(middle);
         auto const order = compare(keyOf(candidate.back()), key);
         if (order < 0) {
            chunkIndex = middle + 1;
         } else if (order == 0) {
            return {{middle, candidate.size() - 1}, true};
         } else {
            high = middle;
         }
      }
      auto const& found = chunk(chunkIndex);
      std::size_t low = 0;
      for (std::size_t high = found.size(); low < high;) {
         auto const middle = low + (high - low) / 2;
         auto const order = compare(keyOf(found[middle]), key);
         if (order < 0) {
            low = middle + 1;
         } else if (order == 0) {
            return {{chunkIndex, middle}, true};
         } else {
            high = middle;
         }
      }
      return {low == found.size() ? endPlace() : Place{chunkIndex, low}, false};
   }
   template <typename Probe>
   Place findPlace(Probe const& key) const {
      auto const [place, found] = search(key);
      return found ? place : endPlace();
   }

   void sizeChangedBy(std::ptrdiff_t change) noexcept {
      if (auto* chunks = more()) {
         chunks->size =
             static_cast<std::size_t>(static_cast<std::ptrdiff_t>(chunks->size) + change);
      }
   }

   // Past the last key of a collection that holds some: into the last chunk, or a new one when
   // it is full.
   Place append(Value&& value) {
      sizeChangedBy(1);
      auto const last = chunkCount() - 1;
      auto& lastChunk = chunk(last);
      if (lastChunk.size() < kChunkCapacity) {
         lastChunk.push_back(std::move(value));
         return {last, lastChunk.size() - 1};
      }
      Chunk opened;
      opened.push_back(std::move(value));
      addChunk(last + 1, std::move(opened));
      return {last + 1, 0};
   }

   // Before the entry at `place`.
   Place insertAt(Place place, Value&& value) {
      if (chunk(place.chunk).size() == kChunkCapacity) {
         place = split(place);
      }
      sizeChangedBy(1);
      auto& target = chunk(place.chunk);
      // Chunks filled out of order are often left half full by a split: grow them by half rather
      // than doubling, so that their spare room stays a small part of them.
      target.insert(place.position, std::move(value),
                    std::min(kChunkCapacity, target.size() + target.size() / 2 + 1));
      return place;
   }

   // Puts a chunk at `index` (from 1 up), moving the later ones along.
   void addChunk(std::size_t index, Chunk added) {
      if (!more()) {
         auto chunks = std::make_unique<MoreChunks>(MoreChunks{{}, first_.size() + added.size()});
         first_.setMore(chunks.get());
         chunks.release();
      }
      more()->chunks.insert(more()->chunks.begin() + static_cast<std::ptrdiff_t>(index - 1),
                            std::move(added));
   }

   // Moves the upper half of a full chunk into a new chunk after it; both halves keep only the
   // room they use.
   Place split(Place place) {
      auto& lower = chunk(place.chunk);
      auto const half = lower.size() / 2;
      auto upper = lower.splitOff(half);
      lower.shrinkToFit();
      addChunk(place.chunk + 1, std::move(upper));
      return place.position < half ? place : Place{place.chunk + 1, place.position - half};
   }

   Place eraseAt(Place place) {
      sizeChangedBy(-1);
      auto& target = chunk(place.chunk);
      target.erase(place.position);
      if (target.empty()) {
         removeEmptyChunk(place.chunk);
         return {place.chunk, 0};
      }
      return place.position == target.size() ? Place{place.chunk + 1, 0} : place;
   }

   void removeEmptyChunk(std::size_t index) {
      auto* chunks = more();
      if (!chunks) {
         return;  // the collection is now empty
      }
      if (index == 0) {
         // The second chunk becomes the first and takes over the collection's part of the header,
         // and the slot when chunks follow it.
         auto& second = chunks->chunks.front();
         if (chunks->chunks.size() > 1) {
            second.setMore(chunks);
         }
         second.header().changeCount = first_.changeCount();
         first_ = std::move(second);
         index = 1;
      }
      chunks->chunks.erase(chunks->chunks.begin() + static_cast<std::ptrdiff_t>(index - 1));
      if (chunks->chunks.empty()) {
         delete chunks;
         first_.setMore(nullptr);
      }
   }

   Chunk first_;
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
