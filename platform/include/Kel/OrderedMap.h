// Ordered collections of the object model: iteration in ascending key order, lookup of the first
// key greater than a given one (how a robust walk finds its place again), and the change count.
#pragma once

#include "Kel/detail/CountedCollection.h"
#include "Kel/detail/SortedChunks.h"

namespace Kel {

template <typename K, typename V>
class OrderedMap : public detail::Ordered<detail::CountedMap<detail::SortedMap<K, V>>> {};

template <typename K>
class OrderedSet : public detail::Ordered<detail::CountedSet<detail::SortedSet<K>>> {};

}  // namespace Kel
