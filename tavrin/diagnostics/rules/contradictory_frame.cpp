// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/drawn_rules.h"
#include "tavrin/platform/layout/modifier_rules.h"

namespace tavrin {

void findContradictoryFrames(const DrawnSubject& subject, DrawnFindings& findings) {
    for (const DrawnView& view : subject.views) {
        const auto* const frame = subject.tree.node(view.index).view->as<FlexibleFrame>();
        if (frame && layout::isContradictory(*frame))
            findings.add(Rule::contradictoryFrame, view.origin,
                         "a frame's minimum is larger than its maximum; the minimum holds");
    }
}

}  // namespace tavrin
