// The counter readers remember where they found the last counter of a policy. (That each reader
// answers from its own store shows in the golden states of both kinds.)
#include <gtest/gtest.h>

#include <functional>

#include "PolicyMap/CounterStatusReader.h"

namespace {

using PolicyMap::PacketDataStatus;
using PolicyMap::PolicyMapSmKey;

Kel::Ptr<PacketDataStatus const> data(char const* name, std::uint64_t packets) {
   auto status = Kel::make<PacketDataStatus>(name, 7);
   status->countIs({packets, packets * 100});
   return status;
}

void fill(PolicyMap::PolicyMapStatus& counters) {
   counters.classCounter().insertOrAssign("r1", data("r1", 5));
   counters.classCounter().insertOrAssign("r2", data("r2", 6));
   counters.namedCounter().insertOrAssign("c1", data("c1", 9));
}

// Readers remember where they found the last counter of a policy; a sequence of lookups in and out
// of order, between and around the counters, with the policy's counters changing between two of
// them, must still find each one and only those.
TEST(CounterStatusReader, LookupsInAnyOrderAcrossChanges) {
   auto policy = Kel::make<PolicyMap::PolicyMapStatus>("p1");
   fill(*policy);
   auto typeStatus = Kel::make<PolicyMap::PolicyMapTypeStatus>();
   typeStatus->policyMapStatus().insertOrAssign("p1", policy);
   PolicyMap::PolicyMapLedgerCounterStatusReader const reader(typeStatus);
   PolicyMapSmKey const key{"p1", ""};
   struct Step {
      char const* name;
      std::uint64_t packets;  // 0: not found
      std::function<void()> change;
   } const steps[] = {
       {"r0", 0, nullptr},
       {"r1", 5, nullptr},
       {"r12", 0, nullptr},
       {"r2", 6, [&] { policy->classCounter().insertOrAssign("r15", data("r15", 8)); }},
       {"r2", 6, nullptr},
       {"r1", 5, nullptr},
       {"r15", 8, [&] { policy->classCounter().erase("r2"); }},
       {"r2", 0, nullptr},
       {"r3", 0, nullptr},
       {"r15", 8, nullptr},
   };
   for (auto const& step : steps) {
      auto const found = reader.classCounterData(key, step.name);
      EXPECT_EQ(found ? found->pkts() : 0, step.packets) << step.name;
      if (step.change) {
         step.change();
      }
   }
}

}  // namespace
