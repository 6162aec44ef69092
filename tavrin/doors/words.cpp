// SPDX-License-Identifier: MIT
#include "tavrin/doors/words.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/edit_distance.h"

namespace tavrin {
namespace {

std::string_view withoutDashes(std::string_view word) {
    return word.substr(std::min(word.find_first_not_of('-'), word.size()));
}

/// Who mistypes a word rarely gets its first letter wrong: at most it is left out, doubled or swapped with the next.
bool beginsAlike(std::string_view word, std::string_view known) {
    const auto letter = [](std::string_view text, std::size_t at) {
        return at < text.size() ? lowerCase(text[at]) : '\0';
    };
    const char first = letter(word, 0);
    return first == letter(known, 0) || first == letter(known, 1) || letter(word, 1) == letter(known, 0);
}

}  // namespace

std::string listed(std::span<const std::string_view> words) {
    if (words.size() < 2) return joined(words);
    return joined(words.first(words.size() - 1), ", ") + " or " + std::string(words.back());
}

std::string suggestion(std::string_view word, std::span<const std::string_view> known) {
    std::vector<std::string_view> likely;
    for (const std::string_view candidate : known)
        if (beginsAlike(withoutDashes(word), withoutDashes(candidate))) likely.push_back(withoutDashes(candidate));
    const auto closest = closestMatch(withoutDashes(word), likely);
    if (!closest) return {};
    return "; did you mean '" + std::string(*std::ranges::find(known, *closest, withoutDashes)) + "'?";
}

}  // namespace tavrin
