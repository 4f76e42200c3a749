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
// so that checking for them is one comparison, not a walk over the table for every object.
template <typename Target, std::size_t N>
struct MemberTable {
   static_assert(N <= 64, "one bit of the seen mask per key");

   constexpr MemberTable(std::array<Member<Target>, N> const& table)  // NOLINT: a table is one
       : members(table) {
      for (std::size_t index = 0; index < N; ++index) {
         if (table[index].required) {
            required |= std::uint64_t{1} << index;
         }
      }
   }

   std::array<Member<Target>, N> members;
   std::uint64_t required = 0;
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

// Writers put an object's keys in one order, usually the table's, so the search starts at
// `start`, just after the key found last, and wraps around.
template <typename Target, std::size_t N>
std::size_t memberIndex(std::array<Member<Target>, N> const& members, std::string_view key,
                        std::size_t start, Where const& where) {
   for (std::size_t step = 0; step < N; ++step) {
      auto const index = start + step < N ? start + step : start + step - N;
      if (sameKey(members[index].key, key)) {
         return index;
      }
   }
   std::array<std::string_view, N> known;
   for (std::size_t index = 0; index < N; ++index) {
      known[index] = members[index].key;
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
   auto const& members = table.members;
   std::uint64_t seen = 0;
   std::size_t next = 0;
   forEachMember(
       object,
       [&](std::string_view key, Node const& value) {
          std::size_t const index = memberIndex(members, key, next, value.where);
          next = index + 1 < N ? index + 1 : 0;
          std::uint64_t const bit = std::uint64_t{1} << index;
          if (seen & bit) {
             failDuplicateKey(value.where, key);
          }
          seen |= bit;
          members[index].read(value, target);
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
