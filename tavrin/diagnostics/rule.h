// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

#include "tavrin/diagnostics/diagnostic.h"

namespace tavrin {

/// One kind of diagnostic.
struct DiagnosticRule {
    std::string_view code;
    /// What it is unless something says otherwise.
    Severity severity;
    /// What it means, one sentence.
    std::string_view summary;
    /// What else is to be known about it, in sentences with words of the language in backticks; may be empty.
    std::string_view details = {};
};

/// All rules, errors first. Documentation and other formats list them from here.
[[nodiscard]] std::span<const DiagnosticRule> diagnosticRules();

/// The rules by name.
enum class Rule : unsigned char {
    notJSON,
    missingKey,
    wrongType,
    unknownWord,
    unreadableValue,
    unresolvedExpression,
    refused,
    unknownKey,
    duplicateKey,
    droppedValue,
    outOfRange,
    malformedExpression,
    embeddedExpression,
    hexAlpha,
    modelAlphaFF,
    oddColor,
    oddText,
    referenceModifiers,
    newerFeature,
    clipShape,
    invalidURL,
    untappableLink,
    missingImage,
    missingGlyph,
    contradictoryFrame,
    truncatedText,
    clippedText,
    unseenText,
    lowContrast,
    unusedNode,
    unusedElement,
    roundedMoment,
    notLookedAt,
};

[[nodiscard]] const DiagnosticRule& info(Rule rule);

}  // namespace tavrin
