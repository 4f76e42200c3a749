// The show library, loaded at run time with dlopen and reached only through the factories it
// exports by name, as a device CLI loads it. The show objects it makes run its code, so they must
// all be gone before the library is unloaded: keep it alive for the whole command.
#pragma once

#include <string>
#include <utility>

#include "Kel/Expected.h"
#include "tpcli/DynamicLibrary.h"
#include "tpcli/FactoryTable.h"

namespace tpcli {

class ShowLibrary {
 public:
   // On failure the reason names the path and what the dynamic loader said.
   static Kel::Expected<ShowLibrary> open(std::string const& path);

   FactoryTable const& factories() const noexcept { return factories_; }

 private:
   explicit ShowLibrary(DynamicLibrary library) noexcept : library_(std::move(library)) {}

   DynamicLibrary library_;
   FactoryTable factories_;
};

}  // namespace tpcli
