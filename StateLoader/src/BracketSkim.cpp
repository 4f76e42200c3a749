// The walk with SSE2, which every x86-64 processor has, or byte by byte elsewhere; on processors
// with AVX2 the walk compiled for them (BracketSkimAvx2.cpp).
#include "BracketSkim.h"

#include "BlockWalk.h"

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace StateLoader {

namespace {

#if defined(__x86_64__)
struct Sse2 {
   static constexpr std::size_t kWidth = 16;
   static __m128i load(unsigned char const* bytes) {
      return _mm_loadu_si128(reinterpret_cast<__m128i const*>(bytes));
   }
   static __m128i withBit5(__m128i bytes) { return _mm_or_si128(bytes, _mm_set1_epi8(0x20)); }
   static std::uint64_t matches(__m128i bytes, char byte) {
      return static_cast<std::uint16_t>(
          _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte))));
   }
   static std::uint64_t prefixXor(std::uint64_t bits) { return prefixXorByShifts(bits); }
};

#else
struct OneByte {
   static constexpr std::size_t kWidth = 1;
   static unsigned char load(unsigned char const* bytes) { return *bytes; }
   static unsigned char withBit5(unsigned char byte) { return byte | 0x20; }
   static std::uint64_t matches(unsigned char byte, char wanted) {
      return byte == static_cast<unsigned char>(wanted) ? 1 : 0;
   }
   static std::uint64_t prefixXor(std::uint64_t bits) { return prefixXorByShifts(bits); }
};
#endif

}  // namespace

#if defined(__x86_64__)
bool processorHasAvx2() {
   __builtin_cpu_init();
   return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt") &&
          __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("bmi");
}

std::optional<std::size_t> skimBracketedWithSse2(std::string_view text, std::size_t begin,
                                                 std::size_t last) {
   return walkBlocks<Sse2>(text, begin, last);
}
#endif

std::optional<std::size_t> skimBracketed(std::string_view text, std::size_t begin,
                                         std::size_t last) {
#if defined(__x86_64__)
   static bool const avx2 = processorHasAvx2();
   return avx2 ? skimBracketedWithAvx2(text, begin, last)
               : skimBracketedWithSse2(text, begin, last);
#else
   return walkBlocks<OneByte>(text, begin, last);
#endif
}

}  // namespace StateLoader
