// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/suggestions.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "tavrin/diagnostics/findings.h"
#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/edit_distance.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/schema/note_text.h"

namespace tavrin {

std::optional<std::string_view> onlyCloseMatch(std::string_view word, std::span<const std::string_view> words) {
    const auto closest = closestMatch(word, words);
    if (!closest) return std::nullopt;
    // The first among equals is found: put behind all others it must still be the closest.
    std::vector<std::string_view> others(words.begin(), words.end());
    std::erase(others, *closest);
    others.push_back(*closest);
    return closestMatch(word, others) == closest ? closest : std::nullopt;
}

std::string suggestionFor(std::string_view word, std::span<const std::string_view> words) {
    const auto closest = closestMatch(word, words);
    return closest ? "; did you mean " + inQuotes(*closest) + "?" : std::string();
}

std::optional<std::string_view> meantKeyword(std::string_view word, std::span<const std::string_view> words) {
    constexpr std::pair<std::string_view, std::string_view> sides[] = {
        {"left", "leading"}, {"Left", "Leading"}, {"right", "trailing"}, {"Right", "Trailing"}};
    constexpr std::size_t longest = 32;
    for (const auto& [side, edge] : sides) {
        const std::size_t at = word.size() > longest ? std::string_view::npos : word.find(side);
        if (at == std::string_view::npos) continue;
        const std::string meant = std::string(word).replace(at, side.size(), edge);
        const auto found = std::ranges::find(words, meant);
        if (found != words.end()) return *found;
    }
    return onlyCloseMatch(word, words);
}

std::string keywordSuggestion(std::string_view word, std::span<const std::string_view> words) {
    if (std::ranges::none_of(word, isLetter<char>)) return {};  // numbers are all alike
    const auto meant = meantKeyword(word, words);
    return meant ? "; did you mean " + inQuotes(*meant) + "?" : suggestionFor(word, words);
}

namespace {

/// The moment of a date that people write; where it names no zone, in UTC.
std::optional<Date> writtenMoment(std::string_view text) {
    for (const char* const missing : {"", "Z", ":00Z", "T00:00:00Z"}) {
        std::string whole = std::string(text) + missing;
        constexpr std::size_t timeMark = 10;
        if (whole.size() > timeMark && whole[timeMark] == ' ') whole[timeMark] = 'T';
        if (const auto date = Date::parseRFC3339(whole)) return date;
    }
    return std::nullopt;
}

}  // namespace

std::string numberSuggestion(std::string_view text, const LanguageField& field) {
    const auto moment = field.note.unit == Unit::seconds ? writtenMoment(text) : std::nullopt;
    if (moment) return "; seconds since 1970 are meant: " + numberText(std::floor(moment->secondsSince1970));
    constexpr std::string_view units[] = {"%", "px", "pt", "dp", "deg", "°", "s"};
    for (const std::string_view unit : units) {
        if (!text.ends_with(unit)) continue;
        const auto number = doubleFromText(text.substr(0, std::min(text.find(' '), text.size() - unit.size())));
        if (!number || !std::isfinite(*number)) return {};
        constexpr double whole = 100;
        const bool isShare = unit == "%" && field.note.minimum == 0 && field.note.maximum == 1;
        return "; did you mean " + numberText(isShare ? *number / whole : *number) + "?";
    }
    return {};
}

std::string longColor(std::string_view color) {
    const std::string_view digits = color.substr(color.starts_with('#') ? 1 : 0);
    constexpr std::size_t shortDigits = 3;
    if (digits.size() != shortDigits || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
        return {};
    std::string longer = "#";
    for (const char digit : digits) longer.append(2, digit);
    return longer;
}

}  // namespace tavrin
