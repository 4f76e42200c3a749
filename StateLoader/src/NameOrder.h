// Members of a name-keyed object gathered in document order and entered into the model's map in
// the order of their names. The model's ordered maps append a key greater than their last one
// after one comparison, but search and move entries for any other key; names in rule order
// ("r1", "r2", ..., "r10") are only partly in byte order, and entering them as read cost some 700
// instructions a member. Merging the ascending runs that the names come in costs a few
// comparisons a name instead.
//
// A name given twice is only seen once every name is in, yet the file must be refused for its
// first problem in document order: when the walk fails on a later member, a name repeated before
// the failure is told instead of it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "JsonPointer.h"
#include "Node.h"
#include "ParallelMembers.h"

namespace StateLoader {

// The positions of `names`, in ascending byte order of the names; equal names in the order given.
void sortByName(std::span<std::string_view const> names, std::vector<std::uint32_t>& order);

// Refuses the file for the first name (in the order given) that an earlier one already had, as a
// duplicate key of `object`; `order` is the names' sorted order.
void failFirstRepeat(Where const& object, std::span<std::string_view const> names,
                     std::span<std::uint32_t const> order);

template <typename Value>
class NameOrdered {
 public:
   explicit NameOrdered(Node const& object) : object_(object.where) {
      if (!object.unparsed && object.value.is_object()) {
         auto const members = asObject(object).size();
         names_.reserve(members);
         values_.reserve(members);
      }
   }

   // Runs `walk`, which adds the members' entries in document order.
   template <typename Walk>
   void gather(Walk&& walk) {
      try {
         walk();
      } catch (...) {
         sortByName(names_, order_);
         failFirstRepeat(object_, names_, order_);
         throw;
      }
   }

   // `name` must stay where it is until the entries are entered: the text of a name that
   // `value` holds.
   void add(std::string_view name, Value value) {
      names_.push_back(name);
      values_.push_back(std::move(value));
   }

   // Refuses a name given twice; else calls enter(value) for every entry, in order of names.
   template <typename Enter>
   void enter(Enter&& enter) {
      sortByName(names_, order_);
      failFirstRepeat(object_, names_, order_);
      for (auto const position : order_) {
         enter(std::move(values_[position]));
      }
   }

 private:
   Where const& object_;
   std::vector<std::string_view> names_;
   std::vector<Value> values_;
   std::vector<std::uint32_t> order_;
};

// Reads the members of an object on every processor (see forEachMemberInParallel) into entities
// named after their keys, and enters them into `map`, keyed by name, in the order of their names.
template <typename Read, typename Map>
void readMembersByName(Node const& object, Read&& read, Map& map) {
   using Entity = std::invoke_result_t<std::remove_cvref_t<Read>&, std::string_view, Node const&>;
   NameOrdered<Entity> entities(object);
   entities.gather([&] {
      forEachMemberInParallel(object, std::forward<Read>(read),
                              [&entities](std::string_view, Where const&, Entity entity) {
                                 std::string_view const name = entity->name();
                                 entities.add(name, std::move(entity));
                              });
   });
   entities.enter([&map](Entity entity) {
      auto const name = entity->name();
      map.insertOrAssign(name, std::move(entity));
   });
}

}  // namespace StateLoader
