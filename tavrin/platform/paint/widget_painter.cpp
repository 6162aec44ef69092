// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/widget_painter.h"

#include "tavrin/platform/ui/widget_family.h"

namespace tavrin::paint {
namespace {

constexpr RGBA lightBackground{1, 1, 1, 1};
constexpr RGBA darkBackground{0x1C / 255.0, 0x1C / 255.0, 0x1E / 255.0, 1};

std::optional<RGBA> backgroundOf(const RenderOptions& options) {
    const Appearance appearance = options.environment.appearance;
    switch (options.background.kind) {
        case WidgetBackground::Kind::automatic:
            return appearance == Appearance::dark ? darkBackground : lightBackground;
        case WidgetBackground::Kind::color: return options.background.color.resolved(appearance);
        case WidgetBackground::Kind::none: break;
    }
    return std::nullopt;
}

}  // namespace

void paintWidget(const layout::LayoutTree& tree, const RenderOptions& options, Canvas& canvas, TextPainter& texts,
                 const PaintOptions& what) {
    const Rect bounds{{0, 0}, options.size};
    canvas.save();
    if (options.rounded)
        canvas.clip(Shape(RoundedRectangle{widgetCornerRadius, RoundedCornerStyle::continuous}), bounds);
    if (const std::optional<RGBA> background = backgroundOf(options)) canvas.fill(bounds, *background);
    paintTree(tree, canvas, texts, what);
    canvas.restore();
}

}  // namespace tavrin::paint
