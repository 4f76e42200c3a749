// Writing a location out as an RFC 6901 pointer.
#include "JsonPointer.h"

#include "Strix/Printable.h"

namespace StateLoader {

void appendPointerToken(std::string& pointer, std::string_view key) {
   pointer += '/';
   auto const part = Strix::echoedPart(key);
   for (char const character : part) {
      if (character == '~') {
         pointer += "~0";
      } else if (character == '/') {
         pointer += "~1";
      } else {
         pointer += character;
      }
   }
   if (part.size() < key.size()) {
      pointer += "...";
   }
}

std::string Where::pointer() const {
   std::string pointer;
   appendTo(pointer);
   return pointer;
}

void Where::appendTo(std::string& pointer) const {
   if (!parent_) {
      return;
   }
   parent_->appendTo(pointer);
   if (isElement_) {
      pointer += '/';
      pointer += std::to_string(index_);
   } else {
      appendPointerToken(pointer, key_);
   }
}

}  // namespace StateLoader
