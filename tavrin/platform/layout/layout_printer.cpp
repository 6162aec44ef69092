#include "tavrin/platform/layout/layout_printer.h"

#include "tavrin/platform/ui/view_tree.h"

namespace tavrin::layout {
namespace {

/// The nodes of a tree, in the order in which a printer comes to their views.
class NodeFrames final : public ViewFrames {
public:
    explicit NodeFrames(const LayoutTree& tree) : tree_(tree) {}

    std::size_t enter() override {
        const LayoutTree::Index entered = next_;
        // What a composed view unfolds into is not printed.
        next_ = tree_.node(entered).kind == ViewKind::composed ? tree_.node(entered).end : entered + 1;
        return entered;
    }

    [[nodiscard]] std::optional<Rect> frame(std::size_t entered) const override {
        const LayoutNode& node = tree_.nodes()[entered];
        return node.absent ? std::nullopt : std::optional(node.frame);
    }

private:
    const LayoutTree& tree_;
    LayoutTree::Index next_ = 0;
};

}  // namespace

std::string layoutTreeText(const LayoutTree& tree) {
    NodeFrames frames(tree);
    return viewTreeText(*tree.node(0).view, frames);
}

}  // namespace tavrin::layout
