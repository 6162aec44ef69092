#include "tavrin/platform/layout/tap_targets.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "tavrin/platform/layout/effects.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::layout {
namespace {

using Index = LayoutTree::Index;

/// What two rectangles have in common; nothing when that has no area.
std::optional<Rect> common(const Rect& a, const Rect& b) {
    const Point from{std::max(a.origin.x, b.origin.x), std::max(a.origin.y, b.origin.y)};
    const Point to{std::min(a.origin.x + a.size.width, b.origin.x + b.size.width),
                   std::min(a.origin.y + a.size.height, b.origin.y + b.size.height)};
    if (!(from.x < to.x) || !(from.y < to.y)) return std::nullopt;
    return Rect{from, {to.x - from.x, to.y - from.y}};
}

/// Walks a tree as it is drawn, without recursion.
class Collector {
public:
    explicit Collector(const LayoutTree& tree) : tree_(tree) {}

    std::vector<TapTarget> collect() {
        if (const auto widget = common({{}, tree_.widget()}, {{}, tree_.widget()}))
            pending_.push_back({0, {}, *widget});
        while (!pending_.empty()) {
            const Pending next = pending_.back();
            pending_.pop_back();
            const LayoutNode& node = tree_.node(next.index);
            if (node.absent) continue;
            if (node.kind == ViewKind::composed) {
                push(tree_.content(next.index), next);
            } else {
                visitPrimitive(*node.view, [&](const auto& view) { visit(view, next); });
            }
        }
        return std::move(targets_);
    }

private:
    /// A view to come to, the transform that it is drawn with and what clips leave of the widget.
    struct Pending {
        Index index;
        AffineTransform transform;
        Rect clip;
    };

    void push(Index index, const Pending& around) { pending_.push_back({index, around.transform, around.clip}); }

    [[nodiscard]] std::optional<Rect> seen(const Pending& at) const {
        return common(boundingBox(at.transform, tree_.node(at.index).frame), at.clip);
    }

    void add(TapTarget::Kind kind, const URL& destination, const Pending& at) {
        if (const auto frame = seen(at)) targets_.push_back({kind, destination, *frame});
    }

    void visit(const Link& link, const Pending& at) {
        add(TapTarget::Kind::link, link.destination, at);
        push(tree_.content(at.index), at);
    }
    void visit(const WidgetURL& marked, const Pending& at) {
        if (marked.url) add(TapTarget::Kind::widgetURL, *marked.url, at);
        push(tree_.content(at.index), at);
    }
    void visit(const Opacity& opacity, const Pending& at) {
        if (opacity.value > 0) push(tree_.content(at.index), at);
    }
    void visit(const GeometryReader&, const Pending& at) { push(tree_.content(at.index), at); }

    template <EffectView V>
    void visit(const V& view, const Pending& at) {
        const Effect effect = effectOf(view, tree_.node(at.index).frame, tree_.environment().date);
        if (effect) pending_.push_back({tree_.content(at.index), at.transform * *effect, at.clip});
    }

    void visit(const ClipShape&, const Pending& at) { pushClipped(at); }
    void visit(const Clipped&, const Pending& at) { pushClipped(at); }
    void visit(const CornerRadius&, const Pending& at) { pushClipped(at); }
    void pushClipped(const Pending& at) {
        if (const auto clip = seen(at)) pending_.push_back({tree_.content(at.index), at.transform, *clip});
    }

    void visit(const VStack&, const Pending& at) { pushChildren(at); }
    void visit(const HStack&, const Pending& at) { pushChildren(at); }
    void visit(const ZStack&, const Pending& at) { pushChildren(at); }
    void pushChildren(const Pending& at) {
        const auto first = static_cast<std::ptrdiff_t>(pending_.size());
        for (const Index child : tree_.drawingOrder(at.index)) push(child, at);
        std::reverse(pending_.begin() + first, pending_.end());
    }

    // What is pushed last is drawn first.
    void visit(const Background&, const Pending& at) {
        push(tree_.content(at.index), at);
        push(tree_.secondary(at.index), at);
    }
    void visit(const Overlay&, const Pending& at) {
        push(tree_.secondary(at.index), at);
        push(tree_.content(at.index), at);
    }

    template <class V>
    void visit(const V&, const Pending& at) {
        if constexpr (ModifiedView<V>) push(tree_.content(at.index), at);
    }

    const LayoutTree& tree_;
    std::vector<Pending> pending_;
    std::vector<TapTarget> targets_;
};

}  // namespace

std::vector<TapTarget> tapTargets(const LayoutTree& tree) {
    return tree.nodes().empty() ? std::vector<TapTarget>() : Collector(tree).collect();
}

}  // namespace tavrin::layout
