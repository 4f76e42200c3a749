// What a terminal must not be shown raw: control characters, which move the cursor, recolour or
// retitle (C1 controls too, since some terminals act on them as on ESC sequences); line and
// paragraph separators, which some break lines at; direction controls, which reorder what follows
// them on screen; and blanks other than the plain one, which make two different names look alike.
#include "Strix/Printable.h"

#include <string>

#include "Strix/Utf8.h"

namespace Strix {

namespace {

enum class Hazard { none, plainBlank, blank, control, lineBreak, direction };

Hazard hazardOf(char32_t code) {
   if (code < 0x20 || (code >= 0x7f && code <= 0x9f)) {
      return Hazard::control;
   }
   if (code == 0x20) {
      return Hazard::plainBlank;
   }
   if (code < 0xa0) {
      return Hazard::none;
   }
   if (code == 0x2028 || code == 0x2029) {
      return Hazard::lineBreak;
   }
   if (code == 0x061c || code == 0x200e || code == 0x200f || (code >= 0x202a && code <= 0x202e) ||
       (code >= 0x2066 && code <= 0x2069)) {
      return Hazard::direction;
   }
   // No-break and typographic spaces, and the zero-width ones.
   if (code == 0xa0 || code == 0x1680 || code == 0x180e || (code >= 0x2000 && code <= 0x200d) ||
       code == 0x202f || code == 0x205f || code == 0x2060 || code == 0x3000 || code == 0xfeff) {
      return Hazard::blank;
   }
   return Hazard::none;
}

// Escapes in lower case, as JSON writers do; code points in upper case, as Unicode does.
void appendHex(std::string& out, char32_t value, int digits, bool upperCase = false) {
   char const* const hexDigits = upperCase ? "0123456789ABCDEF" : "0123456789abcdef";
   for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) {
      out += hexDigits[(value >> shift) & 0xf];
   }
}

void appendEscape(std::string& out, char32_t code) {
   if (code == '\n') {
      out += "\\n";
   } else if (code == '\t') {
      out += "\\t";
   } else {
      out += "\\u";
      appendHex(out, code, 4);
   }
}

std::string describe(char32_t code, Hazard hazard) {
   if (hazard == Hazard::plainBlank) {
      return "blank";
   }
   if (code < 0x80) {
      return "control character " + std::to_string(code);
   }
   std::string description = hazard == Hazard::control     ? "control character U+"
                             : hazard == Hazard::lineBreak ? "line separator U+"
                             : hazard == Hazard::direction ? "direction control U+"
                                                           : "blank U+";
   appendHex(description, code, 4, true);
   return description;
}

// How many bytes a text starts with that are printable ASCII: names nearly always are whole, and
// are passed over without decoding.
std::size_t printableAsciiPrefix(std::string_view text, bool plainBlankAllowed) {
   unsigned char const lowest = plainBlankAllowed ? 0x20 : 0x21;
   std::size_t at = 0;
   while (at < text.size() && static_cast<unsigned char>(text[at]) >= lowest &&
          static_cast<unsigned char>(text[at]) < 0x7f) {
      ++at;
   }
   return at;
}

}  // namespace

std::string_view echoedPart(std::string_view text) noexcept {
   if (text.size() <= kLongestEcho) {
      return text;
   }
   // A character is at most four bytes: three steps back reach its lead byte.
   std::size_t cut = kLongestEcho;
   while (cut > kLongestEcho - 3 && (static_cast<unsigned char>(text[cut]) & 0xc0) == 0x80) {
      --cut;
   }
   return text.substr(0, cut);
}

void appendPrintable(std::string& out, std::string_view text) {
   for (std::size_t at = 0; at < text.size();) {
      auto const character = decodeUtf8(text, at);
      if (character.length == 0) {
         out += "\\x";
         appendHex(out, static_cast<unsigned char>(text[at]), 2);
         ++at;
         continue;
      }
      auto const hazard = hazardOf(character.codePoint);
      if (hazard == Hazard::none || hazard == Hazard::plainBlank) {
         out += text.substr(at, character.length);
      } else {
         appendEscape(out, character.codePoint);
      }
      at += character.length;
   }
}

std::string printable(std::string_view text) {
   std::string out;
   out.reserve(text.size());
   appendPrintable(out, text);
   return out;
}

std::string quoted(std::string_view text) {
   auto const part = echoedPart(text);
   std::string out = "\"";
   appendPrintable(out, part);
   if (part.size() < text.size()) {
      out += "...";
   }
   out += '"';
   return out;
}

std::optional<Unshowable> findUnshowable(std::string_view text, bool plainBlankAllowed) {
   std::size_t at = printableAsciiPrefix(text, plainBlankAllowed);
   for (std::size_t position = at + 1; at < text.size(); ++position) {
      auto const character = decodeUtf8(text, at);
      if (character.length == 0) {
         std::string description = "byte 0x";
         appendHex(description, static_cast<unsigned char>(text[at]), 2);
         return Unshowable{position, description + " that is not UTF-8"};
      }
      auto const hazard = hazardOf(character.codePoint);
      if (hazard != Hazard::none && !(hazard == Hazard::plainBlank && plainBlankAllowed)) {
         return Unshowable{position, describe(character.codePoint, hazard)};
      }
      at += character.length;
   }
   return std::nullopt;
}

}  // namespace Strix
