// The message for a word that is none of the known ones.
#include "Choice.h"

#include <string>

#include "StateError.h"

namespace StateLoader {

void failUnknownWord(Node const& node, std::string_view what,
                     std::span<std::string_view const> words) {
   std::string message =
       "unknown " + std::string(what) + " " + quoted(asString(node)) + "; expected ";
   for (std::size_t index = 0; index < words.size(); ++index) {
      if (index > 0) {
         message += index + 1 == words.size() ? " or " : ", ";
      }
      message += quoted(words[index]);
   }
   fail(node.where, message);
}

}  // namespace StateLoader
