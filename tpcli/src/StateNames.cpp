// Names by prefix from the state's ordered maps: a seek to the prefix and a walk while it holds,
// so that completing in a state of a million sets costs the names that fit, not the million.
#include "tpcli/StateNames.h"

namespace tpcli {

namespace {

template <typename Map>
std::vector<std::string> namesStartingWith(Map const& map, std::string_view prefix) {
   std::vector<std::string> names;
   for (auto entry = map.firstNotLessThan(Kel::String(prefix));
        entry != map.end() && entry->first.view().starts_with(prefix); ++entry) {
      names.emplace_back(entry->first.view());
   }
   return names;
}

}  // namespace

std::vector<std::string> stateNames(StateLoader::DeviceState const& state, NameKind kind,
                                    std::string_view prefix) {
   auto const& fieldSets = *state.fieldSetConfig;
   switch (kind) {
      case NameKind::none:
         return {};
      case NameKind::policy:
         return namesStartingWith(state.config->policyMapConfig(), prefix);
      case NameKind::ipv4FieldSet:
         return namesStartingWith(fieldSets.fieldSetIpPrefix(), prefix);
      case NameKind::ipv6FieldSet:
         return namesStartingWith(fieldSets.fieldSetIpv6Prefix(), prefix);
      case NameKind::l4PortFieldSet:
         return namesStartingWith(fieldSets.fieldSetL4Port(), prefix);
      case NameKind::vlanFieldSet:
         return namesStartingWith(fieldSets.fieldSetVlan(), prefix);
   }
   return {};
}

}  // namespace tpcli
