// The walk over blocks for processors with AVX2; this file is compiled for them, and with them for
// the single instructions that count bits and multiply without carries.
#include <immintrin.h>

#include "BlockWalk.h"
#include "BracketSkim.h"

namespace StateLoader {

namespace {

struct Avx2 {
   static constexpr std::size_t kWidth = 32;
   static __m256i load(unsigned char const* bytes) {
      return _mm256_loadu_si256(reinterpret_cast<__m256i const*>(bytes));
   }
   static __m256i withBit5(__m256i bytes) { return _mm256_or_si256(bytes, _mm256_set1_epi8(0x20)); }
   static std::uint64_t matches(__m256i bytes, char byte) {
      return static_cast<std::uint32_t>(
          _mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(byte))));
   }
   // A carry-less multiplication by a word of ones.
   static std::uint64_t prefixXor(std::uint64_t bits) {
      auto const product = _mm_clmulepi64_si128(_mm_set_epi64x(0, static_cast<long long>(bits)),
                                                _mm_set1_epi8(-1), 0);
      return static_cast<std::uint64_t>(_mm_cvtsi128_si64(product));
   }
};

}  // namespace

std::optional<std::size_t> skimBracketedWithAvx2(std::string_view text, std::size_t begin,
                                                 std::size_t last) {
   return walkBlocks<Avx2>(text, begin, last);
}

}  // namespace StateLoader
