// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/drawn_rules.h"

namespace tavrin {

void findClippedTexts(const DrawnSubject& subject, DrawnFindings& findings) {
    constexpr double aPoint = 1;
    // Letters leave a part of a line's height empty.
    constexpr double emptyShare = 0.2;
    for (const DrawnView* const text : seenTexts(subject)) {
        const Rect whole = textBounds(subject, *text);
        const Rect seen = layout::commonRect(whole, text->clip);
        const double lines = static_cast<double>(subject.tree.textBlock(text->index).lineCount());
        const double lineHeight = lines > 0 ? whole.size.height / lines : 0;
        const bool isCutAcross = whole.size.width - seen.size.width > aPoint;
        const bool isCutAlong = whole.size.height - seen.size.height > aPoint + emptyShare * lineHeight;
        if (!isCutAcross && !isCutAlong) continue;
        const double lost = 1 - seen.size.width * seen.size.height / (whole.size.width * whole.size.height);
        findings.add(Rule::clippedText, text->origin,
                     excerptOf(subject, *text) + " reaches past what is seen of it and is cut off", lost);
    }
}

}  // namespace tavrin
