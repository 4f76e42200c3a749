// Walks over live collections that the visitor (or another agent it calls) may change. Between two
// visits the walk compares the collection's change count with the one it saw; when it moved, the
// walk finds its place again as "the first key greater than the last key handled". Every key that
// exists throughout the walk is visited exactly once, in ascending order; keys inserted behind the
// walk's position are not visited, keys inserted ahead of it are.
#pragma once

#include <utility>

namespace Kel {

namespace detail {
template <typename Position>
auto const& keyOf(Position const& position) {
   if constexpr (requires { position->first; }) {
      return position->first;
   } else {
      return *position;
   }
}
}  // namespace detail

// Calls visit(key, value) for a map, or visit(key) for a set and for a map visitor that needs only
// the key.
template <typename Collection, typename Visitor>
void robustWalk(Collection const& collection, Visitor&& visit) {
   auto position = collection.begin();
   while (position != collection.end()) {
      auto const changeCount = collection.changeCount();
      // The visitor may insert or delete entries, which moves the ones stored after them, so the
      // key (and the value, when the visitor takes it) is kept by value.
      auto const key = detail::keyOf(position);
      if constexpr (requires { visit(key); }) {
         visit(key);
      } else {
         auto value = position->second;
         visit(key, std::move(value));
      }
      if (collection.changeCount() == changeCount) {
         ++position;
      } else {
         position = collection.firstGreaterThan(key);
      }
   }
}

}  // namespace Kel
