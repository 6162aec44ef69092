// SPDX-License-Identifier: MIT
#include <cmath>

#include "tavrin/diagnostics/drawn_rules.h"
#include "tavrin/platform/text/block_contents.h"

namespace tavrin {
namespace {

/// Whether a text would be seen if it lay elsewhere: it has letters, a size and a colour.
bool wouldBeSeen(const DrawnSubject& subject, const DrawnView& text) {
    const Rect place = textBounds(subject, text);
    if (layout::isEmpty(place) || !std::isfinite(place.size.width) || !std::isfinite(place.size.height)) return false;
    const Appearance appearance = subject.tree.environment().appearance;
    if (!(subject.tree.inherited(text.index).foregroundColor.resolved(appearance).opacity > 0)) return false;
    const std::string_view letters = text::contentsOf(subject.tree.textBlock(text.index)).text;
    return letters.find_first_not_of(" \t\n\r") != std::string_view::npos;
}

}  // namespace

void findTruncatedTexts(const DrawnSubject& subject, DrawnFindings& findings) {
    for (const DrawnView* const text : seenTexts(subject)) {
        const text::TextBlock& block = subject.tree.textBlock(text->index);
        if (!block.truncated()) continue;
        const auto limit = subject.tree.inherited(text->index).lineLimit;
        const auto lines = static_cast<std::int64_t>(block.lineCount());
        if (limit && lines >= *limit) {
            findings.addNote(Rule::truncatedText, text->origin,
                             excerptOf(subject, *text) + " does not fit in the lines that it is limited to");
        } else {
            findings.add(Rule::truncatedText, text->origin, excerptOf(subject, *text) + " does not fit and is cut off");
        }
    }
}

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

void findUnseenTexts(const DrawnSubject& subject, DrawnFindings& findings) {
    for (const DrawnView& view : subject.views) {
        if (subject.tree.node(view.index).kind != ViewKind::text) continue;
        if (view.mayAppear || isInSight(subject, view))
            findings.setSeen(view.origin);
        else if (wouldBeSeen(subject, view))
            findings.addUnlessSeen(Rule::unseenText, view.origin,
                                   excerptOf(subject, view) + " lies wholly outside what is seen of the widget");
    }
}

}  // namespace tavrin
