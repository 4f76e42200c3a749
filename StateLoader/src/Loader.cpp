// Loading a state file: parse, read every section, and turn the first problem into the one-line
// reason "FILE: /json/pointer: what is wrong" ("FILE: what is wrong" for the file as a whole).
#include "StateLoader/Loader.h"

#include <new>

#include "DeviceStateReader.h"
#include "Document.h"
#include "StateError.h"

namespace StateLoader {

namespace {

// Keys and values quoted in a reason may hold control characters (as JSON escapes in the file);
// they are written as escapes again, so that the reason stays one line.
std::string oneLine(std::string const& text) {
   constexpr char kHex[] = "0123456789abcdef";
   std::string line;
   line.reserve(text.size());
   for (char const character : text) {
      auto const code = static_cast<unsigned char>(character);
      if (code >= 0x20 && code != 0x7f) {
         line += character;
      } else if (character == '\n') {
         line += "\\n";
      } else if (character == '\t') {
         line += "\\t";
      } else {
         line += "\\u00";
         line += kHex[code >> 4];
         line += kHex[code & 0xf];
      }
   }
   return line;
}

std::string reason(std::string const& path, StateError const& error) {
   std::string text = path + ": ";
   if (!error.pointer().empty()) {
      text += error.pointer() + ": ";
   }
   return oneLine(text + error.what());
}

}  // namespace

Kel::Expected<DeviceState> loadState(std::string const& path) {
   try {
      simdjson::dom::parser parser;
      return readDeviceState(parseStateFile(parser, path));
   } catch (StateError const& error) {
      return Kel::Failure{reason(path, error)};
   } catch (std::bad_alloc const&) {
      return Kel::Failure{path + ": not enough memory to load the state"};
   }
}

}  // namespace StateLoader
