#include "support/CapturedOutput.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

namespace testing_support {

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

std::string readAll(int fd, std::size_t limit) {
   std::string text;
   char chunk[65536];
   while (text.size() < limit) {
      auto const got = ::read(fd, chunk, std::min(sizeof chunk, limit - text.size()));
      if (got <= 0) {
         break;
      }
      text.append(chunk, static_cast<std::size_t>(got));
   }
   return text;
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
