// Messages about keys.
#include "Members.h"

#include <string>

#include "StateError.h"
#include "Suggestion.h"

namespace StateLoader {

void failUnknownKey(Where const& where, std::string_view key,
                    std::span<std::string_view const> known) {
   std::string message = "unknown key " + quoted(key);
   if (auto const suggestion = closestKey(key, known)) {
      message += " (did you mean " + quoted(*suggestion) + "?)";
   }
   fail(where, message);
}

void failDuplicateKey(Where const& where, std::string_view key) {
   fail(where, "duplicate key " + quoted(key));
}

void failMissingKey(Where const& object, std::string_view key) {
   fail(object, "missing key " + quoted(key));
}

}  // namespace StateLoader
