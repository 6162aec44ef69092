// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"

namespace tavrin {

void applyWrittenRules(const WrittenSubject& subject, Findings& findings) {
    for (const auto rule :
         {findUnknownKeys, findDuplicateKeys, findDroppedValues, findNumbersOutOfRange, findMalformedExpressions,
          findUnresolvedExpressions, findEmbeddedExpressions, findOddColors, findReferenceModifiers, findNewerFeatures,
          findRefusedClipShapes, findInvalidURLs, findUnusedNodes})
        if (!findings.isFull()) rule(subject, findings);
}

std::optional<std::string> expressionIn(const WrittenDocument& document, const WrittenMember& member) {
    if (!member.field->isLossless || !document.outline().isString(member.value)) return std::nullopt;
    std::string text = document.outline().string(member.value);
    return isExpression(text) ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace tavrin
