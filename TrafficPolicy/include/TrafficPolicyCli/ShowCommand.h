// What the command layer sees of every object the library's factories make: an entity that
// renders itself onto a file descriptor. The command layer loads the library at run time and
// reaches the objects only through this interface, so `render` is the one virtual operation it
// relies on besides the object model's own.
#pragma once

#include <cstdint>

#include "Kel/Entity.h"

namespace TrafficPolicyCli {

class ShowCommand : public Kel::Entity {
 public:
   // fd: where the output goes; fmt: 1 text, 2 JSON; revision: the output revision.
   virtual void render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) = 0;
   // Runs only the caching phase of `render`, so that the cached records can be inspected
   // through reflection. Commands without a caching phase do nothing.
   virtual void cacheState() {}
};

}  // namespace TrafficPolicyCli
