// Loading a generated state of about 100 MB: the whole loader (read, parse, walk, entities; the
// release of the entities afterwards is not timed), the same with the field sets' prefixes out of
// order, and for the split, simdjson's parse alone and nlohmann's parse of the same text as the
// yardstick simdjson was chosen over. Each state is generated once per run, by the scale-state
// generator, into a temporary folder removed at exit; peak RSS is reported after the first load.
#include <benchmark/benchmark.h>
#include <simdjson.h>
#include <sys/resource.h>

#include <nlohmann/json.hpp>
#include <string>

#include "GeneratedState.h"
#include "StateLoader/Loader.h"

namespace {

// 200 policies x 100 rules, 2000 interfaces, 50 field sets of 103,000 prefixes: about 100 MB.
constexpr char const* kScale =
    " --policies 200 --rules 100 --interfaces 2000 --prefix-sets 50 --prefixes 103000";

using bench::GeneratedState;

GeneratedState const& sortedState() {
   static GeneratedState const state(kScale);
   return state;
}

GeneratedState const& unsortedState() {
   static GeneratedState const state(std::string(kScale) + " --unsorted-prefixes");
   return state;
}

double megabytes(std::size_t bytes) {
   return static_cast<double>(bytes) / (1 << 20);
}

double peakRssMegabytes() {
   rusage usage{};
   ::getrusage(RUSAGE_SELF, &usage);
   return static_cast<double>(usage.ru_maxrss) / 1024;
}

void reportSize(benchmark::State& state, std::size_t bytes) {
   state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
   state.counters["fileMB"] = megabytes(bytes);
}

void loadRepeatedly(benchmark::State& state, GeneratedState const& generated) {
   for (auto _ : state) {
      auto loaded = StateLoader::loadState(generated.path());
      if (!loaded) {
         state.SkipWithError(loaded.reason().c_str());
         return;
      }
      state.PauseTiming();
      loaded = Kel::Failure{};
      state.ResumeTiming();
   }
   reportSize(state, generated.size());
}

void BM_LoadState(benchmark::State& state) {
   loadRepeatedly(state, sortedState());
   state.counters["peakRssMB"] = peakRssMegabytes();
}
BENCHMARK(BM_LoadState)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_LoadStateUnsortedPrefixes(benchmark::State& state) {
   loadRepeatedly(state, unsortedState());
}
BENCHMARK(BM_LoadStateUnsortedPrefixes)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SimdjsonParseOnly(benchmark::State& state) {
   simdjson::padded_string const text(sortedState().text());
   simdjson::dom::parser parser;
   for (auto _ : state) {
      auto const parsed = parser.parse(text);
      if (parsed.error() != simdjson::SUCCESS) {
         state.SkipWithError(simdjson::error_message(parsed.error()));
         return;
      }
      benchmark::DoNotOptimize(parsed.value_unsafe());
   }
   reportSize(state, text.size());
}
BENCHMARK(BM_SimdjsonParseOnly)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_NlohmannParseOnly(benchmark::State& state) {
   auto const text = sortedState().text();
   for (auto _ : state) {
      auto const document = nlohmann::json::parse(text);
      benchmark::DoNotOptimize(document.size());
   }
   reportSize(state, text.size());
}
BENCHMARK(BM_NlohmannParseOnly)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
