// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/changed_areas.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <utility>

#include "tavrin/platform/foundation/affine_transform.h"
#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/layout/effects.h"
#include "tavrin/platform/paint/drawn_extents.h"
#include "tavrin/platform/paint/painter.h"
#include "tavrin/platform/text/text_engine.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::paint {
namespace {

using layout::LayoutNode;
using layout::LayoutTree;
using Index = LayoutTree::Index;

/// Edges are rounded to whole pixels, and what covers a part of a pixel touches it.
constexpr double margin = 2;
constexpr double farthestPixel = 1e6;

int pixel(double edge) { return static_cast<int>(std::clamp(edge, -farthestPixel, farthestPixel)); }

/// Whether two edges, in pixels, are moved to the same whole pixel: they differ by no more than sums of the same
/// lengths do, and are not where that would decide.
bool isSameEdge(double a, double b) {
    constexpr double sumError = 1e-9;
    constexpr double threshold = 0.5 - 1e-6;  // as the canvas moves edges
    constexpr double clearance = 1e-7;
    const double fraction = a - std::floor(a);
    return std::abs(a - b) < sumError && std::abs(fraction - threshold) > clearance;
}

class Comparison {
public:
    Comparison(DrawnExtents& before, DrawnExtents& after, std::optional<Index> divider)
        : before_(before.tree()),
          after_(after.tree()),
          extentsBefore_(before),
          extentsAfter_(after),
          divider_(divider) {}

    /// What is around a view in both trees: from its points to pixels, and the pixels that clips leave.
    struct Place {
        AffineTransform toPixels;
        PixelRect clip;
    };

    void compare(Index a, Index b, const Place& at) {
        Meter::ofThisThread().step();
        way_.push_back(b);
        if (a == divider_ && result_.first.empty()) result_.divider = way_;
        if (!result_.divider.empty()) addFromDivider(a, b, at);
        compareViews(a, b, at);
        way_.pop_back();
    }

    [[nodiscard]] ChangedAreas& result() { return result_; }

private:
    void compareViews(Index a, Index b, const Place& at) {
        const LayoutNode& before = before_.node(a);
        const LayoutNode& after = after_.node(b);
        if (before.absent && after.absent) return;
        if (before.absent != after.absent || before.kind != after.kind) return change(a, b, at);
        if (after.kind == ViewKind::composed) return compare(before_.content(a), after_.content(b), at);
        visitPrimitive(*after.view,
                       [&]<class View>(const View& view) { compareAlike(*before.view->as<View>(), view, a, b, at); });
    }

    // Leaves, which draw something in their frame.

    void compareAlike(const EmptyView&, const EmptyView&, Index, Index, const Place&) {}
    void compareAlike(const Spacer&, const Spacer&, Index, Index, const Place&) {}

    void compareAlike(const Text&, const Text&, Index a, Index b, const Place& at) {
        const text::TextBlock& block = after_.textBlock(b);
        // Lines from right to left end where their room does.
        const bool isSamePlace = block.isLeftToRight() ? hasSamePixels(a, b, at) : hasSameFrame(a, b);
        if (!isSamePlace || !(before_.textBlock(a) == block) || !hasSameForeground(a, b)) change(a, b, at);
    }

    void compareAlike(const Image& before, const Image& after, Index a, Index b, const Place& at) {
        if (before.bitmap != after.bitmap || !hasSamePixels(a, b, at)) change(a, b, at);
    }

    template <class View>
        requires std::convertible_to<View, Shape>
    void compareAlike(const View& before, const View& after, Index a, Index b, const Place& at) {
        if (!(before == after) || !hasSamePixels(a, b, at) || !hasSameForeground(a, b)) change(a, b, at);
    }

    void compareAlike(const Color& before, const Color& after, Index a, Index b, const Place& at) {
        if (!(before == after) || !hasSamePixels(a, b, at)) change(a, b, at);
    }

    void compareAlike(const FilledShape& before, const FilledShape& after, Index a, Index b, const Place& at) {
        const bool isSamePlace = hasOneColor(after.fill) ? hasSamePixels(a, b, at) : hasSameFrame(a, b);
        if (!isSamePlace || !fieldsEqual(before, after)) change(a, b, at);
    }
    void compareAlike(const StrokedShape& before, const StrokedShape& after, Index a, Index b, const Place& at) {
        const bool isSamePlace = hasOneColor(after.stroke) ? hasSamePixels(a, b, at) : hasSameFrame(a, b);
        if (!isSamePlace || !fieldsEqual(before, after)) change(a, b, at);
    }
    void compareAlike(const LinearGradient& before, const LinearGradient& after, Index a, Index b, const Place& at) {
        if (!(before == after) || !hasSameFrame(a, b)) change(a, b, at);
    }

