// Ordered collections of the object model: iteration in ascending key order, lookup of the first
// key greater than a given one (how a robust walk finds its place again), and the change count.
#pragma once

#include <map>
#include <set>

#include "Kel/detail/CountedCollection.h"

namespace Kel {

template <typename K, typename V>
class OrderedMap : public detail::Ordered<detail::CountedMap<std::map<K, V>>> {};

template <typename K>
class OrderedSet : public detail::Ordered<detail::CountedSet<std::set<K>>> {};

}  // namespace Kel
