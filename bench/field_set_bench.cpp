// The prefix field-set listing over the largest sets it is asked to show: one IPv4 set of
// 1,000,000 host prefixes with 100,000 except-prefixes (every tenth host), and one IPv6 set of
// 1,000,000 /64 prefixes, rendered in text and JSON to /dev/null while holding the activity lock
// (so the timing includes the lock yields of the copies, 1 ms each per 25,000 prefixes). The
// state loader's share of an end-to-end run is measured by scripts/bench-field-sets.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "Kel/ActivityLock.h"
#include "TrafficPolicyCli/ShowTrafficPolicyPrefixFieldSet.h"

namespace {

constexpr std::uint32_t kPrefixes = 1000000;
constexpr std::uint32_t kExceptStride = 10;

Kel::Ptr<Classification::FieldSetConfig const> largeSets() {
   auto v4 = Kel::make<Classification::PrefixFieldSetSubConfig>();
   auto v6 = Kel::make<Classification::PrefixFieldSetSubConfig>();
   for (std::uint32_t index = 0; index < kPrefixes; ++index) {
      Quoll::IpGenPrefix const host(Quoll::IpAddr::v4(0x0a000000u + index), 32);
      v4->prefixes().insert(host);
      if (index % kExceptStride == 0) {
         v4->exceptPrefixes().insert(host);
      }
      Quoll::IpAddr::Bytes bytes{0x20, 0x01, 0x0d, 0xb8};
      bytes[4] = static_cast<std::uint8_t>(index >> 24);
      bytes[5] = static_cast<std::uint8_t>(index >> 16);
      bytes[6] = static_cast<std::uint8_t>(index >> 8);
      bytes[7] = static_cast<std::uint8_t>(index);
      v6->prefixes().insert(Quoll::IpGenPrefix(Quoll::IpAddr::v6(bytes), 64));
   }
   auto config = Kel::make<Classification::FieldSetConfig>();
   auto v4Set = Kel::make<Classification::FieldSetIpPrefix>("large");
   v4Set->currCfgIs(v4);
   config->fieldSetIpPrefix().insertOrAssign("large", v4Set);
   auto v6Set = Kel::make<Classification::FieldSetIpv6Prefix>("large");
   v6Set->currCfgIs(v6);
   config->fieldSetIpv6Prefix().insertOrAssign("large", v6Set);
   return config;
}

// Arguments: IPv4 (1) or IPv6 (0); the output format code.
void BM_PrefixListing(benchmark::State& state) {
   static auto const config = largeSets();
   bool const ipv4 = state.range(0) == 1;
   auto const format = static_cast<std::uint32_t>(state.range(1));
   int const devNull = open("/dev/null", O_WRONLY | O_CLOEXEC);
   for (auto _ : state) {
      auto listing = Kel::make<TrafficPolicyCli::ShowTrafficPolicyPrefixFieldSet>(
          config, "", ipv4, false, Quoll::IpGenPrefix(), false);
      Kel::ActivityLockGuard const lock(Kel::ActivityLock::instance());
      listing->render(static_cast<std::uint32_t>(devNull), format, 2);
   }
   close(devNull);
   state.SetItemsProcessed(state.iterations() * kPrefixes);
}
BENCHMARK(BM_PrefixListing)
    ->ArgNames({"ipv4", "format"})
    ->Args({1, 1})
    ->Args({1, 2})
    ->Args({0, 1})
    ->Args({0, 2})
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
