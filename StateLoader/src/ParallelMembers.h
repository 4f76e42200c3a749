// Reading the members of a large object on every processor. Policies are independent of one
// another until they are entered into the model, and building their entities is most of the
// loader's time, so the members are read by a few threads, each taking the next unread member,
// while the entering stays on the calling thread in document order. A member whose reading fails
// keeps its fault until the walk in order reaches it: the file is refused for the same problem,
// with the same place, as a reading on one thread would give.
#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <string_view>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "Node.h"
#include "TextMembers.h"

namespace StateLoader {

namespace detail {

// Below this many members a second thread costs more than it saves.
inline constexpr std::size_t kMembersPerThread = 64;
inline constexpr unsigned kMaxThreads = 8;

unsigned readingThreads(std::size_t members);

}  // namespace detail

// Calls read(key, node) for every member of an object, on any thread, then enter(key, where,
// result) on this thread for every member in document order. `read` must touch nothing that is
// shared but the document.
template <typename Read, typename Enter>
void forEachMemberInParallel(Node const& object, Read&& read, Enter&& enter) {
   using Result = std::invoke_result_t<Read&, std::string_view, Node const&>;
   MemberList const members(object);
   std::vector<Result> results(members.size());
   std::vector<std::exception_ptr> faults(members.size());
   std::atomic<std::size_t> next{0};
   // Members after a failed one are not read: the walk in order stops at the first fault.
   std::atomic<std::size_t> firstFault{members.size()};
   auto const readMembers = [&] {
      PieceParser parser;
      for (auto index = next++; index < firstFault.load(); index = next++) {
         auto readOne = [&](std::string_view key, Node const& value) {
            results[index] = read(key, value);
         };
         try {
            members.visit(index, parser, readOne);
            members.release(index);
         } catch (...) {
            faults[index] = std::current_exception();
            for (auto seen = firstFault.load(); index < seen;) {
               firstFault.compare_exchange_weak(seen, index);
            }
         }
      }
   };
   std::vector<std::jthread> helpers;
   for (unsigned count = 1; count < detail::readingThreads(members.size()); ++count) {
      try {
         helpers.emplace_back(readMembers);
      } catch (std::system_error const&) {
         break;  // fewer threads only make the reading slower
      }
   }
   readMembers();
   helpers.clear();
   for (std::size_t index = 0; index < members.size(); ++index) {
      if (faults[index]) {
         std::rethrow_exception(faults[index]);
      }
      auto const key = members.key(index);
      Where const where = object.where.member(key);
      enter(key, where, std::move(results[index]));
   }
}

}  // namespace StateLoader
