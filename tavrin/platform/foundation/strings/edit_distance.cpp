// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/edit_distance.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "tavrin/platform/foundation/strings/ascii.h"

namespace tavrin {
namespace {

/// No keyword is longer, and the cost grows with the square.
constexpr std::size_t longestWord = 64;

/// Letters to add, leave out, replace or swap with their neighbour to get from `a` to `b`; both at most `longestWord`.
std::size_t editDistance(std::string_view a, std::string_view b) {
    using Row = std::array<std::size_t, longestWord + 1>;
    Row beforeLast{}, last{}, row{};
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast = last;
        last = row;
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const char x = lowerCase(a[i - 1]);
            const char y = lowerCase(b[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (x == y ? 0 : 1)});
            if (i > 1 && j > 1 && x == lowerCase(b[j - 2]) && y == lowerCase(a[i - 2]))
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row[b.size()];
}

/// How many letters two words may differ in to be taken for each other.
std::size_t tolerance(std::size_t longerLength) {
    return longerLength < 2 ? 0 : std::max<std::size_t>(1, longerLength / 3);
}

}  // namespace

std::optional<std::string_view> closestMatch(std::string_view word, std::span<const std::string_view> candidates) {
    if (word.size() > longestWord) return std::nullopt;
    std::optional<std::string_view> closest;
    std::size_t least = longestWord + 1;
    for (const std::string_view candidate : candidates) {
        if (candidate.size() > longestWord) continue;
        const std::size_t longer = std::max(word.size(), candidate.size());
        const std::size_t most = tolerance(longer);
        if (longer - std::min(word.size(), candidate.size()) > most) continue;  // so many letters have to be added
        const std::size_t distance = editDistance(word, candidate);
        if (distance > most || distance >= least) continue;
        least = distance;
        closest = candidate;
    }
    return closest;
}

}  // namespace tavrin
