// Raising a problem at a location, and the one line that reports it.
#include "StateError.h"

#include "JsonPointer.h"

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

}  // namespace

void fail(Where const& where, std::string const& message) {
   throw StateError(where.pointer(), message);
}

std::string reasonOf(std::string const& path, StateError const& error) {
   std::string text = path + ": ";
   if (!error.pointer().empty()) {
      text += error.pointer() + ": ";
   }
   return oneLine(text + error.what());
}

std::string quoted(std::string_view text) {
   constexpr std::size_t kLongest = 200;
   std::string result = "\"";
   if (text.size() <= kLongest) {
      result += text;
   } else {
      // Cut before a UTF-8 continuation byte at most three steps back, never inside a character.
      std::size_t cut = kLongest;
      while (cut > kLongest - 3 && (static_cast<unsigned char>(text[cut]) & 0xc0) == 0x80) {
         --cut;
      }
      result += text.substr(0, cut);
      result += "...";
   }
   result += '"';
   return result;
}

}  // namespace StateLoader
