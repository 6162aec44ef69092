// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tavrin {

/// The candidate that `word` was most likely meant to be, for a "did you mean": the one the fewest letters away (added,
/// left out, replaced or swapped with the next; ASCII letter case is ignored), the first among equals. None when even
/// that one differs in more than about a third of its letters.
[[nodiscard]] std::optional<std::string_view> closestMatch(std::string_view word,
                                                           std::span<const std::string_view> candidates);

}  // namespace tavrin
