// Names are merged run by run: members written in rule order come in a few ascending runs (one per
// number of digits, say), so a sort costs little more than one comparison a name.
#include "NameOrder.h"

#include <algorithm>
#include <numeric>

#include "Kel/String.h"
#include "Members.h"

namespace StateLoader {

void sortByName(std::span<std::string_view const> names, std::vector<std::uint32_t>& order) {
   auto const count = names.size();
   order.resize(count);
   std::iota(order.begin(), order.end(), std::uint32_t{0});
   auto const before = [names](std::uint32_t left, std::uint32_t right) {
      return Kel::detail::compareBytes(names[left], names[right]) < 0;
   };
   // Where each ascending run starts, and the end.
   std::vector<std::size_t> starts{0};
   for (std::size_t at = 1; at < count; ++at) {
      if (before(order[at], order[at - 1])) {
         starts.push_back(at);
      }
   }
   starts.push_back(count);
   std::vector<std::uint32_t> merged(starts.size() > 2 ? count : 0);
   std::vector<std::size_t> mergedStarts;
   while (starts.size() > 2) {
      mergedStarts.clear();
      for (std::size_t run = 0; run + 1 < starts.size(); run += 2) {
         auto const first = order.begin() + static_cast<std::ptrdiff_t>(starts[run]);
         auto const middle = order.begin() + static_cast<std::ptrdiff_t>(starts[run + 1]);
         auto const last = run + 2 < starts.size()
                               ? order.begin() + static_cast<std::ptrdiff_t>(starts[run + 2])
                               : middle;
         std::merge(first, middle, middle, last,
                    merged.begin() + static_cast<std::ptrdiff_t>(starts[run]), before);
         mergedStarts.push_back(starts[run]);
      }
      mergedStarts.push_back(count);
      starts.swap(mergedStarts);
      order.swap(merged);
   }
}

void failFirstRepeat(Where const& object, std::span<std::string_view const> names,
                     std::span<std::uint32_t const> order) {
   // Equal names are next to each other, in the order given: the second of each is a repeat.
   auto first = names.size();
   for (std::size_t at = 1; at < order.size(); ++at) {
      if (sameKey(names[order[at]], names[order[at - 1]])) {
         first = std::min<std::size_t>(first, order[at]);
      }
   }
   if (first != names.size()) {
      failDuplicateKey(object.member(names[first]), names[first]);
   }
}

}  // namespace StateLoader
