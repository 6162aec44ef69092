// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/painter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/effects.h"
#include "tavrin/platform/paint/drawn_extents.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::paint {
namespace {

using layout::LayoutNode;
using layout::LayoutTree;
using layout::pointIn;
using Index = LayoutTree::Index;

/// How many pixels of a raster may be held at once by layers and outlined clips within each other; what would take more
/// is drawn strip by strip.
constexpr std::int64_t maximumHeldPixels = 16'000'000;

class Painter {
public:
    Painter(const LayoutTree& tree, Canvas& canvas, TextPainter& texts, const PaintOptions& options)
        : tree_(tree),
          canvas_(canvas),
          texts_(texts),
          ownExtents_(tree, texts),
          extents_(options.extents ? *options.extents : ownExtents_),
          options_(options),
          hasWindow_(canvas.hasWindow()),
          appearance_(tree.environment().appearance),
          isPastDivider_(options.divider.empty()) {}

    void paint(Index index) {
        if (isPastDivider_) return paintView(index);
        const DrawnWay& way = options_.divider;
        if (index != way[entered_]) {
            if (!options_.startsAtDivider) paintView(index);
            return;
        }
        if (++entered_ == way.size()) passDivider();
        paintView(index);
        // Where something on the way cannot be seen, its end is not reached.
        if (!isPastDivider_) passDivider();
    }

    /// The view that was come to last.
    [[nodiscard]] Index at() const { return at_; }

private:
    void passDivider() {
        isPastDivider_ = true;
        if (options_.atDivider) options_.atDivider();
    }

    void paintView(Index index) {
        const LayoutNode& node = tree_.node(index);
        if (node.absent) return;
        at_ = index;
        Meter::ofThisThread().step();
        if (hasWindow_ && canvas_.isOutOfWindow(extents_.of(index))) return;
        if (node.kind == ViewKind::composed) return paint(tree_.content(index));
        visitPrimitive(*node.view, [&](const auto& view) { draw(view, index, node); });
    }

    // Leaves.

    void draw(const EmptyView&, Index, const LayoutNode&) {}
    void draw(const Spacer&, Index, const LayoutNode&) {}

    void draw(const Text&, Index index, const LayoutNode& node) {
        if (options_.drawsTexts) canvas_.draw(tree_.textBlock(index), node.frame, foreground(index), texts_);
    }

    void draw(const Image& image, Index, const LayoutNode& node) {
        if (image.bitmap) canvas_.draw(image.bitmap, node.frame, opacity_);
    }

    void draw(const Color& color, Index, const LayoutNode& node) { canvas_.fill(node.frame, shade(color)); }
    void draw(const LinearGradient& gradient, Index, const LayoutNode& node) {
        canvas_.fill(node.frame, paintOf(gradient, node.frame));
    }

    void draw(const Circle& shape, Index index, const LayoutNode& node) { drawBare(shape, index, node); }
    void draw(const Rectangle& shape, Index index, const LayoutNode& node) { drawBare(shape, index, node); }
    void draw(const RoundedRectangle& shape, Index index, const LayoutNode& node) { drawBare(shape, index, node); }
    void draw(const Capsule& shape, Index index, const LayoutNode& node) { drawBare(shape, index, node); }

    void draw(const TrimmedShape& shape, Index index, const LayoutNode& node) { drawBare(shape, index, node); }

    void draw(const FilledShape& filled, Index, const LayoutNode& node) {
        canvas_.fill(filled.shape, node.frame, paintOf(filled.fill, node.frame));
    }
    void draw(const StrokedShape& stroked, Index, const LayoutNode& node) {
        const Pen pen{stroked.lineWidth, stroked.lineCap, stroked.lineJoin, stroked.miterLimit};
        canvas_.stroke(stroked.shape, node.frame, paintOf(stroked.stroke, node.frame), pen);
    }

    // Stacks.

    void draw(const VStack&, Index index, const LayoutNode&) { drawChildren(index); }
    void draw(const HStack&, Index index, const LayoutNode&) { drawChildren(index); }
    void draw(const ZStack&, Index index, const LayoutNode&) { drawChildren(index); }

    void draw(const GeometryReader&, Index index, const LayoutNode&) { paint(tree_.content(index)); }
    void draw(const Link&, Index index, const LayoutNode&) { paint(tree_.content(index)); }

    // Modifiers. One that layout alone knows of draws its content.

    template <ModifiedView Modified>
        requires(!layout::EffectView<Modified>)
    void draw(const Modified&, Index index, const LayoutNode&) { paint(tree_.content(index)); }

    template <layout::EffectView Effect>
    void draw(const Effect& view, Index index, const LayoutNode& node) {
        const layout::Effect effect = layout::effectOf(view, node.frame, tree_.environment().date);
        if (!effect) return;
        canvas_.save();
        canvas_.transform(*effect);
        if (!canvas_.hidden()) paint(tree_.content(index));
        canvas_.restore();
    }

    void draw(const Background&, Index index, const LayoutNode&) {
        paint(tree_.secondary(index));
        paint(tree_.content(index));
    }
    void draw(const Overlay&, Index index, const LayoutNode&) {
        paint(tree_.content(index));
        paint(tree_.secondary(index));
    }
    void draw(const Border& border, Index index, const LayoutNode& node) {
        paint(tree_.content(index));
        canvas_.border(node.frame, shade(border.color), border.width);
    }

