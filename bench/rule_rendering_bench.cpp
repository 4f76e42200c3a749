// Rule rendering cost per rule, in text and JSON: one policy of many rules, each with addresses,
// a field set, two protocols with ports and TCP flags, DSCP and three actions (one a count),
// loaded from a state text, cached once and rendered to /dev/null.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "StateLoader/Loader.h"
#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"
#include "vellum/Renderer.h"

namespace {

std::string stateOf(std::uint32_t rules) {
   std::string policy, status, counters;
   for (std::uint32_t rule = 0; rule < rules; ++rule) {
      auto const name = "r" + std::to_string(rule);
      auto const octet = std::to_string(rule % 256);
      policy += (rule ? ", \"" : "\"") + name + R"(": {"sequence": )" + std::to_string(rule) +
                R"(, "match": {"ipv4": {"sources": ["10.)" + octet + R"(.0.0/16", "10.)" + octet +
                R"(.1.0/24"], "destinationPrefixSets": ["fs1"], "protocols": {"6": {"ports":
                [{"destinations": ["443", "8000-8080"]}], "tcpFlags": [{"syn": true}]}, "17": {}},
                "dscps": ["46"]}}, "actions": {"drop": true, "count": {}, "setDscp": 10}})";
      status += (rule ? ", \"" : "\"") + name + R"(": ["ipv4"])";
      counters += (rule ? ", \"" : "\"") + name + R"(": {"instanceId": 1, "packets": 12345})";
   }
   return R"({"fieldSets": {"ipv4Prefix": {"fs1": {"prefixes": ["192.0.2.0/24"]}}},
             "trafficPolicies": {"p": {"rules": {)" +
          policy + R"(}}}, "status": {"cpu": {"policies": {"p": {"rules": {)" + status +
          R"(}, "ruleCounters": {)" + counters + "}}}}}}";
}

StateLoader::DeviceState load(std::string const& text) {
   auto const path = std::filesystem::temp_directory_path() /
                     ("rule-rendering-bench-" + std::to_string(::getpid()) + ".json");
   std::ofstream(path) << text;
   auto loaded = StateLoader::loadState(path.string());
   std::filesystem::remove(path);
   if (!loaded) {
      throw std::runtime_error(loaded.reason());
   }
   return std::move(loaded).value();
}

void BM_RenderRules(benchmark::State& state) {
   auto const rules = static_cast<std::uint32_t>(state.range(0));
   auto const format = static_cast<vellum::OutputFormat_t>(state.range(1));
   auto const device = load(stateOf(rules));
   auto const show = Kel::make<TrafficPolicyCli::ShowTrafficPolicyCpu>(
       device.config, device.cpu.status, device.cpu.counter, Kel::String(), false, false, true,
       false, false, device.fieldSetConfig, device.hwStatus, device.cpu.counterTable,
       device.vrfConfig, device.allVrfConfig, device.l3IntfStatusDir);
   show->cacheState();
   auto const record = show->policyState("p");
   int const devNull = ::open("/dev/null", O_WRONLY);
   for (auto _ : state) {
      vellum::VellumBuffer buffer(devNull, 1048576, 1);
      vellum::RendererV2 renderer(format, &buffer, true);
      renderer._startJsonList("rules");
      show->renderRules(&renderer, record, 6);
      renderer.endJsonList();
   }
   ::close(devNull);
   auto const rendered = static_cast<double>(state.iterations()) * rules;
   state.SetItemsProcessed(static_cast<std::int64_t>(rendered));
   state.counters["ns_per_rule"] =
       benchmark::Counter(rendered, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_RenderRules)
    ->ArgsProduct({{1'000, 10'000, 30'000}, {1, 2}})
    ->ArgNames({"rules", "format"})
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
