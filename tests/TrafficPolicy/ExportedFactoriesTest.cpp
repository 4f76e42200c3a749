// The one exported factory that tpcli never calls: its object, given the lab device, stops on a
// named assertion rather than crash. (The others run in every golden case and every clear.)
#include <gtest/gtest.h>

#include <filesystem>

#include "StateLoader/Loader.h"
#include "TrafficPolicyCli/Factories.h"
#include "support/CapturedAssertion.h"
#include "support/CapturedOutput.h"

namespace {

TEST(ExportedFactories, BaseObjectStopsOnTheNamedAssertionOncePoliciesAreCached) {
   auto const lab =
       StateLoader::loadState((std::filesystem::path(EXAMPLES_DIR) / "lab.json").string());
   ASSERT_TRUE(lab) << lab.reason();
   auto const& s = *lab;
   auto const base = TrafficPolicyCli::showTrafficPolicyBaseFactory(
       s.config, s.interfaceInput.status, s.interfaceInput.counter, "", false, false, false, false,
       false, s.fieldSetConfig, s.hwStatus, s.interfaceInput.counterTable);
   testing_support::MemoryFile file;
   EXPECT_EQ(testing_support::failedAssertion([&] {
                base->render(static_cast<std::uint32_t>(file.fd()),
                             static_cast<std::uint32_t>(vellum::OutputFormat_t::text), 2);
             }),
             "record && \"only the interface and CPU show objects make policy records\"");
}

}  // namespace
