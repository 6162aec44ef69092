#include "tavrin/diagnostics/written_rules.h"

#include <algorithm>

#include "tavrin/platform/foundation/edit_distance.h"

namespace tavrin {

void applyWrittenRules(const WrittenSubject& subject, Findings& findings) {
    for (const auto rule : {findUnknownKeys, findDuplicateKeys, findDroppedValues, findMalformedExpressions,
                            findUnresolvedExpressions, findEmbeddedExpressions, findOddColors, findReferenceModifiers,
                            findNewerFeatures, findRefusedClipShapes, findInvalidURLs, findUnusedNodes})
        if (!findings.isFull()) rule(subject, findings);
}

std::optional<std::string> expressionIn(const WrittenDocument& document, const WrittenMember& member) {
    if (!member.field->isLossless || !document.outline().isString(member.value)) return std::nullopt;
    std::string text = document.outline().string(member.value);
    return isExpression(text) ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<std::string_view> onlyCloseMatch(std::string_view word, std::span<const std::string_view> words) {
    const auto closest = closestMatch(word, words);
    if (!closest) return std::nullopt;
    const auto isSameLetters = [&](char a, char b) { return (a | 0x20) == (b | 0x20); };
    if (std::equal(word.begin(), word.end(), closest->begin(), closest->end(), isSameLetters)) return closest;
    std::vector<std::string_view> others;
    std::copy_if(words.begin(), words.end(), std::back_inserter(others),
                 [&](std::string_view other) { return other != *closest; });
    return closestMatch(word, others) ? std::nullopt : closest;
}

std::string suggestionFor(std::string_view word, std::span<const std::string_view> words) {
    const auto closest = closestMatch(word, words);
    return closest ? "; did you mean " + inQuotes(*closest) + "?" : std::string();
}

}  // namespace tavrin
