// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/drawn_extents.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/layout/effects.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::paint {
namespace {

constexpr double unbounded = std::numeric_limits<double>::infinity();
/// Beyond, sums may be too coarse.
constexpr double farthestPoint = 1e9;

using layout::LayoutNode;

}  // namespace

struct DrawnExtents::Extent {
    double x0 = unbounded;
    double y0 = unbounded;
    double x1 = -unbounded;
    double y1 = -unbounded;
    bool isKnown = false;

    static Extent everything() { return {-unbounded, -unbounded, unbounded, unbounded}; }
    static Extent around(const Rect& rect, double reachX = 0, double reachY = 0) {
        const auto& [origin, size] = rect;
        return Extent{origin.x - reachX, origin.y - reachY, origin.x + size.width + reachX,
                      origin.y + size.height + reachY}
            .within();
    }

    [[nodiscard]] bool isEmpty() const { return x0 > x1 || y0 > y1; }
    /// Everything, unless all edges are numbers to be relied on.
    [[nodiscard]] Extent within() const {
        for (const double edge : {x0, y0, x1, y1})
            if (!(std::abs(edge) < farthestPoint)) return everything();
        return *this;
    }
    void unite(const Extent& other) {
        x0 = std::min(x0, other.x0);
        y0 = std::min(y0, other.y0);
        x1 = std::max(x1, other.x1);
        y1 = std::max(y1, other.y1);
    }
    /// Where nothing seems to be left, rounding to whole pixels may bring it in.
    void cut(const Extent& other) {
        if (isEmpty()) return;
        x0 = std::max(x0, other.x0);
        y0 = std::max(y0, other.y0);
        x1 = std::min(x1, other.x1);
        y1 = std::min(y1, other.y1);
        if (isEmpty()) *this = other;
    }
    [[nodiscard]] Extent transformed(const AffineTransform& transform) const {
        if (isEmpty()) return {};
        Extent result;
        for (const Point corner : {Point{x0, y0}, Point{x1, y0}, Point{x0, y1}, Point{x1, y1}}) {
            const auto [x, y] = transform * corner;
            if (std::isnan(x) || std::isnan(y)) return everything();
            result.unite({x, y, x, y});
        }
        return result.within();
    }
};

DrawnExtents::DrawnExtents(const layout::LayoutTree& tree, TextPainter& texts) : tree_(tree), texts_(texts) {}
DrawnExtents::~DrawnExtents() = default;

std::size_t DrawnExtents::byteCount() const { return known_.capacity() * sizeof(Extent); }

Rect DrawnExtents::of(Index index) {
    if (known_.empty()) known_.resize(tree_.nodes().size());
    const Extent extent = extentOf(index);
    if (extent.isEmpty()) return {};
    return {{extent.x0, extent.y0}, {extent.x1 - extent.x0, extent.y1 - extent.y0}};
}

const DrawnExtents::Extent& DrawnExtents::extentOf(Index index) {
    if (!known_[index].isKnown) {
        Meter::ofThisThread().step();
        const Extent extent = made(index);
        known_[index] = extent;
        known_[index].isKnown = true;
    }
    return known_[index];
}

DrawnExtents::Extent DrawnExtents::made(Index index) {
    const LayoutNode& node = tree_.node(index);
    if (node.absent || node.kind == ViewKind::spacer || node.kind == ViewKind::emptyView) return {};
    if (node.kind == ViewKind::text) return ofText(index);
    if (node.kind == ViewKind::strokedShape) {
        // Half a line lies outside, and at right angles 1.42 of that.
        const double width = node.view->as<StrokedShape>()->lineWidth;
        return Extent::around(node.frame, width, width);
    }
    if (node.kind == ViewKind::geometryReader) return extentOf(tree_.content(index));
    const ViewTraits& traits = traitsOf(node.kind);
    Extent extent;
    switch (traits.holds) {
        case ViewTraits::Holds::nothing: return Extent::around(node.frame);
        case ViewTraits::Holds::content: extent = extentOf(tree_.content(index)); break;
        case ViewTraits::Holds::contentAndSecond:
            extent = extentOf(tree_.content(index));
            extent.unite(extentOf(tree_.secondary(index)));
            break;
        case ViewTraits::Holds::children:
            for (const Index child : tree_.drawingOrder(index)) extent.unite(extentOf(child));
            break;
    }
    if (traits.drawsBesideContent) extent.unite(Extent::around(node.frame));
    if (traits.clips) extent.cut(Extent::around(node.frame));
    if (traits.isEffect)
        visitPrimitive(*node.view, [&]<class View>(const View& view) {
            if constexpr (layout::EffectView<View>) {
                const layout::Effect effect = layout::effectOf(view, node.frame, tree_.environment().date);
                extent = effect ? extent.transformed(*effect) : Extent{};
            }
        });
    return extent;
}

DrawnExtents::Extent DrawnExtents::ofText(Index index) const {
    const Rect& frame = tree_.node(index).frame;
    const Rect ink = texts_.ink(tree_.textBlock(index), frame.size.width);
    if (!(ink.size.width > 0 && ink.size.height > 0)) return {};
    return Extent::around({{frame.origin.x + ink.origin.x, frame.origin.y + ink.origin.y}, ink.size});
}

}  // namespace tavrin::paint
