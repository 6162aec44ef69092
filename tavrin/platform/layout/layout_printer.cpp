// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/layout_printer.h"

#include <vector>

#include "tavrin/platform/ui/view_tree.h"

namespace tavrin::layout {
namespace {

/// The nodes of a tree, in the order in which a printer comes to their views.
class NodeFrames final : public ViewFrames {
public:
    explicit NodeFrames(const LayoutTree& tree, std::vector<const AnyView*>* shown = nullptr)
        : tree_(tree), shown_(shown) {}

    std::size_t enter() override {
        const LayoutTree::Index entered = next_;
        if (entered != nowhere) next_ = entered + 1;
        if (shown_) shown_->push_back(entered == nowhere ? nullptr : tree_.node(entered).view);
        return entered;
    }

    [[nodiscard]] std::optional<Rect> frame(std::size_t entered) const override {
        if (entered == nowhere) return std::nullopt;
        const LayoutNode& node = tree_.nodes()[entered];
        return node.absent ? std::nullopt : std::optional(node.frame);
    }

    void findPart(std::size_t composed, const AnyView& part) override {
        next_ = composed == nowhere ? nowhere : found(static_cast<LayoutTree::Index>(composed), part);
    }

    // What else a composed view unfolds into is not printed.
    void leave(std::size_t composed) override { next_ = composed == nowhere ? nowhere : tree_.nodes()[composed].end; }

private:
    static constexpr LayoutTree::Index nowhere = UINT32_MAX;

    /// The node of a view inside a composed one, also in the contents of geometry readers.
    [[nodiscard]] LayoutTree::Index found(LayoutTree::Index composed, const AnyView& part) const {
        std::vector<LayoutTree::Index> roots{composed};
        while (!roots.empty()) {
            const LayoutTree::Index root = roots.back();
            roots.pop_back();
            for (LayoutTree::Index index = root; index < tree_.node(root).end; ++index) {
                const LayoutNode& node = tree_.node(index);
                if (&node.view->box() == &part.box()) return index;
                const bool isPlaced = node.kind == ViewKind::geometryReader && tree_.content(index) != 0;
                if (isPlaced) roots.push_back(tree_.content(index));
            }
        }
        return nowhere;
    }

    const LayoutTree& tree_;
    std::vector<const AnyView*>* shown_;  // null where nobody asks
    LayoutTree::Index next_ = 0;
};

}  // namespace

std::string layoutTreeText(const LayoutTree& tree) {
    NodeFrames frames(tree);
    return viewTreeText(*tree.node(0).view, frames);
}

std::string tracedLayoutText(const LayoutTree& tree, std::vector<const AnyView*>& shown) {
    shown.clear();
    NodeFrames frames(tree, &shown);
    return viewTreeText(*tree.node(0).view, frames);
}

void writeLayoutTree(const LayoutTree& tree, const TextSink& sink) {
    NodeFrames frames(tree);
    writeViewTree(*tree.node(0).view, frames, sink);
}

}  // namespace tavrin::layout
