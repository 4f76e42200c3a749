// Decoding follows the table of well-formed byte sequences of Unicode: the lead byte fixes the
// length, and the range allowed for the second byte is what rules out overlong forms, surrogates
// and code points above U+10FFFF.
#include "Strix/Utf8.h"

namespace Strix {

namespace {

struct Utf8Lead {
   std::size_t length;
   unsigned char secondLow;
   unsigned char secondHigh;
   char32_t bits;
};

Utf8Lead utf8Lead(unsigned char lead) {
   if (lead >= 0xc2 && lead <= 0xdf) {
      return {2, 0x80, 0xbf, lead & 0x1fu};
   }
   if (lead == 0xe0) {
      return {3, 0xa0, 0xbf, 0};
   }
   if (lead == 0xed) {
      return {3, 0x80, 0x9f, 0xd};
   }
   if (lead >= 0xe1 && lead <= 0xef) {
      return {3, 0x80, 0xbf, lead & 0xfu};
   }
   if (lead == 0xf0) {
      return {4, 0x90, 0xbf, 0};
   }
   if (lead >= 0xf1 && lead <= 0xf3) {
      return {4, 0x80, 0xbf, lead & 0x7u};
   }
   if (lead == 0xf4) {
      return {4, 0x80, 0x8f, 4};
   }
   return {0, 0, 0, 0};
}

}  // namespace

Utf8Character decodeUtf8(std::string_view text, std::size_t at) noexcept {
   auto const lead = static_cast<unsigned char>(text[at]);
   if (lead < 0x80) {
      return {lead, 1};
   }
   auto const shape = utf8Lead(lead);
   if (shape.length == 0 || at + shape.length > text.size()) {
      return {};
   }
   char32_t code = shape.bits;
   for (std::size_t offset = 1; offset < shape.length; ++offset) {
      auto const next = static_cast<unsigned char>(text[at + offset]);
      bool const fits = offset == 1 ? next >= shape.secondLow && next <= shape.secondHigh
                                    : next >= 0x80 && next <= 0xbf;
      if (!fits) {
         return {};
      }
      code = (code << 6) | (next & 0x3fu);
   }
   return {code, shape.length};
}

}  // namespace Strix
