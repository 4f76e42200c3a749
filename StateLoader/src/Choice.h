// Values that are one of a few fixed words ("ipv4", "programmed", "kbps"): the word's meaning, or
// a message listing the words there are.
#pragma once

#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "Members.h"
#include "Node.h"

namespace StateLoader {

template <typename Meaning>
using Choice = std::pair<std::string_view, Meaning>;

[[noreturn]] void failUnknownWord(Node const& node, std::string_view what,
                                  std::span<std::string_view const> words);

template <typename Meaning, std::size_t N>
Meaning readChoice(Node const& node, std::array<Choice<Meaning>, N> const& choices,
                   std::string_view what) {
   auto const word = asString(node);
   for (auto const& [name, meaning] : choices) {
      if (sameKey(name, word)) {
         return meaning;
      }
   }
   std::array<std::string_view, N> words;
   for (std::size_t index = 0; index < N; ++index) {
      words[index] = choices[index].first;
   }
   failUnknownWord(node, what, words);
}

}  // namespace StateLoader
