// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/widget_painter.h"

#include "tavrin/platform/ui/widget_family.h"

namespace tavrin::paint {
namespace {

constexpr RGBA lightBackground{1, 1, 1, 1};
constexpr RGBA darkBackground{0x1C / 255.0, 0x1C / 255.0, 0x1E / 255.0, 1};

std::optional<RGBA> backgroundOf(const WidgetLook& look) {
    switch (look.background.kind) {
        case WidgetBackground::Kind::automatic:
            return look.appearance == Appearance::dark ? darkBackground : lightBackground;
        case WidgetBackground::Kind::color: return look.background.color.resolved(look.appearance);
        case WidgetBackground::Kind::none: break;
    }
    return std::nullopt;
}

}  // namespace

void paintWidget(const layout::LayoutTree& tree, const WidgetLook& look, Canvas& canvas, TextPainter& texts,
                 const PaintOptions& what) {
    const Rect bounds{{0, 0}, look.size};
    canvas.save();
    if (look.rounded) canvas.clip(Shape(RoundedRectangle{widgetCornerRadius, RoundedCornerStyle::continuous}), bounds);
    const std::optional<RGBA> background = what.startsAtDivider ? std::nullopt : backgroundOf(look);
    if (background) canvas.fill(bounds, *background);
    paintTree(tree, canvas, texts, what);
    canvas.restore();
}

}  // namespace tavrin::paint
