// Rendering a rule allocates nothing once the output buffer exists, whatever it holds: names,
// prefixes, field sets, protocols with ports and flags, and counted actions.
#include <gtest/gtest.h>

#include "support/AllocationCounter.h"
#include "support/CapturedOutput.h"
#include "support/RenderedRules.h"

namespace {

TEST(RenderingAllocation, NoAllocationPerRule) {
   auto const state = rendering_test::ruleState({
       .match = R"({"vlanTags": [{"vlanFieldSets": ["guest"]}], "sources": ["10.0.0.0/8"],
                    "destinationPrefixSets": ["fs1", "undefined-set"],
                    "protocols": {"6": {"tcpFlags": [{"syn": true}],
                                        "ports": [{"destinations": ["443"],
                                                   "sourceFieldSets": ["web"]}]},
                                  "1": {"icmpTypes": {"8": []}}},
                    "dscps": ["46", "1-3"], "fragment": {"all": true},
                    "encapsulation": {"type": "gtpv1", "inner": {"addressFamily": "ipv4",
                                      "sources": ["10.1.0.0/16"]}}})",
       .actions = R"({"drop": true, "count": {"counter": "c1"}, "goto": {"match": "r2"},
                      "redirectNexthopGroups": ["g1", "g2", "g3", "g4", "g5"]})",
       .policyStatus = R"("namedCounters": {"c1": {"instanceId": 2, "packets": 40}})",
   });
   auto const [show, record] = rendering_test::cachePolicyOf(state);
   for (auto format : {vellum::OutputFormat_t::text, vellum::OutputFormat_t::json}) {
      testing_support::MemoryFile file;
      vellum::VellumBuffer buffer(file.fd(), 1048576, 1);
      vellum::RendererV2 renderer(format, &buffer, true);
      // Structured bindings are named in init-captures: clang 14 cannot capture them.
      auto const renderRound = [&, &show = show, &record = record] {
         show->renderRules(&renderer, record, 6);
      };
      renderer._startJsonList("rules");
      renderRound();  // builds what is made once per process (the number-name maps)
      auto const before = testing_support::allocationCount();
      for (int round = 0; round < 1000; ++round) {
         renderRound();
      }
      renderer.endJsonList();
      buffer.flush();
      EXPECT_EQ(testing_support::allocationCount() - before, 0u)
          << "format " << static_cast<int>(format);
   }
}

}  // namespace
