// The name maps: the names show commands print, and the tables' own sanity
// (numbers within their field, no name given twice), which is where a typo would hide.
#include <gtest/gtest.h>

#include <set>
#include <string_view>

#include "Acl/AclNameMaps.h"

namespace Acl {
namespace {

enum class Map { dscp, ipProto, ip6Proto };

struct NameCase {
   Map map;
   std::uint32_t number;
   std::string_view name;  // empty when the number has none
};

constexpr NameCase kNameCases[] = {
    {Map::dscp, 0, "cs0"},       {Map::dscp, 10, "af11"},       {Map::dscp, 38, "af43"},
    {Map::dscp, 46, "ef"},       {Map::dscp, 56, "cs7"},        {Map::dscp, 47, ""},
    {Map::dscp, 64, ""},         {Map::ipProto, 1, "icmp"},     {Map::ipProto, 6, "tcp"},
    {Map::ipProto, 17, "udp"},   {Map::ipProto, 132, "sctp"},   {Map::ipProto, 58, ""},
    {Map::ipProto, 255, ""},     {Map::ip6Proto, 58, "icmpv6"}, {Map::ip6Proto, 6, "tcp"},
    {Map::ip6Proto, 103, "pim"}, {Map::ip6Proto, 1, ""},        {Map::ip6Proto, 2, ""},
};

Kel::String nameOf(Map map, std::uint32_t number) {
   auto const maps = AclNameMaps::instance();
   switch (map) {
      case Map::dscp:
         return maps->dscpName(number);
      case Map::ipProto:
         return maps->ipProtoName(number);
      case Map::ip6Proto:
         return maps->ip6ProtoName(number);
   }
   return {};
}

TEST(AclNameMaps, NamesKnownNumbersAndNothingElse) {
   for (auto const& row : kNameCases) {
      EXPECT_EQ(nameOf(row.map, row.number).view(), row.name)
          << "map " << static_cast<int>(row.map) << ", number " << row.number;
   }
}

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
