// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/drawn_rules.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {

void findUntappableLinks(const DrawnSubject& subject, DrawnFindings& findings) {
    if (subject.widget.options().room.linksCanBeTapped) return;
    for (const DrawnView& view : subject.views) {
        const layout::LayoutNode& node = subject.tree.node(view.index);
        if (!node.view->as<Link>()) continue;
        if (layout::isEmpty(layout::commonRect(boundingBox(view.transform, node.frame), view.clip))) continue;
        if (subject.widget.document().widgetURL()) {
            findings.addNote(Rule::untappableLink, view.origin,
                             "the link cannot be tapped; the widget's own address opens instead");
        } else {
            findings.add(Rule::untappableLink, view.origin,
                         "the link cannot be tapped, and the widget has no address of its own; add a \"widgetURL\"");
        }
    }
}

}  // namespace tavrin
