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

// Calls visit(key, value) for a map, visit(key) for a set.
template <typename Collection, typename Visitor>
void robustWalk(Collection const& collection, Visitor&& visit) {
   auto position = collection.begin();
   while (position != collection.end()) {
      auto const changeCount = collection.changeCount();
      // The visitor may delete this very entry, so the key is kept by value.
      auto const key = detail::keyOf(position);
      if constexpr (requires { position->second; }) {
         visit(key, position->second);
      } else {
         visit(key);
      }
      if (collection.changeCount() == changeCount) {
         ++position;
      } else {
         position = collection.firstGreaterThan(key);
      }
   }
}

}  // namespace Kel
