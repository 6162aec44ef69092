// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"

#include "tavrin/platform/foundation/budget/meter.h"

namespace tavrin {

void applyWrittenRules(const WrittenSubject& subject, Findings& findings) {
    for (const auto rule : {findUnknownKeys, findDuplicateKeys, findDroppedValues, findNumbersOutOfRange,
                            findMalformedExpressions, findUnresolvedExpressions, findEmbeddedExpressions, findOddColors,
                            findOddTexts, findReferenceModifiers, findNewerFeatures, findRefusedClipShapes,
                            findInvalidURLs, findUnusedNodes, findUnusedElements, findRoundedMoments})
        if (!findings.isFull()) {
            Meter::ofThisThread().step(subject.document.outline().values().size());
            rule(subject, findings);
        }
}

std::optional<std::string> expressionIn(const WrittenDocument& document, const WrittenMember& member) {
    if (!member.field->isLossless || !document.outline().isString(member.value)) return std::nullopt;
    std::string text = document.outline().string(member.value);
    return isExpression(text) ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<std::string> textBehind(const WrittenSubject& subject, std::string_view expression) {
    return subject.model && isWellFormed(expression) ? subject.model->find(expression) : std::nullopt;
}

std::optional<std::string> scalarTextOf(const WrittenSubject& subject, const WrittenMember& member) {
    if (const auto expression = expressionIn(subject.document, member)) return textBehind(subject, *expression);
    if (subject.outline.isString(member.value)) return subject.outline.string(member.value);
    return std::string(subject.outline.raw(member.value));
}

bool isTrue(const JSONOutline& outline, const WrittenMember* member) {
    return member && (outline.raw(member->value) == "true" || outline.raw(member->value) == "\"true\"");
}

bool isFilledList(const JSONOutline& outline, const WrittenMember* member) {
    return member && outline.isArray(member->value) && outline[member->value].last > member->value + 1;
}

}  // namespace tavrin
