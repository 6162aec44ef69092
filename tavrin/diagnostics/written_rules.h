// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/diagnostics/bound_model.h"
#include "tavrin/diagnostics/findings.h"
#include "tavrin/diagnostics/suggestions.h"
#include "tavrin/diagnostics/written_document.h"

// The rules that look at a document as it is written, and at the model it is bound to. Each stands in a file of its
// own in rules/ and takes time linear in the document.

namespace tavrin {

/// What a rule looks at.
struct WrittenSubject {
    const WrittenDocument& document;
    /// Null where there is none, or none that can be read.
    const BoundModel* model = nullptr;
    /// Whether pictures come from a folder, where their names need not be addresses.
    bool hasPictureFolder = false;
    const JSONOutline& outline = document.outline();
};

void findUnknownKeys(const WrittenSubject& subject, Findings& findings);
void findDuplicateKeys(const WrittenSubject& subject, Findings& findings);
void findDroppedValues(const WrittenSubject& subject, Findings& findings);
void findNumbersOutOfRange(const WrittenSubject& subject, Findings& findings);
void findMalformedExpressions(const WrittenSubject& subject, Findings& findings);
void findUnresolvedExpressions(const WrittenSubject& subject, Findings& findings);
void findEmbeddedExpressions(const WrittenSubject& subject, Findings& findings);
void findOddColors(const WrittenSubject& subject, Findings& findings);
void findOddTexts(const WrittenSubject& subject, Findings& findings);
void findReferenceModifiers(const WrittenSubject& subject, Findings& findings);
void findNewerFeatures(const WrittenSubject& subject, Findings& findings);
void findRefusedClipShapes(const WrittenSubject& subject, Findings& findings);
void findInvalidURLs(const WrittenSubject& subject, Findings& findings);
void findUnusedNodes(const WrittenSubject& subject, Findings& findings);
void findUnusedElements(const WrittenSubject& subject, Findings& findings);
void findRoundedMoments(const WrittenSubject& subject, Findings& findings);

/// All of the above.
void applyWrittenRules(const WrittenSubject& subject, Findings& findings);

/// Calls `visit(record, member)` for each property that counts.
template <class Visit>
void forEachProperty(const WrittenDocument& document, const Visit& visit) {
    for (const WrittenRecord& record : document.records())
        for (const WrittenMember& member : record.properties()) visit(record, member);
}

/// The expression that a property holds, braces included; none for a literal.
[[nodiscard]] std::optional<std::string> expressionIn(const WrittenDocument& document, const WrittenMember& member);

/// The text that an expression leads to; none without a model, and where it is malformed or leads nowhere.
[[nodiscard]] std::optional<std::string> textBehind(const WrittenSubject& subject, std::string_view expression);

/// The text of a scalar, or of what its expression leads to; none where it leads nowhere.
[[nodiscard]] std::optional<std::string> scalarTextOf(const WrittenSubject& subject, const WrittenMember& member);

/// Whether a member is there and holds a truth.
[[nodiscard]] bool isTrue(const JSONOutline& outline, const WrittenMember* member);
/// Whether a member is there and holds a list of something.
[[nodiscard]] bool isFilledList(const JSONOutline& outline, const WrittenMember* member);

}  // namespace tavrin
