// Filling an object-model ordered set from a list in the file. Lists usually come in ascending
// order (a dump of an ordered set writes them so), and a field set may hold millions of prefixes:
// the builder tries each key at the end of the tree first, which costs one comparison, and only a
// key out of order pays for a search from the root. Kel's ordered sets take no position hint, so
// the builder derives from the set to reach its container (which they leave to derived classes);
// the finished set is then moved into the model.
#pragma once

#include <utility>

#include "Kel/OrderedMap.h"

namespace StateLoader {

template <typename Key>
class SetBuilder : public Kel::OrderedSet<Key> {
 public:
   // False when the key is there already.
   bool add(Key key) {
      auto const before = this->items_.size();
      this->items_.insert(this->items_.end(), std::move(key));
      bool const added = this->items_.size() != before;
      this->noteInserted(added);
      return added;
   }
};

}  // namespace StateLoader
