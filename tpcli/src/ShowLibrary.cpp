// The show library's factories, found by name.
#include "tpcli/ShowLibrary.h"

namespace tpcli {

namespace {

// Fills one slot of the table by name; its type comes from the library's own declaration. False,
// with the reason, when the library lacks the factory.
template <typename Factory>
bool find(Factory& slot, DynamicLibrary const& library, char const* name, std::string& reason) {
   auto const symbol = library.symbol("factory", name);
   if (!symbol) {
      reason = symbol.reason();
      return false;
   }
   slot = reinterpret_cast<Factory>(*symbol);
   return true;
}

}  // namespace

Kel::Expected<ShowLibrary> ShowLibrary::open(std::string const& path) {
   auto library = DynamicLibrary::open(path, "the show library");
   if (!library) {
      return Kel::Failure{library.reason()};
   }
   ShowLibrary show(std::move(library).value());
   auto const& loaded = show.library_;
   auto& table = show.factories_;
   std::string reason;
   bool const complete =
       find(table.interface, loaded, "showTrafficPolicyInterfaceFactory", reason) &&
       find(table.cpu, loaded, "showTrafficPolicyCpuFactory", reason) &&
       find(table.prefixFieldSet, loaded, "showTrafficPolicyPrefixFieldSetFactory", reason) &&
       find(table.l4PortFieldSet, loaded, "showTrafficPolicyL4PortFieldSetFactory", reason) &&
       find(table.vlanFieldSet, loaded, "showTrafficPolicyVlanFieldSetFactory", reason) &&
       find(table.ledgerSnapshotHelper, loaded, "trafficPolicyLedgerCounterSnapshotHelperFactory",
            reason) &&
       find(table.pylonSnapshotHelper, loaded, "trafficPolicyPylonCounterSnapshotHelperFactory",
            reason);
   if (!complete) {
      return Kel::Failure{reason};
   }
   return show;
}

}  // namespace tpcli
