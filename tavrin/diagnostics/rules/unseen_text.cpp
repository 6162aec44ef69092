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
