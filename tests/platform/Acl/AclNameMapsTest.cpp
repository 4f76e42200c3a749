// The name maps' own sanity (numbers within their field, no name given twice), which is where a
// typo would hide. The names themselves show in the golden outputs.
#include <gtest/gtest.h>

#include <set>

#include "Acl/AclNameMaps.h"

namespace Acl {
namespace {

TEST(AclNameMaps, TablesStayWithinTheirFieldsAndNameEachNumberOnce) {
   struct Table {
      char const* what;
      AclNameMaps::NameMap const& map;
      std::uint32_t limit;
   };
   auto const maps = AclNameMaps::instance();
   for (auto const& [what, map, limit] :
        {Table{"dscp", maps->dscp(), 64}, Table{"ipProto", maps->ipProto(), 256},
         Table{"ip6Proto", maps->ip6Proto(), 256}}) {
      std::set<Kel::String> names;
      for (auto const& [number, name] : map) {
         EXPECT_LT(number, limit) << what << " " << name.view();
         EXPECT_FALSE(name.empty()) << what << " " << number;
         EXPECT_TRUE(names.insert(name).second) << what << " names twice: " << name.view();
      }
   }
   EXPECT_EQ(maps->dscp().size(), 21u);
}

}  // namespace
}  // namespace Acl
