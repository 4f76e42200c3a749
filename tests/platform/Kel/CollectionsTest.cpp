// The object model's collections and walks over collections that change while they are walked.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Kel/DenseArray.h"
#include "Kel/OrderedMap.h"
#include "Kel/RobustWalk.h"
#include "Kel/String.h"
#include "support/AllocationCounter.h"

namespace {

using IntMap = Kel::OrderedMap<int, Kel::String>;

struct WalkCase {
   char const* name;
   std::vector<int> initial;
   // What the visitor does to the map when it reaches a key.
   std::map<int, std::function<void(IntMap&)>> onVisit;
   std::vector<int> visited;
};

void insert(IntMap& map, int key) {
   map.insertOrAssign(key, Kel::String(std::to_string(key)));
}

std::vector<WalkCase> walkCases() {
   return {
       {"unchanged", {1, 2, 3}, {}, {1, 2, 3}},
       {"delete the current key", {1, 2, 3}, {{2, [](IntMap& m) { m.erase(2); }}}, {1, 2, 3}},
       {"delete the next key", {1, 2, 3, 4}, {{2, [](IntMap& m) { m.erase(3); }}}, {1, 2, 4}},
       {"insert behind the walk", {1, 2, 3}, {{2, [](IntMap& m) { insert(m, 0); }}}, {1, 2, 3}},
       {"insert ahead of the walk",
        {1, 2, 3},
        {{2, [](IntMap& m) { insert(m, 5); }}},
        {1, 2, 3, 5}},
       {"insert right after the current key",
        {10, 20, 30},
        {{20, [](IntMap& m) { insert(m, 25); }}},
        {10, 20, 25, 30}},
       {"delete everything", {1, 2, 3}, {{1, [](IntMap& m) { m.clear(); }}}, {1}},
       {"delete and recreate the current key",
        {1, 2, 3},
        {{2,
          [](IntMap& m) {
             m.erase(2);
             insert(m, 2);
          }}},
        {1, 2, 3}},
       {"changes at every step",
        {1, 3, 5, 7},
        {{1, [](IntMap& m) { insert(m, 2); }},
         {2, [](IntMap& m) { m.erase(3); }},
         {5,
          [](IntMap& m) {
             m.erase(1);
             insert(m, 6);
          }}},
        {1, 2, 5, 6, 7}},
   };
}

TEST(RobustWalk, VisitsEverySurvivingKeyOnceInOrder) {
   for (auto const& scenario : walkCases()) {
      IntMap map;
      for (int key : scenario.initial) {
         insert(map, key);
      }
      std::vector<int> visited;
      Kel::robustWalk(map, [&](int key, Kel::String const& value) {
         EXPECT_EQ(value, Kel::String(std::to_string(key))) << scenario.name;
         visited.push_back(key);
         if (auto action = scenario.onVisit.find(key); action != scenario.onVisit.end()) {
            action->second(map);
         }
      });
      EXPECT_EQ(visited, scenario.visited) << scenario.name;
   }
}

TEST(RobustWalk, WalksSetsToo) {
   Kel::OrderedSet<Kel::String> names;
   for (char const* name : {"b", "a", "d", "c"}) {
      names.insert(name);
   }
   std::vector<std::string> visited;
   Kel::robustWalk(names, [&](Kel::String const& name) {
      visited.push_back(name.stringValue());
      if (name == "b") {
         names.erase("c");
         names.insert("e");
      }
   });
   EXPECT_EQ(visited, (std::vector<std::string>{"a", "b", "d", "e"}));
}

TEST(OrderedMap, ChangeCountMovesOnInsertAndDeleteOnly) {
   IntMap map;
   EXPECT_EQ(map.changeCount(), 0u);
   insert(map, 1);
   insert(map, 1);  // replaces the value: not a change of membership
   EXPECT_EQ(map.changeCount(), 1u);
   map.getOrCreate(2);
   map.getOrCreate(2);
   EXPECT_EQ(map.changeCount(), 2u);
   EXPECT_FALSE(map.erase(7));
   EXPECT_EQ(map.changeCount(), 2u);
   EXPECT_TRUE(map.erase(1));
   EXPECT_EQ(map.changeCount(), 3u);
   map.clear();
   map.clear();
   EXPECT_EQ(map.changeCount(), 4u);
}

// The change count is kept with the first chunk of entries: it must survive that chunk emptying
// and the next one taking its place, and a copy must own its chunks.
TEST(OrderedMap, ChangeCountSurvivesTheFirstChunkEmptying) {
   IntMap map;
   for (int key = 0; key < 300; ++key) {
      insert(map, key);
   }
   IntMap const copy = map;
   for (int key = 0; key < 200; ++key) {
      map.erase(key);
   }
   EXPECT_EQ(map.changeCount(), 500u);
   EXPECT_EQ(map.size(), 100u);
   EXPECT_EQ(map.begin()->first, 200);
   EXPECT_EQ(copy.changeCount(), 300u);
   ASSERT_EQ(copy.size(), 300u);
   EXPECT_EQ(*copy.lookup(150), "150");
   map.clear();
   EXPECT_EQ(map.changeCount(), 501u);
   insert(map, 7);
   EXPECT_EQ(map.changeCount(), 502u);
}

// Ordered maps keep their entries in chunks; thousands of keys in every arrival order (appends,
// inserts in front, scrambled), then every third key erased, must read back exactly like a tree.
TEST(OrderedMap, AgreesWithATreeAcrossChunks) {
   constexpr int kKeys = 5000;
   struct Order {
      char const* name;
      std::function<int(int)> key;
   } const orders[] = {{"ascending", [](int i) { return i; }},
                       {"descending", [](int i) { return kKeys - i; }},
                       {"scrambled", [](int i) { return (i * 7919) % kKeys; }}};
   for (auto const& order : orders) {
      IntMap map;
      std::map<int, std::string> tree;
      for (int i = 0; i < kKeys; ++i) {
         insert(map, order.key(i));
         tree[order.key(i)] = std::to_string(order.key(i));
      }
      // Every key again, wherever it stands in its chunk: found, not added.
      auto const changeCount = map.changeCount();
      for (int i = 0; i < kKeys; ++i) {
         EXPECT_EQ(map.getOrCreate(order.key(i)), std::to_string(order.key(i))) << order.name;
      }
      EXPECT_EQ(map.changeCount(), changeCount) << order.name;
      for (int key = 0; key <= kKeys; key += 3) {
         EXPECT_EQ(map.erase(key), tree.erase(key) == 1) << order.name << " " << key;
      }
      ASSERT_EQ(map.size(), tree.size()) << order.name;
      auto expected = tree.begin();
      for (auto const& [key, value] : map) {
         ASSERT_EQ(key, expected->first) << order.name;
         EXPECT_EQ(value, expected->second) << order.name;
         ++expected;
      }
      for (int key = -1; key <= kKeys + 1; ++key) {
         auto const above = map.firstGreaterThan(key);
         auto const treeAbove = tree.upper_bound(key);
         ASSERT_EQ(above == map.end(), treeAbove == tree.end()) << order.name << " " << key;
         if (above != map.end()) {
            EXPECT_EQ(above->first, treeAbove->first) << order.name << " " << key;
         }
         EXPECT_EQ(map.contains(key), tree.contains(key)) << order.name << " " << key;
         // A probe of another type than the keys' (as a name's text is found among names).
         auto const like = map.findLike(std::int64_t{key});
         ASSERT_EQ(like != map.end(), tree.contains(key)) << order.name << " " << key;
         if (like != map.end()) {
            EXPECT_EQ(like->first, key) << order.name;
         }
      }
      for (auto position = map.begin(); position != map.end();) {
         position = map.erase(position);
      }
      EXPECT_TRUE(map.empty()) << order.name;
   }
}

// Sets of small keys against a std::set: each case fills a set in one order and drains it to
// empty in another, over several chunks, copying and moving it along the way. At every step the
// entries, the size and the change count (one per new key, one per erased key, never reset) must
// agree with the model's.
TEST(OrderedSet, AgreesWithAModelFromFirstInsertToEmpty) {
   using Key = std::uint16_t;
   using Set = Kel::OrderedSet<Key>;
   constexpr int kKeys = 700;
   using Order = std::function<Key(int)>;
   Order const ascending = [](int i) { return Key(i); };
   Order const descending = [](int i) { return Key(kKeys - 1 - i); };
   Order const scrambled = [](int i) { return Key(i * 389 % kKeys); };
   Order const outsideIn = [](int i) { return Key(i % 2 ? kKeys - 1 - i / 2 : i / 2); };
   Order const threeKeys = [](int i) { return Key(i % 3); };
   struct Case {
      char const* name;
      Order fill;
      Order drain;
   } const cases[] = {{"ascending, drained from the front", ascending, ascending},
                      {"ascending, drained from the back", ascending, descending},
                      {"descending, drained scrambled", descending, scrambled},
                      {"scrambled, drained outside in", scrambled, outsideIn},
                      {"three keys again and again", threeKeys, threeKeys}};
   for (auto const& scenario : cases) {
      Set set;
      std::set<Key> model;
      std::uint64_t changes = 0;
      auto const agree = [&](Set const& checked, char const* step, int i) {
         SCOPED_TRACE(testing::Message() << scenario.name << ", " << step << " " << i);
         EXPECT_EQ(checked.size(), model.size());
         EXPECT_TRUE(std::ranges::equal(checked, model));
         // A copy of an empty set is a new set, with no changes to count.
         EXPECT_EQ(checked.changeCount(), &checked != &set && model.empty() ? 0 : changes);
      };
      // A copy owns its chunks; a move hands them over whole.
      auto const copyAndMove = [&](char const* step, int i) {
         Set copy = set;
         agree(copy, step, i);
         Set moved = std::move(copy);
         agree(moved, step, i);
         Set assigned;
         assigned.insert(Key{9});
         assigned = std::move(moved);
         agree(assigned, step, i);
      };
      for (int i = 0; i < kKeys; ++i) {
         bool const inserted = set.insert(scenario.fill(i));
         EXPECT_EQ(inserted, model.insert(scenario.fill(i)).second);
         changes += inserted;
         agree(set, "fill", i);
      }
      copyAndMove("filled", 0);
      for (int i = 0; i < kKeys; ++i) {
         bool const erased = set.erase(scenario.drain(i));
         EXPECT_EQ(erased, model.erase(scenario.drain(i)) == 1);
         changes += erased;
         agree(set, "drain", i);
         if (i % 50 == 0) {
            copyAndMove("drain", i);
         }
      }
      EXPECT_TRUE(set.empty()) << scenario.name;
      set.insert(Key{7});
      model.insert(Key{7});
      agree(set, "insert into the drained set", ++changes);
      set.clear();
      model.clear();
      agree(set, "clear", ++changes);
   }
}

// Most collections of a rule hold one entry of a word or less: one allocation of the allocator's
// sixteen-byte class each.
TEST(OrderedSet, OneSmallEntryIsOneAllocationOfSixteenBytesAtMost) {
   auto const costOfOne = [](auto& set, auto key) {
      auto const allocations = testing_support::allocationCount();
      auto const bytes = testing_support::allocatedBytes();
      set.insert(key);
      return std::pair(testing_support::allocationCount() - allocations,
                       testing_support::allocatedBytes() - bytes);
   };
   Kel::OrderedSet<Kel::String> names;
   Kel::OrderedSet<std::uint8_t> options;
   Kel::OrderedSet<std::uint64_t> words;
   struct Case {
      char const* name;
      std::pair<std::uint64_t, std::uint64_t> cost;
   } const cases[] = {{"a short name", costOfOne(names, Kel::String("eth1"))},
                      {"a byte", costOfOne(options, std::uint8_t{7})},
                      {"a word", costOfOne(words, std::uint64_t{1} << 40)}};
   for (auto const& [name, cost] : cases) {
      EXPECT_EQ(cost.first, 1u) << name;
      EXPECT_LE(cost.second, 16u) << name;
   }
}

TEST(DenseArray, IterationSkipsEmptySlots) {
   Kel::DenseArray<Kel::String> rules;
   rules.set(7, "seventh");
   rules.set(0, "first");
   rules.set(3, "fourth");
   rules.set(3, "fourth again");
   rules.erase(0);
   EXPECT_FALSE(rules.erase(100));

   std::vector<std::pair<std::uint32_t, std::string>> seen;
   for (auto entry : rules) {
      seen.emplace_back(entry.index, entry.value.stringValue());
   }
   EXPECT_EQ(seen, (std::vector<std::pair<std::uint32_t, std::string>>{{3, "fourth again"},
                                                                       {7, "seventh"}}));
   EXPECT_EQ(rules.lookup(5), nullptr);
   rules.clear();
   EXPECT_EQ(rules.begin(), rules.end());
}

}  // namespace
