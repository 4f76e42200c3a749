// Built against an unpacked package's headers and platform library, once through pkg-config and
// once through find_package: prints a string of the object model and a prefix in its text form.
#include <cstdio>

#include "Kel/String.h"
#include "Quoll/IpGenPrefix.h"

int main() {
   auto const prefix = Quoll::IpGenPrefix::parse("10.0.0.0/8");
   Kel::String const name("hello");
   if (!prefix) {
      return 1;
   }
   std::printf("%s %s\n", std::string(name.view()).c_str(), prefix->stringValue().c_str());
   return 0;
}
