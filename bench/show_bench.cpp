// The show commands end to end, as a user runs them: tpcli starts, loads a generated state of
// 1,000 policies x 100 rules, caches and renders `show traffic-policy interface` in text or JSON
// into /dev/null. Reported as rules shown per second (each rule is shown once per run). The rules
// are typical ones (two source prefixes, a destination field set, TCP with ports and flags, UDP,
// a DSCP value, a count and a DSCP action); the device has 100 interfaces and ten small field
// sets, so that the figure is about policies, not about field-set contents.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "GeneratedState.h"

extern char** environ;

namespace {

constexpr std::int64_t kPolicies = 1000;
constexpr std::int64_t kRulesPerPolicy = 100;

bench::GeneratedState const& scaleState() {
   static bench::GeneratedState const state(
       " --policies " + std::to_string(kPolicies) + " --rules " + std::to_string(kRulesPerPolicy) +
       " --rule-prefixes 2 --interfaces 100 --prefix-sets 10 --prefixes 100");
   return state;
}

// Runs tpcli with its standard output on /dev/null; false when it does not exit 0.
bool runTpcli(std::vector<std::string> arguments) {
   arguments.insert(arguments.begin(), {TPCLI_EXECUTABLE, "--library", SHOW_LIBRARY, "--no-pager",
                                        "-s", scaleState().path()});
   std::vector<char*> argv;
   for (auto& argument : arguments) {
      argv.push_back(argument.data());
   }
   argv.push_back(nullptr);
   posix_spawn_file_actions_t actions;
   posix_spawn_file_actions_init(&actions);
   posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
   pid_t pid = -1;
   int const spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
   posix_spawn_file_actions_destroy(&actions);
   int status = 0;
   return spawned == 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status) &&
          WEXITSTATUS(status) == 0;
}

void showInterface(benchmark::State& state, std::vector<std::string> const& options) {
   auto arguments = options;
   for (char const* word : {"show", "traffic-policy", "interface"}) {
      arguments.emplace_back(word);
   }
   scaleState();
   for (auto _ : state) {
      if (!runTpcli(arguments)) {
         state.SkipWithError("tpcli failed");
         return;
      }
   }
   state.counters["rules/s"] = benchmark::Counter(static_cast<double>(kPolicies * kRulesPerPolicy),
                                                  benchmark::Counter::kIsIterationInvariantRate);
}

// One run per repetition, summed up by the median: on a virtual machine an occasional run waits
// for the host to back fresh memory, and a mean would report that wait rather than the command.
void configure(benchmark::internal::Benchmark* benchmark) {
   benchmark->Unit(benchmark::kMillisecond)
       ->UseRealTime()
       ->Iterations(1)
       ->Repetitions(9)
       ->ReportAggregatesOnly(true);
}

void BM_ShowInterfaceText(benchmark::State& state) {
   showInterface(state, {});
}
BENCHMARK(BM_ShowInterfaceText)->Apply(configure);

void BM_ShowInterfaceJson(benchmark::State& state) {
   showInterface(state, {"--json"});
}
BENCHMARK(BM_ShowInterfaceJson)->Apply(configure);

}  // namespace

BENCHMARK_MAIN();
