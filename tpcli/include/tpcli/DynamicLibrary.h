// A shared library loaded at run time with dlopen, closed with its owner, and reached only through
// the symbols it exports by name: the show library, and the HTTP server that only `metrics
// --listen` needs. Code of the library runs in objects it made, so those must be gone first.
#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "Kel/Expected.h"
#include "tpcli/ExitCode.h"

namespace tpcli {

class DynamicLibrary {
 public:
   enum class Closing { unloads, keepsLoaded };

   // `role` names the library in messages ("the show library"). On failure the reason names the
   // role, the path and what the dynamic loader said.
   static Kel::Expected<DynamicLibrary> open(std::string const& path, std::string role,
                                             Closing closing = Closing::unloads);

   DynamicLibrary(DynamicLibrary&& other) noexcept;
   DynamicLibrary& operator=(DynamicLibrary&& other) noexcept;
   DynamicLibrary(DynamicLibrary const&) = delete;
   DynamicLibrary& operator=(DynamicLibrary const&) = delete;
   ~DynamicLibrary();

   // The address of the exported `name`, a `kind` of symbol ("factory") for the message, which
   // says that the library lacks it.
   Kel::Expected<void*> symbol(char const* kind, char const* name) const;

 private:
   DynamicLibrary(void* handle, std::string path, std::string role) noexcept;

   void* handle_;
   std::string path_;
   std::string role_;
};

// An object that a module's factory made, and the module, kept loaded until the object is gone.
template <typename Object>
struct ModuleObject {
   DynamicLibrary module;
   std::unique_ptr<Object> object;  // after the module, so destroyed before it
};

// Loads the module at `path` and makes its object with the factory exported as `name`; a module
// or factory that is missing is CommandError "failed". The module and the libraries it brings stay
// loaded to the end of the process: those keep allocations in their globals (libedit its terminal
// state, OpenSSL its tables), which unloading would leave unreachable, and the process ends soon
// after the command that needed them.
template <typename Factory, typename... Arguments>
auto makeFromModule(std::string const& path, std::string role, char const* name,
                    Arguments&&... arguments) {
   auto module =
       valueOr(DynamicLibrary::open(path, std::move(role), DynamicLibrary::Closing::keepsLoaded),
               ExitCode::failed);
   auto const factory =
       reinterpret_cast<Factory>(valueOr(module.symbol("factory", name), ExitCode::failed));
   // The factory returns a plain pointer, as a C function can; it is owned from here on.
   using Object = std::remove_pointer_t<std::invoke_result_t<Factory, Arguments...>>;
   std::unique_ptr<Object> object(factory(std::forward<Arguments>(arguments)...));
   return ModuleObject<Object>{std::move(module), std::move(object)};
}

}  // namespace tpcli