    void draw(const ClipShape& clip, Index index, const LayoutNode& node) {
        drawClipped(index, [&] { canvas_.clip(clip.shape, node.frame, clip.antialiased); });
    }
    void draw(const Clipped& clip, Index index, const LayoutNode& node) {
        drawClipped(index, [&] { canvas_.clip(node.frame, clip.antialiased); });
    }
    void draw(const CornerRadius& clip, Index index, const LayoutNode& node) {
        const RoundedRectangle outline{clip.radius, RoundedCornerStyle::circular};
        drawClipped(index, [&] { canvas_.clip(outline, node.frame, clip.antialiased); });
    }

    void draw(const Opacity& opacity, Index index, const LayoutNode&) {
        if (!(opacity.value > 0)) return;
        const Index content = tree_.content(index);
        const double before = std::exchange(opacity_, opacity_ * std::min(opacity.value, 1.0));
        if (opacity_ >= 1 || isFadedAlike(tree_, content))
            paint(content);
        else
            drawFaded(index, content);
        opacity_ = before;
    }

    // Helpers.

    void drawBare(const Shape& shape, Index index, const LayoutNode& node) {
        canvas_.fill(shape, node.frame, foreground(index));
    }

    void drawChildren(Index stack) {
        for (const Index child : tree_.drawingOrder(stack)) paint(child);
    }

    template <class Clip>
    void drawClipped(Index index, Clip clip) {
        drawWhole(index, [&] {
            canvas_.save();
            clip();
            if (!canvas_.hidden()) paint(tree_.content(index));
            canvas_.restore();
        });
    }

    /// Draws a subtree as a whole, in a layer no larger than it.
    void drawFaded(Index index, Index content) {
        canvas_.save();
        canvas_.limit(extents_.of(content));
        if (!canvas_.hidden()) drawWhole(index, [&] { paintAsLayer(content); });
        canvas_.restore();
    }

    /// Draws what is composed or cut as a whole, the outermost such view with all within it in no more memory than
    /// there may be.
    template <class Draw>
    void drawWhole(Index index, Draw draw) {
        if (isInWhole_) return draw();
        isInWhole_ = true;
        canvas_.inStrips(maximumHeldPixels / nestedWholes(index), draw);
        isInWhole_ = false;
    }

    /// What is composed or cut as a whole.
    static bool isWhole(ViewKind kind) { return traitsOf(kind).clips || traitsOf(kind).composes; }

    /// How many views that are composed or cut as a whole lie within each other at most, the outermost included.
    [[nodiscard]] std::int64_t nestedWholes(Index outermost) const {
        std::vector<Index> ends;
        std::size_t most = 0;
        Meter::ofThisThread().step((tree_.node(outermost).end - outermost) / 8);
        for (Index index = outermost; index < tree_.node(outermost).end; ++index) {
            while (!ends.empty() && ends.back() <= index) ends.pop_back();
            if (isWhole(tree_.node(index).kind)) ends.push_back(tree_.node(index).end);
            most = std::max(most, ends.size());
        }
        return static_cast<std::int64_t>(most);
    }

    /// Draws a subtree as a whole with the present opacity.
    void paintAsLayer(Index content) {
        const double whole = std::exchange(opacity_, 1);
        canvas_.beginLayer();
        paint(content);
        canvas_.endLayer(whole);
        opacity_ = whole;
    }

    [[nodiscard]] RGBA shade(const Color& color) const {
        RGBA shade = color.resolved(appearance_);
        if (opacity_ < 1) shade.opacity = std::clamp(shade.opacity, 0.0, 1.0) * opacity_;
        return shade;
    }
    [[nodiscard]] RGBA foreground(Index index) const { return shade(tree_.inherited(index).foregroundColor); }

    [[nodiscard]] Paint paintOf(const LinearGradient& gradient, const Rect& bounds) const {
        Gradient ramp{{}, pointIn(bounds, gradient.startPoint), pointIn(bounds, gradient.endPoint)};
        ramp.colors.reserve(gradient.colors.size());
        for (const Color& color : gradient.colors) ramp.colors.push_back(shade(color));
        return ramp;
    }
    [[nodiscard]] Paint paintOf(const ShapeStyle& style, const Rect& bounds) const {
        if (const auto* color = std::get_if<Color>(&style)) return shade(*color);
        return paintOf(std::get<LinearGradient>(style), bounds);
    }

    const LayoutTree& tree_;
    Canvas& canvas_;
    TextPainter& texts_;
    DrawnExtents ownExtents_;
    DrawnExtents& extents_;
    const PaintOptions& options_;
    bool hasWindow_;
    Appearance appearance_;
    double opacity_ = 1;
    bool isInWhole_ = false;
    Index at_ = 0;
    bool isPastDivider_;
    std::size_t entered_ = 0;  // views on the way to the divider
};

}  // namespace

bool isFadedAlike(const layout::LayoutTree& tree, Index index) {
    while (!tree.node(index).absent) {
        const ViewTraits& traits = traitsOf(tree.node(index).kind);
        if (traits.composes) return true;
        if (traits.drawsBesideContent) return false;
        switch (traits.holds) {
            case ViewTraits::Holds::nothing: return true;
            case ViewTraits::Holds::content: index = tree.content(index); break;
            case ViewTraits::Holds::contentAndSecond: return false;
            case ViewTraits::Holds::children: {
                const auto drawn = tree.drawingOrder(index);
                if (drawn.size() != 1) return drawn.empty();
                index = drawn.front();
                break;
            }
        }
    }
    return true;
}

void paintTree(const layout::LayoutTree& tree, Canvas& canvas, TextPainter& texts, const PaintOptions& options) {
    if (tree.nodes().empty()) return;
    Painter painter(tree, canvas, texts, options);
    try {
        painter.paint(0);
    } catch (TavrinError& error) {
        tree.noteOrigin(error, painter.at());
        throw;
    }
}

}  // namespace tavrin::paint
