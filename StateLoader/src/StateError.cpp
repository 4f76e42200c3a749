// Raising a problem at a location.
#include "StateError.h"

#include "JsonPointer.h"

namespace StateLoader {

void fail(Where const& where, std::string const& message) {
   throw StateError(where.pointer(), message);
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
