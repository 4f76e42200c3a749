// The output of one show command: a 1 MiB print buffer on the command's file descriptor and a
// renderer over it. In JSON the command's keys are wrapped in the document's own braces, which are
// written raw, outside the renderer's separator bookkeeping, and the document ends with a newline.
#pragma once

#include <cstdint>

#include "vellum/Renderer.h"
#include "vellum/VellumBuffer.h"

namespace TrafficPolicyCli {

inline constexpr std::size_t kPrintBufferSize = 1048576;

// Calls renderBody(renderer) between the document's braces. The buffer is flushed when it goes
// out of scope, after the renderer.
template <typename RenderBody>
void renderCommandDocument(std::uint32_t fd, std::uint32_t format, RenderBody&& renderBody) {
   vellum::VellumBuffer buffer(static_cast<int>(fd), kPrintBufferSize, 1);
   vellum::RendererV2 renderer(static_cast<vellum::OutputFormat_t>(format), &buffer, true);
   if (renderer.isJson()) {
      buffer.append('{');
   }
   renderBody(renderer);
   if (renderer.isJson()) {
      buffer.append("}\n");
   }
}

}  // namespace TrafficPolicyCli
