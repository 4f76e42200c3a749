// The name hash picks table slots by its low bits: a name that differs from another in any one
// byte hashes otherwise, and the names of a large policy spread over a table as random keys would.
#include <gtest/gtest.h>

#include <string>
#include <unordered_set>

#include "Kel/NameHash.h"

namespace {

TEST(NameHash, AnyOneByteChangedChangesTheHash) {
   for (std::size_t length = 0; length <= 24; ++length) {
      std::string const base(length, 'm');
      // A longer name differs from its prefix, even where it goes on with a zero byte.
      EXPECT_NE(Kel::nameHash(base), Kel::nameHash(base + '\0')) << "length " << length;
      for (std::size_t place = 0; place < length; ++place) {
         for (char const changed : {'\0', 'n', '\x80', '\xff'}) {
            std::string other = base;
            other[place] = changed;
            EXPECT_NE(Kel::nameHash(base), Kel::nameHash(other))
                << "length " << length << ", byte " << place << " set to " << int(changed);
         }
      }
   }
}

TEST(NameHash, NamesOfAPolicySpreadOverTheLowBits) {
   // 100,000 names in a table of 2^18 slots, the size a policy of that many rules gets: random
   // keys would fill about 83,000 slots at their first probe.
   constexpr std::size_t kNames = 100'000;
   constexpr std::size_t kMask = (std::size_t{1} << 18) - 1;
   struct Form {
      char const* what;
      std::string (*name)(std::size_t);
   };
   Form const forms[] = {
       {"rule-N", [](std::size_t n) { return "rule-" + std::to_string(n); }},
       {"N", [](std::size_t n) { return std::to_string(n); }},
       {"a long common prefix, then N",
        [](std::size_t n) { return "ingress-classification-rule-" + std::to_string(n); }},
       {"N, then a common suffix", [](std::size_t n) { return std::to_string(n) + "-deny-all"; }},
   };
   for (auto const& form : forms) {
      std::unordered_set<std::size_t> slots;
      for (std::size_t n = 0; n < kNames; ++n) {
         slots.insert(Kel::nameHash(form.name(n)) & kMask);
      }
      EXPECT_GT(slots.size(), 80'000U) << form.what;
   }
}

}  // namespace
