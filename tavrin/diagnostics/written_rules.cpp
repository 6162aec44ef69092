#include "tavrin/diagnostics/written_rules.h"

#include <vector>

#include "tavrin/platform/foundation/edit_distance.h"

namespace tavrin {

void applyWrittenRules(const WrittenSubject& subject, Findings& findings) {
    for (const auto rule : {findUnknownKeys, findDuplicateKeys, findDroppedValues, findNumbersOutOfRange, findMalformedExpressions,
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

}  // namespace tavrin
