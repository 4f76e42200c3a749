// The walk over blocks of 64 bytes behind skimBracketed, written once for every kind of processor:
// each source file that includes this compiles it with its own instructions (the file for AVX2
// processors is compiled for them), so everything here has internal linkage, and the copies of
// different files never stand in for one another.
#pragma once

#include <simdjson.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "TextPieces.h"

namespace StateLoader {

namespace {

static_assert(simdjson::SIMDJSON_PADDING >= 64, "a block may read 63 bytes beyond the text");

constexpr std::size_t kBlock = 64;
constexpr std::uint64_t kEvenBits = 0x5555'5555'5555'5555;
constexpr std::uint64_t kOddBits = ~kEvenBits;

// One bit per byte of a block, bit i for byte i.
struct BlockMasks {
   std::uint64_t quotes = 0;
   std::uint64_t backslashes = 0;
   std::uint64_t opens = 0;
   std::uint64_t closes = 0;
   std::uint64_t commas = 0;
};

// A block is read `Lanes::kWidth` bytes at a time: `load` reads them, `withBit5` sets the bit 0x20
// of each, `matches` has one bit per byte equal to the given one. '[' and '{' differ only in that
// bit, as do ']' and '}', and no other byte becomes '{' or '}' with it set.
template <typename Lanes>
inline BlockMasks masksOf(unsigned char const* block) {
   BlockMasks masks;
   for (std::size_t offset = 0; offset < kBlock; offset += Lanes::kWidth) {
      auto const bytes = Lanes::load(block + offset);
      auto const folded = Lanes::withBit5(bytes);
      masks.quotes |= Lanes::matches(bytes, '"') << offset;
      masks.backslashes |= Lanes::matches(bytes, '\\') << offset;
      masks.opens |= Lanes::matches(folded, '{') << offset;
      masks.closes |= Lanes::matches(folded, '}') << offset;
      masks.commas |= Lanes::matches(bytes, ',') << offset;
   }
   return masks;
}

// Each bit set where an odd number of bits at or below it are set: with the quotes that are not
// escaped, the bytes from an opening quote up to its closing quote (that one excluded).
inline std::uint64_t prefixXorByShifts(std::uint64_t bits) {
   for (unsigned shift = 1; shift < kBlock; shift *= 2) {
      bits ^= bits << shift;
   }
   return bits;
}

// What one block leaves to the next.
struct Carry {
   bool escapesFirst = false;  // an odd run of backslashes ended the block
   bool inString = false;      // the block ended inside a string
};

// The bytes that a backslash escapes. A run of backslashes escapes the byte after it when the run
// is odd: adding the run's first bit to the run carries to the bit just after it, and the run's
// length is odd when that bit and the first differ in parity. Runs that start on even and on odd
// bits are added separately so that the parity of each start is known.
inline std::uint64_t escapedBytes(std::uint64_t backslashes, Carry& carry) {
   std::uint64_t const escapedFirst = carry.escapesFirst ? 1 : 0;
   std::uint64_t const active = backslashes & ~escapedFirst;
   std::uint64_t const starts = active & ~(active << 1);
   std::uint64_t const evenStarts = starts & kEvenBits;
   std::uint64_t const oddStarts = starts & kOddBits;
   std::uint64_t const afterEven = (active + evenStarts) & ~active;
   std::uint64_t afterOdd;
   // A run that starts on an odd bit and reaches the block's end is odd: it escapes the first byte
   // of the next block. One that starts on an even bit and reaches the end is even.
   carry.escapesFirst = __builtin_add_overflow(active, oddStarts, &afterOdd);
   afterOdd &= ~active;
   return escapedFirst | (afterEven & kOddBits) | (afterOdd & kEvenBits);
}

// The commas from the one after `last` on, as bits of the block at `block`.
inline std::uint64_t commasBeyond(std::uint64_t commas, std::size_t block, std::size_t last) {
   if (last < block) {
      return commas;
   }
   auto const within = last - block;
   return within + 1 >= kBlock ? 0 : commas & (~std::uint64_t{0} << (within + 1));
}

// See skimBracketed. `Isa` gives the lanes of masksOf and a `prefixXor`.
template <typename Isa>
std::optional<std::size_t> walkBlocks(std::string_view text, std::size_t begin, std::size_t last) {
   auto const* const bytes = reinterpret_cast<unsigned char const*>(text.data());
   Carry carry;
   std::size_t depth = 0;
   for (std::size_t block = begin; block < text.size(); block += kBlock) {
      auto const masks = masksOf<Isa>(bytes + block);
      auto quotes = masks.quotes;
      if (masks.backslashes != 0 || carry.escapesFirst) {
         quotes &= ~escapedBytes(masks.backslashes, carry);
      }
      auto const inString = Isa::prefixXor(quotes) ^ (carry.inString ? ~std::uint64_t{0} : 0);
      carry.inString = (inString >> 63) != 0;
      if (masks.backslashes & ~inString) {
         return std::nullopt;
      }
      auto const opens = masks.opens & ~inString;
      auto const closes = masks.closes & ~inString;
      auto const commas = commasBeyond(masks.commas & ~inString, block, last);
      auto const closing = static_cast<std::size_t>(std::popcount(closes));
      if (depth > closing) {
         // The value cannot end in this block.
         if (commas) {
            return TextValue::kUnknown;
         }
         depth = depth + static_cast<std::size_t>(std::popcount(opens)) - closing;
         continue;
      }
      for (auto marks = opens | closes | commas; marks; marks &= marks - 1) {
         auto const bit = marks & -marks;
         if (bit & opens) {
            ++depth;
         } else if (bit & closes) {
            if (--depth == 0) {
               return block + static_cast<std::size_t>(std::countr_zero(bit)) + 1;
            }
         } else {
            return TextValue::kUnknown;
         }
      }
   }
   refuseText(carry.inString ? simdjson::UNCLOSED_STRING : simdjson::TAPE_ERROR);
}

}  // namespace

}  // namespace StateLoader
