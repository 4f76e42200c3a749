// Hash map of the object model: lookup by key, no promised iteration order, and the same change
// count as the ordered collections.
#pragma once

#include <functional>
#include <unordered_map>

#include "Kel/detail/CountedCollection.h"

namespace Kel {

template <typename K, typename V, typename Hash = std::hash<K>>
class HashMap : public detail::CountedMap<detail::WithChangeCount<std::unordered_map<K, V, Hash>>> {
};

}  // namespace Kel
