// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/next_change.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <variant>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/layout/drawing_walk.h"
#include "tavrin/platform/paint/drawn_extents.h"
#include "tavrin/platform/text/shaped_text.h"

namespace tavrin::paint {
namespace {

bool turns(const ClockHandPeriod& period) { return period.seconds() != 0 && std::isfinite(period.seconds()); }

}  // namespace

Date nextChange(const layout::LayoutTree& tree, TextPainter& texts) {
    const Date now = tree.environment().date;
    double next = std::numeric_limits<double>::infinity();
    DrawnExtents extents(tree, texts);
    // Texts take all the room there is, but show no more than their glyphs, which are moved to whole pixels; the next
    // ones may be longer.
    const auto maySee = [&](const layout::DrawnPlace& at, double textSize) {
        constexpr double longest = 15;  // of "999999999:59:59", in sizes
        const double margin = longest * textSize + 2 / std::min(1.0, tree.environment().displayScale);
        const Rect extent = extents.of(at.index);
        if (extent.size == Size{}) return false;
        const auto& [origin, size] = boundingBox(at.transform, extent);
        const Rect seen{{origin.x - margin, origin.y - margin}, {size.width + 2 * margin, size.height + 2 * margin}};
        if (!std::isfinite(seen.origin.x + seen.size.width) || !std::isfinite(seen.origin.y + seen.size.height))
            return true;
        return !layout::isEmpty(layout::commonRect(seen, at.clip));
    };
    layout::walkDrawn(tree, [&](const layout::DrawnPlace& at) {
        Meter::ofThisThread().step();
        if (next <= now.secondsSince1970 || layout::isEmpty(at.clip)) return false;
        const layout::LayoutNode& node = tree.node(at.index);
        if (node.kind == ViewKind::text) {
            const auto* const date = std::get_if<Date>(&node.view->as<Text>()->content);
            const text::TextBlock::Lines* const lines = tree.textBlock(at.index).lines();
            if (date && lines && maySee(at, lines->text->size))
                next = std::min(next, nextTimerText(*date, now).secondsSince1970);
        } else if (node.kind == ViewKind::clockHandRotationEffect) {
            // Wherever it points to now: it comes around.
            const bool isDrawn = extents.of(tree.content(at.index)).size != Size{};
            if (isDrawn && turns(node.view->as<ClockHandRotationEffect>()->period)) next = now.secondsSince1970;
        } else if (node.kind == ViewKind::composed) {
            // What waits for something is waited for once, and so has one body.
            if (node.view->box().mayReadDate() && !node.view->box().loading()) next = now.secondsSince1970;
        }
        return true;
    });
    return {next};
}

}  // namespace tavrin::paint
