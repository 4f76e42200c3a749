// Test support: run rendering code against a real file descriptor and get back the bytes it
// wrote, read what reaches a pipe or a terminal, and check JSON with a parser independent of the
// renderer.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tpcli/MemoryFile.h"
#include "vellum/Renderer.h"

namespace testing_support {

// An anonymous in-memory file; what is written to fd() can be read back with contents().
using tpcli::MemoryFile;

// Renders with a buffered RendererV2 in `context` and returns the output. In JSON the calls are
// wrapped in the raw "{" and "}\n" that every command writes around its document.
std::string render(vellum::OutputContext context,
                   std::function<void(vellum::RendererV2&)> const& calls);
inline std::string render(vellum::OutputFormat_t format,
                          std::function<void(vellum::RendererV2&)> const& calls) {
   return render(vellum::outputContext(format), calls);
}

// What `fd` gives until its end, a failed read (a non-blocking one with nothing more to give) or
// `limit` bytes, whichever comes first.
std::string readAll(int fd, std::size_t limit = std::string::npos);

// Parses with nlohmann::json; a parse error fails the calling test with the document in the
// message.
nlohmann::json parseJson(std::string const& document);

}  // namespace testing_support
