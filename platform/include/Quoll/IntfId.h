// Quoll::IntfId identifies an interface by its name ("Ethernet1", "Vlan10"). Records keep the
// name's string form, and every listing of interfaces sorts them, so the id orders and compares by
// name. Names from users and state files go through `parse`, which refuses names a command line
// could not show or read back: empty ones, and ones with blanks or control characters.
#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string_view>
#include <utility>

#include "Kel/Expected.h"
#include "Kel/String.h"

namespace Kel {
class Value;
}

namespace Quoll {

class IntfId {
 public:
   IntfId() = default;
   // Trusted names from code; text from outside goes through parse.
   explicit IntfId(Kel::String name) : name_(std::move(name)) {}

   static Kel::Expected<IntfId> parse(std::string_view text);

   Kel::String const& name() const noexcept { return name_; }
   Kel::String const& stringValue() const noexcept { return name_; }

   friend bool operator==(IntfId const&, IntfId const&) = default;
   friend std::strong_ordering operator<=>(IntfId const&, IntfId const&) = default;

 private:
   Kel::String name_;
};

std::ostream& operator<<(std::ostream& stream, IntfId const& intf);
Kel::Value toValue(IntfId const& intf);

}  // namespace Quoll

template <>
struct std::hash<Quoll::IntfId> {
   std::size_t operator()(Quoll::IntfId const& intf) const noexcept {
      return std::hash<Kel::String>{}(intf.name());
   }
};