    // What holds others.

    template <class Stack>
        requires(Stack::traits.holds == ViewHolds::children)
    void compareAlike(const Stack&, const Stack&, Index a, Index b, const Place& at) { compareLists(a, b, at); }

    void compareAlike(const GeometryReader&, const GeometryReader&, Index a, Index b, const Place& at) {
        compareContent(a, b, at);
    }

    template <layout::EffectView View>
    void compareAlike(const View& before, const View& after, Index a, Index b, const Place& at) {
        const layout::Effect effectBefore = layout::effectOf(before, before_.node(a).frame, before_.environment().date);
        const layout::Effect effect = layout::effectOf(after, after_.node(b).frame, after_.environment().date);
        if (effectBefore != effect) return change(a, b, at);
        if (effect) compareContent(a, b, {at.toPixels * *effect, at.clip});
    }

    void compareAlike(const Border& before, const Border& after, Index a, Index b, const Place& at) {
        if (!(before.color == after.color) || before.width != after.width || !hasSamePixels(a, b, at))
            return change(a, b, at);
        compareContent(a, b, at);
    }

    void compareAlike(const Opacity& before, const Opacity& after, Index a, Index b, const Place& at) {
        const bool isSame = before.value == after.value &&
                            isFadedAlike(before_, before_.content(a)) == isFadedAlike(after_, after_.content(b));
        // A layer begins where its content does, and how exactly Cairo reckons in it depends on that.
        const bool hasLayer = after.value < 1 && !isFadedAlike(after_, after_.content(b));
        const bool isSamePlace =
            !hasLayer || extentsBefore_.of(before_.content(a)) == extentsAfter_.of(after_.content(b));
        if (!isSame || !isSamePlace) return change(a, b, at);
        compareContent(a, b, at);
    }

    void compareAlike(const ClipShape& before, const ClipShape& after, Index a, Index b, const Place& at) {
        compareClipped(before.shape == after.shape && before.antialiased == after.antialiased, a, b, at);
    }
    void compareAlike(const Clipped& before, const Clipped& after, Index a, Index b, const Place& at) {
        compareClipped(before.antialiased == after.antialiased, a, b, at);
    }
    void compareAlike(const CornerRadius& before, const CornerRadius& after, Index a, Index b, const Place& at) {
        compareClipped(before.radius == after.radius && before.antialiased == after.antialiased, a, b, at);
    }
    void compareClipped(bool isSame, Index a, Index b, const Place& at) {
        if (!isSame || !hasSamePixels(a, b, at)) return change(a, b, at);
        compareContent(a, b, {at.toPixels, intersection(at.clip, pixels(after_.node(b).frame, at))});
    }

    /// Any other modifier or link, which draws nothing of its own.
    template <class View>
        requires((View::traits.holds == ViewHolds::content || View::traits.holdsSecond()) && !View::traits.isEffect)
    void compareAlike(const View&, const View&, Index a, Index b, const Place& at) {
        constexpr bool hasFront = std::same_as<View, Overlay>;
        if constexpr (View::traits.holdsSecond() && !hasFront) compareSecond(a, b, at);
        compareContent(a, b, at);
        if constexpr (hasFront) compareSecond(a, b, at);
    }

    void compareContent(Index a, Index b, const Place& at) { compare(before_.content(a), after_.content(b), at); }

    void compareSecond(Index a, Index b, const Place& at) { compare(before_.secondary(a), after_.secondary(b), at); }

    /// Where their numbers differ, what belongs together is not known.
    void compareLists(Index a, Index b, const Place& at) {
        const std::span<const Index> before = before_.drawingOrder(a);
        const std::span<const Index> after = after_.drawingOrder(b);
        if (before.size() == after.size()) {
            for (std::size_t i = 0; i < before.size(); ++i) compare(before[i], after[i], at);
            return;
        }
        noteChange(a);
        for (const Index index : before) addExtent(extentsBefore_.of(index), at);
        for (const Index index : after) addExtent(extentsAfter_.of(index), at);
    }

    // Helpers.

