// The show library, loaded at run time with dlopen and reached only through the factories it
// exports by name, as a device CLI loads it. The show objects it makes run its code, so they must
// all be gone before the library is unloaded: keep it alive for the whole command.
#pragma once

#include <string>

#include "Kel/Expected.h"
#include "tpcli/FactoryTable.h"

namespace tpcli {

class ShowLibrary {
 public:
   // On failure the reason names the path and what the dynamic loader said.
   static Kel::Expected<ShowLibrary> open(std::string const& path);

   ShowLibrary(ShowLibrary&& other) noexcept;
   ShowLibrary& operator=(ShowLibrary&& other) noexcept;
   ShowLibrary(ShowLibrary const&) = delete;
   ShowLibrary& operator=(ShowLibrary const&) = delete;
   ~ShowLibrary();

   FactoryTable const& factories() const noexcept { return factories_; }

 private:
   explicit ShowLibrary(void* handle) noexcept : handle_(handle) {}

   void* handle_;
   FactoryTable factories_;
};

}  // namespace tpcli
