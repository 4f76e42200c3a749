// The two kinds of objects in a state file. Objects with a fixed vocabulary of keys are read
// through a table: each key has its own reader, unknown keys are refused with a suggestion,
// repeated keys are refused, and required keys must be there. Objects keyed by names (policies,
// rules, interfaces) are read member by member, and a name given twice is refused when its entry
// is inserted into the model.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "Kel/String.h"
#include "Node.h"

namespace StateLoader {

template <typename Target>
struct Member {
   std::string_view key;
   void (*read)(Node const& value, Target& target);
   bool required = false;
};

// A table of members with the keys an object must have as bits, settled when the table is made,
// so that checking for them is one comparison, not a walk over the table for every object. The
// keys are chained by length, also when the table is made: the keys of a table mostly differ in
// length, so that finding a key compares its text with one candidate, seldom more.
template <typename Target, std::size_t N>
struct MemberTable {
   static_assert(N <= 64, "one bit of the seen mask per key");
   // Keys as long as this or longer share the last chain.
   static constexpr std::size_t kChains = 32;
   static constexpr std::uint8_t kNone = N;

   constexpr MemberTable(std::array<Member<Target>, N> const& table)  // NOLINT: a table is one
       : members(table) {
      firstOfLength.fill(kNone);
      nextOfLength.fill(kNone);
      for (std::size_t index = N; index-- > 0;) {
         if (table[index].required) {
            required |= std::uint64_t{1} << index;
         }
         auto& first = firstOfLength[chainOf(table[index].key.size())];
         nextOfLength[index] = first;
         first = static_cast<std::uint8_t>(index);
      }
   }

   static constexpr std::size_t chainOf(std::size_t length) noexcept {
      return length < kChains ? length : kChains - 1;
   }

   std::array<Member<Target>, N> members;
   std::uint64_t required = 0;
   std::array<std::uint8_t, kChains> firstOfLength{};
   std::array<std::uint8_t, N> nextOfLength{};
};

template <typename Target, std::size_t N>
MemberTable(std::array<Member<Target>, N> const&) -> MemberTable<Target, N>;

[[noreturn]] void failUnknownKey(Where const& where, std::string_view key,
                                 std::span<std::string_view const> known);
[[noreturn]] void failDuplicateKey(Where const& where, std::string_view key);
[[noreturn]] void failMissingKey(Where const& object, std::string_view key);

// Calls visit(node) for the first member with the given key, for the few keys that must be known
// before the others are read; false when there is none.
template <typename Visit>
bool visitMember(Node const& object, std::string_view key, Visit&& visit) {
   bool found = false;
   forEachMember(
       object,
       [&](std::string_view name, Node const& value) {
          if (!found && name == key) {
             found = true;
             visit(value);
          }
       },
       Behind::kept);
   return found;
}

// Keys are a few bytes long: compared in registers a word at a time, as the model compares names,
// a key costs a handful of instructions instead of a call to the C library for every candidate.
inline bool sameKey(std::string_view tableKey, std::string_view key) noexcept {
   return tableKey.size() == key.size() && Kel::detail::compareBytes(tableKey, key) == 0;
}

template <typename Target, std::size_t N>
std::size_t memberIndex(MemberTable<Target, N> const& table, std::string_view key,
                        Where const& where) {
   for (std::size_t index = table.firstOfLength[table.chainOf(key.size())]; index < N;
        index = table.nextOfLength[index]) {
      if (sameKey(table.members[index].key, key)) {
         return index;
      }
   }
   std::array<std::string_view, N> known;
   for (std::size_t index = 0; index < N; ++index) {
      known[index] = table.members[index].key;
   }
   failUnknownKey(where, key, known);
}

// Refuses an object for the first required key of the table that it lacks.
template <typename Target, std::size_t N>
[[noreturn]] void failFirstMissing(Node const& object, MemberTable<Target, N> const& table,
                                   std::uint64_t seen) {
   auto const missing = table.required & ~seen;
   failMissingKey(object.where,
                  table.members[static_cast<std::size_t>(std::countr_zero(missing))].key);
}

template <typename Target, std::size_t N>
void readMembers(Node const& object, MemberTable<Target, N> const& table, Target& target,
                 Behind behind = Behind::released) {
   std::uint64_t seen = 0;
   forEachMember(
       object,
       [&](std::string_view key, Node const& value) {
          std::size_t const index = memberIndex(table, key, value.where);
          std::uint64_t const bit = std::uint64_t{1} << index;
          if (seen & bit) {
             failDuplicateKey(value.where, key);
          }
          seen |= bit;
          table.members[index].read(value, target);
       },
       behind);
   if ((seen & table.required) != table.required) {
      failFirstMissing(object, table, seen);
   }
}

template <typename Target, std::size_t N>
constexpr std::array<Member<Target>, N> const& membersOf(MemberTable<Target, N> const& table) {
   return table.members;
}
template <typename Target, std::size_t N>
constexpr std::array<Member<Target>, N> const& membersOf(
    std::array<Member<Target>, N> const& members) {
   return members;
}

// One table made of two (tables or arrays of members), for objects that share part of their
// vocabulary.
template <typename First, typename Second>
constexpr auto joined(First const& first, Second const& second) {
   using Head = std::remove_cvref_t<decltype(membersOf(first))>;
   using Tail = std::remove_cvref_t<decltype(membersOf(second))>;
   std::array<typename Head::value_type, std::tuple_size_v<Head> + std::tuple_size_v<Tail>> both{};
   std::ranges::copy(membersOf(first), both.begin());
   std::ranges::copy(membersOf(second), both.begin() + std::tuple_size_v<Head>);
   return MemberTable(both);
}

// Enters an entry into a model map; false when the key was there already (the entry is then
// replaced, but the caller refuses the file anyway).
template <typename Map, typename Key, typename Value>
[[nodiscard]] bool insertedNew(Map& map, Key const& key, Value value) {
   auto const before = map.size();
   map.insertOrAssign(key, std::move(value));
   return map.size() != before;
}

}  // namespace StateLoader
