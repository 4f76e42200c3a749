// Raising a problem at a location, and the one line that reports it.
#include "StateError.h"

#include "JsonPointer.h"
#include "Strix/Printable.h"

namespace StateLoader {

void fail(Where const& where, std::string const& message) {
   throw StateError(where.pointer(), message);
}

std::string reasonOf(std::string const& path, StateError const& error) {
   std::string text = path + ": ";
   if (!error.pointer().empty()) {
      text += error.pointer() + ": ";
   }
   // Keys and values quoted in a reason may hold anything a JSON escape can write.
   return Strix::printable(text + error.what());
}

}  // namespace StateLoader
