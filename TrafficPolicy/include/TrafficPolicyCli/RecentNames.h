// The names found last, with what was found for them. The rules of a policy name the same few field
// sets again and again, and a search of an ordered map by name costs some hundred instructions,
// about as much as the rest of what a rule does with the name: a name is first looked for at one
// place of a small table, picked by its hash. A name that lost its place to another is searched
// again, so an answer never depends on what the table still holds.
#pragma once

#include <array>
#include <cstddef>

#include "Kel/NameHash.h"
#include "Kel/String.h"

namespace TrafficPolicyCli {

// `Value` converts to false for "not found" (a null pointer, false); only found values are kept.
template <typename Value>
class RecentNames {
 public:
   // What `search(name)` gives, from the table when the name was found before.
   template <typename Search>
   Value find(Kel::String const& name, Search&& search) {
      auto& place = places_[Kel::nameHash(name.view()) % kPlaces];
      if (place.value && place.name == name) {
         return place.value;
      }
      Value const value = search(name);
      if (value) {
         place = {name, value};
      }
      return value;
   }
   // For when what the values were found in has lost entries.
   void clear() noexcept { places_ = {}; }

 private:
   static constexpr std::size_t kPlaces = 32;
   struct Place {
      Kel::String name;
      Value value{};
   };
   std::array<Place, kPlaces> places_{};
};

}  // namespace TrafficPolicyCli
