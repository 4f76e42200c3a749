// Placeholder until the loader lands.
#include "StateLoader/Loader.h"

namespace StateLoader {

Kel::Expected<DeviceState> loadState(std::string const& path) {
   return Kel::Failure{path + ": : the state loader is not built yet"};
}

}  // namespace StateLoader
