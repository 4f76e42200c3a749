// Loading a state file: parse, read every section, and turn the first problem into the one-line
// reason "FILE: /json/pointer: what is wrong" ("FILE: what is wrong" for the file as a whole).
#include "StateLoader/Loader.h"

#include <new>

#include "DeviceStateReader.h"
#include "Document.h"
#include "StateError.h"

namespace StateLoader {

Kel::Expected<DeviceState> loadState(std::string const& path) {
   try {
      simdjson::dom::document document;
      return readDeviceState(parseStateFile(document, path));
   } catch (StateError const& error) {
      return Kel::Failure{reasonOf(path, error)};
   } catch (std::bad_alloc const&) {
      return Kel::Failure{path + ": not enough memory to load the state"};
   }
}

}  // namespace StateLoader
