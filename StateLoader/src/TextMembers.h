// The members of an object in the text, walked in order (see Node.h) or listed first so that
// several threads can read them in any order.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Node.h"

namespace StateLoader {

// A value kept by its place in the text, as a node: parsed when it is small, left to be read
// member by member when it is a large object. A parsed value lives until the next parse with the
// value's parser.
Node nodeOf(TextValue const& value, Where const& where);

// The members of a large object, found by skimming over it once; its end is recorded on the way.
std::vector<MemberSpan> gatherMembers(TextValue const& object);

// The members of an object, parsed or in the text.
class MemberList {
 public:
   explicit MemberList(Node const& object);

   std::size_t size() const noexcept { return inText_ ? spans_.size() : parsed_.size(); }

   // Calls visit(key, node) for the member at `index`, parsing it with `parser` when it is in the
   // text. Threads may visit different members at once.
   void visit(std::size_t index, PieceParser& parser, MemberVisitor visit) const;

   // Lets go of the pages that only the member at `index` holds, once it has been read.
   void release(std::size_t index) const noexcept;

   // The key of a member, once it has been visited.
   std::string_view key(std::size_t index) const noexcept;

 private:
   Node const& object_;
   bool inText_;
   std::vector<std::pair<std::string_view, simdjson::dom::element>> parsed_;
   std::vector<MemberSpan> spans_;
   mutable std::vector<std::string> keys_;
};

}  // namespace StateLoader
