// dlopen, dlsym and dlclose, with the dynamic loader's reasons in the messages.
#include "tpcli/DynamicLibrary.h"

#include <dlfcn.h>

#include <utility>

namespace tpcli {

namespace {

std::string loaderError() {
   auto const* error = dlerror();
   return error ? error : "unknown error";
}

}  // namespace

Kel::Expected<DynamicLibrary> DynamicLibrary::open(std::string const& path, std::string role,
                                                   Closing closing) {
   auto* handle = dlopen(
       path.c_str(), RTLD_NOW | RTLD_LOCAL | (closing == Closing::keepsLoaded ? RTLD_NODELETE : 0));
   if (!handle) {
      return Kel::Failure{"cannot load " + role + " \"" + path + "\": " + loaderError()};
   }
   return DynamicLibrary(handle, path, std::move(role));
}

DynamicLibrary::DynamicLibrary(void* handle, std::string path, std::string role) noexcept
    : handle_(handle), path_(std::move(path)), role_(std::move(role)) {}

DynamicLibrary::DynamicLibrary(DynamicLibrary&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)),
      path_(std::move(other.path_)),
      role_(std::move(other.role_)) {}

DynamicLibrary& DynamicLibrary::operator=(DynamicLibrary&& other) noexcept {
   std::swap(handle_, other.handle_);
   std::swap(path_, other.path_);
   std::swap(role_, other.role_);
   return *this;
}

DynamicLibrary::~DynamicLibrary() {
   if (handle_) {
      dlclose(handle_);
   }
}

Kel::Expected<void*> DynamicLibrary::symbol(char const* kind, char const* name) const {
   dlerror();
   auto* address = dlsym(handle_, name);
   if (!address) {
      return Kel::Failure{role_ + " \"" + path_ + "\" has no " + kind + " " + name + ": " +
                          loaderError()};
   }
   return address;
}

}  // namespace tpcli
