// Optimal string alignment distance (Damerau-Levenshtein without repeated edits of one span) over
// the lower-cased keys: keys are short, so the full table is cheap.
#include "Suggestion.h"

#include <algorithm>
#include <string>
#include <vector>

namespace StateLoader {

namespace {

constexpr std::size_t kMostEdits = 2;

std::string lowerCased(std::string_view text) {
   std::string lower(text);
   std::transform(lower.begin(), lower.end(), lower.begin(), [](char character) {
      return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
   });
   return lower;
}

std::size_t editDistance(std::string const& from, std::string const& to) {
   std::size_t const columns = to.size() + 1;
   std::vector<std::size_t> table((from.size() + 1) * columns);
   auto cell = [&](std::size_t row, std::size_t column) -> std::size_t& {
      return table[row * columns + column];
   };
   for (std::size_t row = 0; row <= from.size(); ++row) {
      cell(row, 0) = row;
   }
   for (std::size_t column = 0; column <= to.size(); ++column) {
      cell(0, column) = column;
   }
   for (std::size_t row = 1; row <= from.size(); ++row) {
      for (std::size_t column = 1; column <= to.size(); ++column) {
         std::size_t const change = from[row - 1] == to[column - 1] ? 0 : 1;
         cell(row, column) = std::min({cell(row - 1, column) + 1, cell(row, column - 1) + 1,
                                       cell(row - 1, column - 1) + change});
         if (row > 1 && column > 1 && from[row - 1] == to[column - 2] &&
             from[row - 2] == to[column - 1]) {
            cell(row, column) = std::min(cell(row, column), cell(row - 2, column - 2) + 1);
         }
      }
   }
   return cell(from.size(), to.size());
}

}  // namespace

std::optional<std::string_view> closestKey(std::string_view key,
                                           std::span<std::string_view const> candidates) {
   std::optional<std::string_view> best;
   std::size_t bestDistance = kMostEdits + 1;
   std::string const lowerKey = lowerCased(key);
   for (std::string_view const candidate : candidates) {
      // Lengths further apart than the edits allowed cannot be close; this also keeps the table
      // small whatever the length of the unknown key.
      if (lowerKey.size() > candidate.size() + kMostEdits ||
          candidate.size() > lowerKey.size() + kMostEdits) {
         continue;
      }
      std::size_t const distance = editDistance(lowerKey, lowerCased(candidate));
      if (distance < bestDistance && distance * 2 <= candidate.size()) {
         best = candidate;
         bestDistance = distance;
      }
   }
   return best;
}

}  // namespace StateLoader
