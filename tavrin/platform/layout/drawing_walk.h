// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <utility>

#include "tavrin/platform/foundation/affine_transform.h"
#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/effects.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/ui/primitive_views.h"

// A laid-out tree as painting goes through it, for those who ask what is seen where.

namespace tavrin::layout {

/// A view, and how it is drawn.
struct DrawnPlace {
    LayoutTree::Index index = 0;
    AffineTransform transform = {};
    /// What clips leave of the widget, in points; without a size where that is nothing.
    Rect clip = {};
    /// Of all that is around it; above 0.
    double opacity = 1;
};

/// What two rectangles have in common; without a size where that is nothing.
[[nodiscard]] inline Rect commonRect(const Rect& a, const Rect& b) {
    const Point from{std::max(a.origin.x, b.origin.x), std::max(a.origin.y, b.origin.y)};
    const Point to{std::min(a.origin.x + a.size.width, b.origin.x + b.size.width),
                   std::min(a.origin.y + a.size.height, b.origin.y + b.size.height)};
    return {from, {std::max(0.0, to.x - from.x), std::max(0.0, to.y - from.y)}};
}

[[nodiscard]] inline bool isEmpty(const Rect& rect) { return !(rect.size.width > 0 && rect.size.height > 0); }

/// Calls `visit(at)` for each view that is drawn, in the order of drawing, without recursion. What `visit` changes in
/// `at` holds for what is inside the view as well; where it returns false, that is left out.
template <std::derived_from<DrawnPlace> Place, class Visit>
class DrawingWalk {
public:
    using Index = LayoutTree::Index;

    DrawingWalk(const LayoutTree& tree, Visit visit) : tree_(tree), visit_(std::move(visit)) {}

    void run() {
        if (tree_.nodes().empty()) return;
        Place root;
        root.clip = {{0, 0}, tree_.widget()};
        pending_.push_back(root);
        while (!pending_.empty()) {
            Place next = pending_.back();
            pending_.pop_back();
            try {
                take(next);
            } catch (TavrinError& error) {
                tree_.noteOrigin(error, next.index);
                throw;
            }
        }
    }

private:
    void take(Place& next) {
        Meter::ofThisThread().step();
        const LayoutNode& node = tree_.node(next.index);
        if (node.absent || !visit_(next)) return;
        if (node.kind == ViewKind::composed)
            push(tree_.content(next.index), next);
        else
            visitPrimitive(*node.view, [&](const auto& view) { enter(view, next); });
    }

    void push(Index index, const Place& around) {
        pending_.push_back(around);
        pending_.back().index = index;
    }

    void enter(const Opacity& opacity, const Place& at) {
        if (!(opacity.value > 0)) return;
        push(tree_.content(at.index), at);
        pending_.back().opacity *= std::min(opacity.value, 1.0);
    }
    void enter(const Link&, const Place& at) { push(tree_.content(at.index), at); }
    void enter(const GeometryReader&, const Place& at) { push(tree_.content(at.index), at); }

    template <EffectView V>
    void enter(const V& view, const Place& at) {
        const Effect effect = effectOf(view, tree_.node(at.index).frame, tree_.environment().date);
        if (!effect) return;
        push(tree_.content(at.index), at);
        pending_.back().transform = at.transform * *effect;
    }

    void enter(const ClipShape&, const Place& at) { pushClipped(at); }
    void enter(const Clipped&, const Place& at) { pushClipped(at); }
    void enter(const CornerRadius&, const Place& at) { pushClipped(at); }
    void pushClipped(const Place& at) {
        push(tree_.content(at.index), at);
        pending_.back().clip = commonRect(at.clip, boundingBox(at.transform, tree_.node(at.index).frame));
    }

    void enter(const VStack&, const Place& at) { pushChildren(at); }
    void enter(const HStack&, const Place& at) { pushChildren(at); }
    void enter(const ZStack&, const Place& at) { pushChildren(at); }
    void pushChildren(const Place& at) {
        const auto first = static_cast<std::ptrdiff_t>(pending_.size());
        for (const Index child : tree_.drawingOrder(at.index)) push(child, at);
        std::reverse(pending_.begin() + first, pending_.end());
    }

    // What is pushed last is drawn first.
    void enter(const Background&, const Place& at) {
        push(tree_.content(at.index), at);
        push(tree_.secondary(at.index), at);
    }
    void enter(const Overlay&, const Place& at) {
        push(tree_.secondary(at.index), at);
        push(tree_.content(at.index), at);
    }

    template <class V>
    void enter(const V&, const Place& at) {
        if constexpr (ModifiedView<V>) push(tree_.content(at.index), at);
    }

    const LayoutTree& tree_;
    Visit visit_;
    pool::Vector<Place> pending_;
};

template <std::derived_from<DrawnPlace> Place = DrawnPlace, class Visit>
void walkDrawn(const LayoutTree& tree, Visit visit) {
    DrawingWalk<Place, Visit>(tree, std::move(visit)).run();
}

}  // namespace tavrin::layout
