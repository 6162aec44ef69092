// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/tap_targets.h"

#include "tavrin/platform/layout/drawing_walk.h"

namespace tavrin::layout {

std::vector<TapTarget> tapTargets(const LayoutTree& tree) {
    std::vector<TapTarget> targets;
    walkDrawn(tree, [&](const DrawnPlace& at) {
        if (isEmpty(at.clip)) return false;
        const LayoutNode& node = tree.node(at.index);
        const auto add = [&](TapTarget::Kind kind, const URL& destination) {
            const Rect seen = commonRect(boundingBox(at.transform, node.frame), at.clip);
            if (!isEmpty(seen)) targets.push_back({kind, destination, seen});
        };
        if (const auto* link = node.view->as<Link>()) add(TapTarget::Kind::link, link->destination);
        const auto* const marked = node.view->as<WidgetURL>();
        if (marked && marked->url) add(TapTarget::Kind::widgetURL, *marked->url);
        return true;
    });
    return targets;
}

}  // namespace tavrin::layout
