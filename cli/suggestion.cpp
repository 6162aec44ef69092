// SPDX-License-Identifier: MIT
#include "cli/suggestion.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

#include "tavrin/platform/foundation/strings/edit_distance.h"

namespace tavrin::cli {
namespace {

std::string_view withoutDashes(std::string_view word) {
    return word.substr(std::min(word.find_first_not_of('-'), word.size()));
}

/// Who mistypes a word rarely gets its first letter wrong: at most it is left out, doubled or swapped with the next.
bool beginsAlike(std::string_view word, std::string_view known) {
    const auto letter = [](std::string_view text, std::size_t at) {
        const char c = at < text.size() ? text[at] : '\0';
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    };
    const char first = letter(word, 0);
    return first == letter(known, 0) || first == letter(known, 1) || letter(word, 1) == letter(known, 0);
}

}  // namespace

std::string suggestion(std::string_view word, std::span<const std::string_view> known) {
    std::vector<std::string_view> bare;
    for (const std::string_view candidate : known) bare.push_back(withoutDashes(candidate));
    std::vector<std::string_view> likely;
    std::copy_if(bare.begin(), bare.end(), std::back_inserter(likely),
                 [&](std::string_view candidate) { return beginsAlike(withoutDashes(word), candidate); });
    const auto closest = closestMatch(withoutDashes(word), likely);
    if (!closest) return {};
    const auto index = static_cast<std::size_t>(std::find(bare.begin(), bare.end(), *closest) - bare.begin());
    return "; did you mean '" + std::string(known[index]) + "'?";
}

}  // namespace tavrin::cli
