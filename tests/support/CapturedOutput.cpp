#include "support/CapturedOutput.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

namespace testing_support {

MemoryFile::MemoryFile() : fd_(memfd_create("captured-output", 0)) {
   if (fd_ < 0) {
      throw std::runtime_error("memfd_create failed");
   }
}

MemoryFile::~MemoryFile() {
   ::close(fd_);
}

std::string MemoryFile::contents() const {
   std::string text;
   char chunk[65536];
   for (off_t offset = 0;;) {
      auto const got = ::pread(fd_, chunk, sizeof chunk, offset);
      if (got <= 0) {
         return text;
      }
      text.append(chunk, static_cast<std::size_t>(got));
      offset += got;
   }
}

std::string render(vellum::OutputContext context,
                   std::function<void(vellum::RendererV2&)> const& calls) {
   MemoryFile file;
   {
      vellum::VellumBuffer buffer(file.fd(), 1048576, 1);
      vellum::RendererV2 renderer(context, &buffer, true);
      if (renderer.isJson()) {
         buffer.append("{");
      }
      calls(renderer);
      if (renderer.isJson()) {
         buffer.append("}\n");
      }
   }
   return file.contents();
}

nlohmann::json parseJson(std::string const& document) {
   try {
      return nlohmann::json::parse(document);
   } catch (nlohmann::json::parse_error const& error) {
      ADD_FAILURE() << "not valid JSON: " << error.what() << "\n" << document;
      return {};
   }
}

}  // namespace testing_support
