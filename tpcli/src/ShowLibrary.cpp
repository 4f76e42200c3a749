// dlopen, dlsym and dlclose around the show library.
#include "tpcli/ShowLibrary.h"

#include <dlfcn.h>

#include <utility>

namespace tpcli {

namespace {

std::string loaderError() {
   auto const* error = dlerror();
   return error ? error : "unknown error";
}

// Fills one slot of the table by name; its type comes from the library's own declaration. False,
// with the reason, when the library lacks the factory.
template <typename Factory>
bool find(Factory& slot, void* handle, std::string const& path, char const* name,
          std::string& reason) {
   dlerror();
   auto* symbol = dlsym(handle, name);
   if (!symbol) {
      reason = "the show library \"" + path + "\" has no factory " + name + ": " + loaderError();
      return false;
   }
   slot = reinterpret_cast<Factory>(symbol);
   return true;
}

}  // namespace

Kel::Expected<ShowLibrary> ShowLibrary::open(std::string const& path) {
   auto* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
   if (!handle) {
      return Kel::Failure{"cannot load the show library \"" + path + "\": " + loaderError()};
   }
   ShowLibrary library(handle);
   auto& table = library.factories_;
   std::string reason;
   bool const complete =
       find(table.interface, handle, path, "showTrafficPolicyInterfaceFactory", reason) &&
       find(table.cpu, handle, path, "showTrafficPolicyCpuFactory", reason) &&
       find(table.prefixFieldSet, handle, path, "showTrafficPolicyPrefixFieldSetFactory", reason) &&
       find(table.l4PortFieldSet, handle, path, "showTrafficPolicyL4PortFieldSetFactory", reason) &&
       find(table.vlanFieldSet, handle, path, "showTrafficPolicyVlanFieldSetFactory", reason) &&
       find(table.ledgerSnapshotHelper, handle, path,
            "trafficPolicyLedgerCounterSnapshotHelperFactory", reason) &&
       find(table.pylonSnapshotHelper, handle, path,
            "trafficPolicyPylonCounterSnapshotHelperFactory", reason);
   if (!complete) {
      return Kel::Failure{reason};
   }
   return library;
}

ShowLibrary::ShowLibrary(ShowLibrary&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)), factories_(other.factories_) {}

ShowLibrary& ShowLibrary::operator=(ShowLibrary&& other) noexcept {
   std::swap(handle_, other.handle_);
   std::swap(factories_, other.factories_);
   return *this;
}

ShowLibrary::~ShowLibrary() {
   if (handle_) {
      dlclose(handle_);
   }
}

}  // namespace tpcli
