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

// The members of an object, parsed or in the text, found a window at a time so that what is kept
// about them does not grow with the object. Within a window, members in the text are cut into runs
// that are parsed together, as a walk in order parses them; a run is read by one thread. The next
// window is found while threads still visit the current one.
class MemberList {
 public:
   explicit MemberList(Node const& object);

   // Finds the next (at most) `count` members after those found last; false when none is left.
   // Members still in the text stop at the first to end `bytes` or more after the window's start.
   // Throws TextRefused when the text around them is malformed.
   bool findWindow(std::size_t count, std::size_t bytes = TextValue::kUnknown);
   // Whether every member has been found.
   bool allFound() const noexcept;
   // Moves on to the members found last, numbered from 0 within their window.
   void nextWindow() noexcept { std::swap(window_, found_); }

   std::size_t size() const noexcept { return window_.keys.size(); }
   std::size_t runs() const noexcept { return window_.runStarts.size(); }
   // The first member of a run; the run ends where the next one starts.
   std::size_t runStart(std::size_t run) const noexcept { return window_.runStarts[run]; }

   // Calls visit(key, node) for each member of a run in order, parsing them with `parser` when
   // they are in the text. Threads may visit different runs at once.
   void visitRun(std::size_t run, PieceParser& parser, MemberVisitor visit) const;

   // Lets go of the pages that only the members of a run hold, once they have been read.
   void release(std::size_t run) const noexcept;

   // Hands the window's keys over (those of the members visited), so that they outlive the
   // window; `keys` gives its room to a later window's.
   void takeKeys(std::vector<std::string>& keys) noexcept { keys.swap(window_.keys); }

 private:
   struct Window {
      std::size_t parsedBase = 0;  // the parsed member that is the window's first
      std::vector<MemberSpan> spans;
      std::vector<std::size_t> runStarts;
      mutable std::vector<std::string> keys;
   };

   void cutIntoRuns(Window& window) const;
   std::size_t runEnd(std::size_t run) const noexcept;

   Node const& object_;
   bool inText_;
   std::vector<std::pair<std::string_view, simdjson::dom::element>> parsed_;
   // Where the next window starts: an index into the parsed members or the object's found members,
   // or a position in the text.
   std::size_t next_ = 0;
   Window window_;
   Window found_;
};

}  // namespace StateLoader
