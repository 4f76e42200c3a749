// A hash of a name for the tables that a command builds over the names of a model's maps (rule
// names above all). Such names are short, a few bytes to a few words, and a table of 100,000 of
// them is hashed twice per command: the standard library's hash, a call that walks the bytes in a
// general loop, cost some seventy instructions a name. Here the name is read as at most a few
// words, each taken into the state by a multiplication, and the state is mixed at the end so that
// the low bits, which pick a table's slot, depend on every byte.
//
// Not a defence against names chosen to collide: the tables it serves are rebuilt per command and
// sized to the names they hold, as with the standard hash, which has no secret either.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Kel {

namespace detail {

inline constexpr std::uint64_t kNameHashMultiplier = 0x9e3779b97f4a7c15;

template <typename Word>
Word loadWord(char const* at) noexcept {
   Word word;
   std::memcpy(&word, at, sizeof word);
   return word;
}

inline std::uint64_t takeWord(std::uint64_t state, std::uint64_t word) noexcept {
   return (state ^ word) * kNameHashMultiplier;
}

}  // namespace detail

[[gnu::always_inline]] inline std::size_t nameHash(std::string_view name) noexcept {
   using detail::loadWord;
   using detail::takeWord;
   auto const size = name.size();
   char const* const data = name.data();
   std::uint64_t state = takeWord(0, size);
   if (size >= sizeof(std::uint64_t)) {
      // Whole words, the last one ending at the last byte (it may overlap the one before).
      for (std::size_t at = 0; at + sizeof(std::uint64_t) < size; at += sizeof(std::uint64_t)) {
         state = takeWord(state, loadWord<std::uint64_t>(data + at));
      }
      state = takeWord(state, loadWord<std::uint64_t>(data + size - sizeof(std::uint64_t)));
   } else if (size >= sizeof(std::uint32_t)) {
      // Two halves that overlap for fewer than eight bytes.
      std::uint64_t const low = loadWord<std::uint32_t>(data);
      std::uint64_t const high = loadWord<std::uint32_t>(data + size - sizeof(std::uint32_t));
      state = takeWord(state, low | high << 32);
   } else if (size != 0) {
      auto const byte = [data](std::size_t at) {
         return std::uint64_t{static_cast<unsigned char>(data[at])};
      };
      state = takeWord(state, byte(0) | byte(size / 2) << 8 | byte(size - 1) << 16);
   }
   // The products carry the bytes into the high bits only; fold them back down.
   state ^= state >> 32;
   state *= detail::kNameHashMultiplier;
   return static_cast<std::size_t>(state ^ state >> 29);
}

}  // namespace Kel
