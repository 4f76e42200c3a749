// How one command's output is asked for, in one value that travels with the renderer: the format,
// the output revision, and the form that the two choose. Show code reads the form where it
// differs instead of handing loose numbers down to the one place that tests them.
#pragma once

#include <cstdint>

#include "vellum/OutputFormat.h"

namespace vellum {

// The newest output revision, the one a renderer made for a format alone writes.
inline constexpr std::uint32_t kLatestRevision = 2;

struct OutputContext {
   OutputFormat_t format;
   std::uint32_t revision;
   // Whether lists of grouped items are written inside their grouping lists ("ports",
   // "tcpFlagGroups"). JSON of revisions before 2 lists the items flat; text has one form only.
   bool groupedJsonForm;
};

constexpr OutputContext outputContext(OutputFormat_t format,
                                      std::uint32_t revision = kLatestRevision) noexcept {
   return {format, revision, revision >= 2 || format == OutputFormat_t::text};
}

}  // namespace vellum
