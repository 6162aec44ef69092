// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include "tavrin/diagnostics/drawn_rules.h"

namespace tavrin {

void findMissingGlyphs(const DrawnSubject& subject, DrawnFindings& findings) {
    constexpr std::size_t mostOfOneText = 100;  // a text that is no text at all may lack any number
    for (const DrawnView& view : subject.views) {
        if (subject.tree.node(view.index).kind != ViewKind::text) continue;
        const auto missing = subject.widget.textEngine().missingCharacters(subject.tree.textBlock(view.index));
        for (std::size_t i = 0; i < std::min(missing.size(), mostOfOneText); ++i) {
            const std::string name = fmt::format("U+{:04X}", static_cast<std::uint32_t>(missing[i]));
            findings.addOneOf(Rule::missingGlyph, view.origin, name, "no font has " + name + "; a box is drawn");
        }
    }
}

}  // namespace tavrin
