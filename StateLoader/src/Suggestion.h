// "Did you mean": the known key closest to a mistyped one, so that an unknown key is reported
// with the fix when the fix is obvious.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace StateLoader {

// The candidate within two edits (insertions, deletions, substitutions, swaps of neighbours;
// letter case ignored) of `key`, the first of the closest; none when no candidate is that
// close, or when the edits would change more than half of the candidate.
std::optional<std::string_view> closestKey(std::string_view key,
                                           std::span<std::string_view const> candidates);

}  // namespace StateLoader
