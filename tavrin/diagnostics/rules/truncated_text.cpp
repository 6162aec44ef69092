// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/drawn_rules.h"

namespace tavrin {

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

}  // namespace tavrin
