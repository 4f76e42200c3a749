// A field set's entry is found among the sets of its own kind only, and a set deleted after it was
// found is not found again: the entries found are kept between lookups, never past a deletion.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "TrafficPolicyCli/FieldSetState.h"

namespace {

using TrafficPolicyCli::FieldSetState;

TEST(FieldSetStateTest, EntriesFoundByKindAndForgottenWhenDeleted) {
   struct Case {
      char const* what;
      std::function<void(FieldSetState&)> change;  // after every name was looked up once
      bool ipv4;                                   // "a" among the IPv4 prefix sets
      bool ipv6;                                   // "b" among the IPv6 prefix sets
      bool l4Port;                                 // "a" among the L4-port sets
   };
   Case const cases[] = {
       {"nothing deleted", [](FieldSetState&) {}, true, true, false},
       {"one deleted", [](FieldSetState& usage) { usage.ipPrefixFieldSetDel("a"); }, false, true,
        false},
       {"a kind emptied", [](FieldSetState& usage) { usage.ipv6PrefixFieldSetDelAll(); }, true,
        false, false},
   };
   for (auto const& row : cases) {
      SCOPED_TRACE(row.what);
      auto const usage = TrafficPolicyCli::fieldSetStateFactory("");
      usage->ipPrefixFieldSetIs("a");
      usage->ipv6PrefixFieldSetIs("b");
      usage->vlanFieldSetIs("a");
      auto const found = [&] {
         return std::array{usage->definedEntry(usage->ipPrefixFieldSet(), "a") != nullptr,
                           usage->definedEntry(usage->ipv6PrefixFieldSet(), "b") != nullptr,
                           usage->definedEntry(usage->l4PortFieldSet(), "a") != nullptr};
      };
      EXPECT_EQ(found(), (std::array{true, true, false}));
      row.change(*usage);
      EXPECT_EQ(found(), (std::array{row.ipv4, row.ipv6, row.l4Port}));
   }
}

}  // namespace
