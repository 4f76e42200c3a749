// The formatting pieces every renderer shares: interface and VRF name lists, the counter
// granularity line and the names of DSCP and protocol numbers.
#include <gtest/gtest.h>

#include "Kel/Assert.h"
#include "TrafficPolicyCli/SharedFormatting.h"
#include "support/CapturedOutput.h"

namespace {

using PolicyMap::ClassMapMatchOption;
using testing_support::parseJson;
using testing_support::render;
using vellum::OutputFormat_t;

struct Rendered {
   std::string text;
   nlohmann::json json;
};

Rendered renderBoth(std::function<void(vellum::RendererV2&)> const& calls) {
   return {render(OutputFormat_t::text, calls), parseJson(render(OutputFormat_t::json, calls))};
}

TEST(SharedFormatting, NameListsShowThreeNamesUnlessAllAreAsked) {
   struct Case {
      int names;
      bool showAll;
      bool printText;
      char const* text;
   };
   Case const cases[] = {
       {0, false, true, "   Applied: \n"},
       {3, false, true, "   Applied: Et1, Et2, Et3\n"},
       {4, false, true, "   Applied: Et1, Et2, Et3, ...\n"},
       {5, true, true, "   Applied: Et1, Et2, Et3, Et4, Et5\n"},
       {5, false, false, ""},
   };
   for (auto const& row : cases) {
      SCOPED_TRACE(testing::Message() << row.names << " names, showAll " << row.showAll
                                      << ", printText " << row.printText);
      Kel::OrderedMap<Kel::String, bool> names;
      auto expectedJson = nlohmann::json::array();
      for (int i = row.names; i > 0; --i) {
         names.insertOrAssign("Et" + std::to_string(i), true);
         expectedJson.insert(expectedJson.begin(), "Et" + std::to_string(i));
      }
      auto const rendered = renderBoth([&](vellum::RendererV2& renderer) {
         TrafficPolicyCli::renderListEntry(renderer, "Applied: ", "applied", names, row.showAll,
                                           row.printText);
      });
      EXPECT_EQ(rendered.text, row.text);
      EXPECT_EQ(rendered.json, nlohmann::json({{"applied", expectedJson}}));
   }
}

TEST(SharedFormatting, CounterGranularityPerDirection) {
   struct Case {
      std::uint8_t granularity;
      bool ingress;
      char const* text;
      char const* json;
   };
   Case const cases[] = {
       {0, true, "Counter granularity: counter not enabled\n", "{}"},
       {1, true, "Counter granularity: per-policy\n",
        R"({"ingressCounterGranularity": "per-policy"})"},
       {2, false, "Counter granularity: per-interface\n",
        R"({"egressCounterGranularity": "per-interface"})"},
       {7, true, "", "{}"},
   };
   for (auto const& row : cases) {
      SCOPED_TRACE(testing::Message() << int{row.granularity} << ", ingress " << row.ingress);
      auto status = Kel::make<TrafficPolicy::TrafficPolicyIntfParamStatus>();
      status->ingressCounterGranularityIs(row.ingress ? row.granularity : 0);
      status->egressCounterGranularityIs(row.ingress ? 0 : row.granularity);
      auto const rendered = renderBoth([&](vellum::RendererV2& renderer) {
         TrafficPolicyCli::renderCounterGranularity(renderer, status, row.ingress);
      });
      EXPECT_EQ(rendered.text, row.text);
      EXPECT_EQ(rendered.json, nlohmann::json::parse(row.json));
   }
   auto const none = renderBoth([](vellum::RendererV2& renderer) {
      TrafficPolicyCli::renderCounterGranularity(renderer, nullptr, true);
   });
   EXPECT_EQ(none.text, "");
}

TEST(SharedFormatting, NamesOfNumbersPerFieldAndFamily) {
   struct Case {
      char const* field;
      std::uint32_t value;
      ClassMapMatchOption option;
      char const* name;
   };
   Case const cases[] = {
       {"Protocol", 6, ClassMapMatchOption::ipv4, "tcp"},
       {"Protocol", 1, ClassMapMatchOption::ipv4, "icmp"},
       {"Protocol", 1, ClassMapMatchOption::ipv6, ""},
       {"Protocol", 58, ClassMapMatchOption::ipv6, "icmpv6"},
       {"Protocol", 253, ClassMapMatchOption::ipv4, ""},
       {"DSCP", 46, ClassMapMatchOption::mac, "ef"},
       {"TTL", 6, ClassMapMatchOption::ipv4, ""},
   };
   for (auto const& row : cases) {
      SCOPED_TRACE(testing::Message() << row.field << " " << row.value);
      EXPECT_EQ(TrafficPolicyCli::numericalValueToStrFor(row.field, row.value, row.option),
                row.name);
   }
   auto const previous = Kel::assertHandlerIs(&Kel::throwingAssertHandler);
   try {
      TrafficPolicyCli::numericalValueToStrFor("Protocol", 6, ClassMapMatchOption::mpls);
      ADD_FAILURE() << "no assertion";
   } catch (Kel::AssertionError const& error) {
      EXPECT_EQ(error.expression(), "false && \"Unrecognized match option\"");
      EXPECT_EQ(error.function(), "numericalValueToStrFor");
   }
   Kel::assertHandlerIs(previous);
}

}  // namespace
