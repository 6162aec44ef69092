#include "tavrin/diagnostics/drawn_views.h"

#include <algorithm>

#include "tavrin/images/web_image.h"
#include "tavrin/platform/layout/effects.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin {
namespace {

using layout::LayoutNode;
using layout::LayoutTree;
using Index = LayoutTree::Index;

/// Walks a tree as it is drawn, without recursion.
class Collector {
public:
    Collector(const LayoutTree& tree, const ViewOrigins* origins) : tree_(tree), origins_(origins) {}

    std::vector<DrawnView> collect() {
        pending_.push_back({.clip = {{0, 0}, tree_.widget()}});
        while (!pending_.empty()) {
            DrawnView next = pending_.back();
            pending_.pop_back();
            const LayoutNode& node = tree_.node(next.index);
            if (node.absent) continue;
            if (const CodingPath* const way = origins_ ? origins_->find(*node.view) : nullptr) next.origin = way;
            if (node.kind == ViewKind::composed) {
                if (node.view->as<WebImage>()) found_.push_back(next);
                push(tree_.content(next.index), next);
            } else {
                visitPrimitive(*node.view, [&](const auto& view) { visit(view, next); });
            }
        }
        return std::move(found_);
    }

private:
    void push(Index index, const DrawnView& around) {
        pending_.push_back(around);
        pending_.back().index = index;
    }

    void visit(const Text&, const DrawnView& at) { found_.push_back(at); }
    void visit(const FlexibleFrame&, const DrawnView& at) {
        found_.push_back(at);
        push(tree_.content(at.index), at);
    }
    void visit(const Opacity& opacity, const DrawnView& at) {
        if (!(opacity.value > 0)) return;
        push(tree_.content(at.index), at);
        pending_.back().opacity *= std::min(opacity.value, 1.0);
    }
    void visit(const Link&, const DrawnView& at) { push(tree_.content(at.index), at); }
    void visit(const GeometryReader&, const DrawnView& at) { push(tree_.content(at.index), at); }

    template <layout::EffectView V>
    void visit(const V& view, const DrawnView& at) {
        const auto effect = layout::effectOf(view, tree_.node(at.index).frame, tree_.environment().date);
        if (!effect) return;
        push(tree_.content(at.index), at);
        pending_.back().transform = at.transform * *effect;
    }

    void visit(const ClipShape&, const DrawnView& at) { pushClipped(at); }
    void visit(const Clipped&, const DrawnView& at) { pushClipped(at); }
    void visit(const CornerRadius&, const DrawnView& at) { pushClipped(at); }
    void pushClipped(const DrawnView& at) {
        push(tree_.content(at.index), at);
        pending_.back().clip = commonRect(at.clip, boundingBox(at.transform, tree_.node(at.index).frame));
    }

    void visit(const VStack&, const DrawnView& at) { pushChildren(at); }
    void visit(const HStack&, const DrawnView& at) { pushChildren(at); }
    void visit(const ZStack&, const DrawnView& at) { pushChildren(at); }
    void pushChildren(const DrawnView& at) {
        const auto first = static_cast<std::ptrdiff_t>(pending_.size());
        for (const Index child : tree_.drawingOrder(at.index)) push(child, at);
        std::reverse(pending_.begin() + first, pending_.end());
    }

    // What is pushed last is drawn first.
    void visit(const Background&, const DrawnView& at) {
        push(tree_.content(at.index), at);
        push(tree_.secondary(at.index), at);
    }
    void visit(const Overlay&, const DrawnView& at) {
        push(tree_.secondary(at.index), at);
        push(tree_.content(at.index), at);
    }

    template <class V>
    void visit(const V&, const DrawnView& at) {
        if constexpr (ModifiedView<V>) push(tree_.content(at.index), at);
    }

    const LayoutTree& tree_;
    const ViewOrigins* origins_;
    std::vector<DrawnView> pending_;
    std::vector<DrawnView> found_;
};

}  // namespace

std::vector<DrawnView> drawnViews(const LayoutTree& tree, const ViewOrigins* origins) {
    return tree.nodes().empty() ? std::vector<DrawnView>() : Collector(tree, origins).collect();
}

Rect commonRect(const Rect& a, const Rect& b) {
    const Point from{std::max(a.origin.x, b.origin.x), std::max(a.origin.y, b.origin.y)};
    const Point to{std::min(a.origin.x + a.size.width, b.origin.x + b.size.width),
                   std::min(a.origin.y + a.size.height, b.origin.y + b.size.height)};
    return {from, {std::max(0.0, to.x - from.x), std::max(0.0, to.y - from.y)}};
}

}  // namespace tavrin
