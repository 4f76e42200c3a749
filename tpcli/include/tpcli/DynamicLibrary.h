// A shared library loaded at run time with dlopen, closed with its owner, and reached only through
// the symbols it exports by name: the show library, and the HTTP server that only `metrics
// --listen` needs. Code of the library runs in objects it made, so those must be gone first.
#pragma once

#include <string>

#include "Kel/Expected.h"

namespace tpcli {

class DynamicLibrary {
 public:
   // `role` names the library in messages ("the show library"). On failure the reason names the
   // role, the path and what the dynamic loader said.
   static Kel::Expected<DynamicLibrary> open(std::string const& path, std::string role);

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

}  // namespace tpcli