    [[nodiscard]] bool hasSameFrame(Index a, Index b) const { return before_.node(a).frame == after_.node(b).frame; }
    /// Whether what has one colour, or is a picture, is drawn on the same pixels: sums of the same lengths may differ a
    /// little, but edges are moved to whole pixels.
    [[nodiscard]] bool hasSamePixels(Index a, Index b, const Place& at) const {
        if (hasSameFrame(a, b)) return true;
        if (at.toPixels.xy != 0 || at.toPixels.yx != 0) return false;
        const auto& [origin, size] = boundingBox(at.toPixels, before_.node(a).frame);
        const auto& [otherOrigin, otherSize] = boundingBox(at.toPixels, after_.node(b).frame);
        return isSameEdge(origin.x, otherOrigin.x) && isSameEdge(origin.y, otherOrigin.y) &&
               isSameEdge(origin.x + size.width, otherOrigin.x + otherSize.width) &&
               isSameEdge(origin.y + size.height, otherOrigin.y + otherSize.height);
    }
    static bool hasOneColor(const ShapeStyle& style) { return std::holds_alternative<Color>(style); }
    [[nodiscard]] bool hasSameForeground(Index a, Index b) const {
        return before_.inherited(a).foregroundColor == after_.inherited(b).foregroundColor;
    }

    void noteChange(Index a) {
        if (!result_.first.empty()) return;
        result_.first = way_;
        result_.firstBefore = a;
    }

    void change(Index a, Index b, const Place& at) {
        noteChange(a);
        addExtent(extentsBefore_.of(a), at);
        addExtent(extentsAfter_.of(b), at);
    }

    void addExtent(const Rect& extent, const Place& at) {
        const PixelRect area = intersection(pixels(extent, at), at.clip);
        if (!area.empty()) result_.areas.push_back(area);
    }

    void addFromDivider(Index a, Index b, const Place& at) {
        for (const Rect& extent : {extentsBefore_.of(a), extentsAfter_.of(b)}) {
            const PixelRect area = intersection(pixels(extent, at), at.clip);
            PixelRect& all = result_.fromDivider;
            if (!area.empty()) all = all.empty() ? area : united(all, area);
        }
    }

    /// The pixels that a rectangle may touch; all of the clip where that is not known.
    static PixelRect pixels(const Rect& extent, const Place& at) {
        if (extent.size == Size{}) return {};
        const auto& [origin, size] = boundingBox(at.toPixels, extent);
        const double x1 = origin.x + size.width;
        const double y1 = origin.y + size.height;
        for (const double edge : {origin.x, origin.y, x1, y1})
            if (!std::isfinite(edge)) return at.clip;
        return {pixel(std::floor(origin.x) - margin), pixel(std::floor(origin.y) - margin),
                pixel(std::ceil(x1) + margin), pixel(std::ceil(y1) + margin)};
    }

    const LayoutTree& before_;
    const LayoutTree& after_;
    DrawnExtents& extentsBefore_;
    DrawnExtents& extentsAfter_;
    std::optional<Index> divider_;
    DrawnWay way_;  // to the view of the later tree that is compared
    ChangedAreas result_;
};

}  // namespace

std::vector<PixelRect> mergedAreas(std::vector<PixelRect> areas) {
    constexpr std::size_t mostCompared = 64;
    constexpr std::size_t mostAreas = 8;
    // What clearing, clipping and looking at all views once more takes, in pixels.
    constexpr std::uint64_t worthOfArea = 20'000;
    if (areas.size() > mostCompared) {
        const PixelRect all = std::reduce(areas.begin(), areas.end(), areas.front(),
                                          [](const PixelRect& a, const PixelRect& b) { return united(a, b); });
        return {all};
    }
    std::vector<PixelRect> merged;
    const auto add = [&](PixelRect area) {
        // One that takes up others grows, and may take up more.
        for (std::size_t i = 0; i < merged.size();) {
            const PixelRect both = united(area, merged[i]);
            if (both.area() > area.area() + merged[i].area() + worthOfArea) {
                ++i;
                continue;
            }
            area = both;
            merged.erase(merged.begin() + static_cast<std::ptrdiff_t>(i));
            i = 0;
        }
        merged.push_back(area);
    };
    for (const PixelRect& area : areas) add(area);
    while (merged.size() > mostAreas) {
        const PixelRect last = merged.back();
        merged.pop_back();
        merged.back() = united(merged.back(), last);
    }
    return merged;
}

ChangedAreas changedAreas(DrawnExtents& before, DrawnExtents& after, double scale, std::optional<Index> divider) {
    if (&before.tree() == &after.tree() || before.tree().nodes().empty() || after.tree().nodes().empty()) return {};
    const auto side = [&](double points) { return pixel(std::ceil(points * scale) + margin); };
    const PixelRect all{0, 0, side(after.tree().widget().width), side(after.tree().widget().height)};
    Comparison comparison(before, after, divider);
    comparison.compare(0, 0, {{scale, 0, 0, scale, 0, 0}, all});
    ChangedAreas result = std::move(comparison.result());
    result.areas = mergedAreas(std::move(result.areas));
    return result;
}

}  // namespace tavrin::paint
