// Caching cost per rule: policies of 100 rules each (every rule with a status, a match and a
// count action, every policy with live counters), cached by the interface show object. Run at
// 10k, 100k and 1M rules to show that the cost per rule stays flat, with the state left in the
// caches between commands and with every command starting from memory; and one policy of 100k
// rules, whose rule names, as in most configurations, do not sort in sequence order.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"

namespace {

struct ScaleDevice {
   Kel::Ptr<TrafficPolicy::TrafficPolicyConfig> config =
       Kel::make<TrafficPolicy::TrafficPolicyConfig>();
   Kel::Ptr<TrafficPolicy::Status> status = Kel::make<TrafficPolicy::Status>();
   Kel::Ptr<Classification::FieldSetConfig> fieldSets = Kel::make<Classification::FieldSetConfig>();
   Kel::Ptr<TrafficPolicy::HwStatus> hardware = Kel::make<TrafficPolicy::HwStatus>();
};

Kel::Ptr<Classification::StructuredFilter const> filterFor(std::uint32_t rule) {
   auto filter = Kel::make<Classification::StructuredFilter>();
   auto const address = Quoll::IpAddr::v4(0x0A000000u | (rule << 8));
   filter->sources().insert(Quoll::IpGenPrefix(address, 24));
   return filter;
}

void addPolicy(ScaleDevice& device, std::string const& policy, std::uint32_t rules) {
   auto sub = Kel::make<PolicyMap::PolicyMapSubConfig>(policy);
   auto pmapStatus = Kel::make<PolicyMap::PolicyMapStatus>(policy);
   sub->namedCounter().insert("total");
   for (std::uint32_t rule = 0; rule < rules; ++rule) {
      Kel::String const name("rule" + std::to_string(rule));
      sub->rule().insertOrAssign(rule * 10, name);
      auto match = Kel::make<PolicyMap::ClassMapMatch>(PolicyMap::ClassMapMatchOption::ipv4);
      match->structuredFilterIs(filterFor(rule));
      auto classMap = Kel::make<PolicyMap::ClassMapConfig>(name);
      classMap->match().insertOrAssign(PolicyMap::ClassMapMatchOption::ipv4, match);
      sub->classMap().insertOrAssign(name, classMap);
      auto actions = Kel::make<PolicyMap::ClassAction>(name);
      actions->policyAction().insertOrAssign(PolicyMap::ActionType::count,
                                             Kel::make<PolicyMap::CountAction>(Kel::String()));
      sub->classAction().insertOrAssign(name, actions);

      auto cmapStatus = Kel::make<PolicyMap::ClassMapStatus>(name);
      cmapStatus->matchs().insert(PolicyMap::ClassMapMatchOption::ipv4);
      pmapStatus->classMapStatus().insertOrAssign(name, cmapStatus);
      pmapStatus->classCounter().insertOrAssign(name,
                                                Kel::make<PolicyMap::PacketDataStatus>(name, 1));
   }
   pmapStatus->namedCounter().insertOrAssign("total",
                                             Kel::make<PolicyMap::PacketDataStatus>("total", 1));
   auto pmap = Kel::make<PolicyMap::PolicyMapConfig>(policy);
   pmap->currCfgIs(sub);
   device.config->policyMapConfig().insertOrAssign(policy, pmap);
   device.status->policyMapStatus().insertOrAssign(policy, pmapStatus);
}

// Whether each command starts with the state out of the caches, as on a device, where the agents
// wrote it and the command's process has not read it yet.
enum class Caches : bool { warm, cold };

// Writes a buffer twice the size of the last-level cache, which pushes the state out of it.
void evictCaches() {
   constexpr std::size_t kSweepBytes = std::size_t{64} << 20;
   static std::vector<std::uint64_t> sweep(kSweepBytes / sizeof(std::uint64_t));
   for (auto& word : sweep) {
      ++word;
   }
   benchmark::ClobberMemory();
}

void BM_CachePolicies(benchmark::State& state, Caches caches) {
   auto const totalRules = static_cast<std::uint32_t>(state.range(0));
   auto const rulesPerPolicy = static_cast<std::uint32_t>(state.range(1));
   ScaleDevice device;
   for (std::uint32_t policy = 0; policy < totalRules / rulesPerPolicy; ++policy) {
      addPolicy(device, "policy" + std::to_string(policy), rulesPerPolicy);
   }
   for (auto _ : state) {
      state.PauseTiming();
      if (caches == Caches::cold) {
         evictCaches();
      }
      state.ResumeTiming();
      auto show = Kel::make<TrafficPolicyCli::ShowTrafficPolicyInterface>(
          device.config, device.status, nullptr, Kel::String(), false, false, false, false, false,
          device.fieldSets, device.hardware, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
          nullptr, false, false);
      show->cacheFieldSetState();
      show->cachePoliciesState();
      benchmark::DoNotOptimize(show->policyState().size());
      state.PauseTiming();
      show.reset();  // releasing the records is not part of caching
      state.ResumeTiming();
   }
   state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * totalRules);
   state.counters["ns_per_rule"] =
       benchmark::Counter(static_cast<double>(state.iterations()) * totalRules,
                          benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
// Arguments: rules in all, rules per policy.
BENCHMARK_CAPTURE(BM_CachePolicies, warm, Caches::warm)
    ->Args({10'000, 100})
    ->Args({100'000, 100})
    ->Args({1'000'000, 100})
    ->Args({100'000, 100'000})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_CachePolicies, cold, Caches::cold)
    ->Args({10'000, 100})
    ->Args({100'000, 100})
    ->Args({1'000'000, 100})
    ->Args({100'000, 100'000})
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
