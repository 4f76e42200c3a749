// One command's output, set up as every render entry of the library sets it up: a 1 MiB print
// buffer over the command's descriptor, a buffered renderer over it that carries the format and
// revision the command was given and, in JSON, the raw outer braces around the command's top-level
// object. The buffer is flushed when the output is destroyed, after the renderer.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "vellum/Renderer.h"
#include "vellum/SigIntException.h"

namespace TrafficPolicyCli {

class CommandOutput {
 public:
   // In JSON, opens the document; the command writes its top-level keys itself.
   CommandOutput(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision);
   // In JSON, opens the document and its one top-level object `topLevelKey`.
   CommandOutput(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision,
                 std::string_view topLevelKey);
   CommandOutput(CommandOutput const&) = delete;
   CommandOutput& operator=(CommandOutput const&) = delete;

   vellum::RendererV2& renderer() noexcept { return renderer_; }
   // In JSON, closes the top-level object (if this output opened one) and the document. Not called
   // when rendering ends with an exception, so an interrupted document stays as far as it got.
   void close();

 private:
   vellum::VellumBuffer buffer_;
   vellum::RendererV2 renderer_;
   bool hasTopLevelObject_ = false;
};

// Runs a command's rendering; an interrupt by the user (or a reader gone away) ends it with
// "exiting ..." on standard output and a normal return, as the command layer expects.
template <typename Render>
void renderUntilInterrupted(Render const& render) {
   try {
      render();
   } catch (vellum::SigIntException const& interrupted) {
      std::printf("exiting %s\n", interrupted.what());
   }
}

}  // namespace TrafficPolicyCli
