#include "support/OutputChecks.h"

#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace fuzz {

namespace {

[[noreturn]] void fail(std::string const& what, std::string const& output,
                       std::string const& command) {
   std::fprintf(stderr, "%s: %s\n--- output ---\n%s\n--- end ---\n", command.c_str(), what.c_str(),
                output.c_str());
   std::abort();
}

// The offset of the first character a terminal would act on rather than show, or npos. C1
// controls (U+0080-U+009F) are the two bytes 0xC2 0x80-0x9F in UTF-8.
std::size_t firstControl(std::string const& text) {
   for (std::size_t index = 0; index < text.size(); ++index) {
      auto const byte = static_cast<unsigned char>(text[index]);
      bool const c1 = byte == 0xC2 && index + 1 < text.size() &&
                      (static_cast<unsigned char>(text[index + 1]) & 0xE0) == 0x80;
      if ((byte < 0x20 && byte != '\n') || byte == 0x7F || c1) {
         return index;
      }
   }
   return std::string::npos;
}

}  // namespace

// Parsing builds no document unless the text is refused, when a second parse names the fault.
void checkJson(std::string const& output, std::string const& command) {
   if (nlohmann::json::accept(output)) {
      return;
   }
   std::string reason = "not valid JSON";
   try {
      [[maybe_unused]] auto const document = nlohmann::json::parse(output);
   } catch (nlohmann::json::parse_error const& error) {
      reason += std::string(": ") + error.what();
   }
   fail(reason, output, command);
}

void checkText(std::string const& output, std::string const& command) {
   if (auto const at = firstControl(output); at != std::string::npos) {
      fail("control character " + std::to_string(static_cast<unsigned char>(output[at])) +
               " at offset " + std::to_string(at),
           output, command);
   }
}

}  // namespace fuzz
