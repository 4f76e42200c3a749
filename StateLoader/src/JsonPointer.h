// Where a value sits in the state document. Each step lives on the walker's own stack and points
// to its parent, so following the path costs nothing until a problem needs it written out as an
// RFC 6901 pointer ("/trafficPolicies/web-in/rules/r1", with "~" and "/" in keys escaped).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace StateLoader {

class Where {
 public:
   // The document itself; its pointer is empty.
   static Where root() noexcept { return Where(nullptr, {}, 0, false); }

   // The steps below keep a reference to this one: they must not outlive it.
   Where member(std::string_view key) const noexcept { return Where(this, key, 0, false); }
   Where element(std::size_t index) const noexcept { return Where(this, {}, index, true); }

   std::string pointer() const;

 private:
   Where(Where const* parent, std::string_view key, std::size_t index, bool isElement) noexcept
       : parent_(parent), key_(key), index_(index), isElement_(isElement) {}

   void appendTo(std::string& pointer) const;

   Where const* parent_;
   std::string_view key_;
   std::size_t index_;
   bool isElement_;
};

// Appends "/" and the key with "~" written "~0" and "/" written "~1". A key too long to show is
// cut short, "..." marking the cut, so that a pointer stays a line long.
void appendPointerToken(std::string& pointer, std::string_view key);

}  // namespace StateLoader
