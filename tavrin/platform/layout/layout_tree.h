// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/edge_distances.h"
#include "tavrin/platform/layout/placements.h"
#include "tavrin/platform/layout/proposal.h"
#include "tavrin/platform/text/text_engine.h"
#include "tavrin/platform/ui/any_view.h"
#include "tavrin/platform/ui/environment.h"

namespace tavrin {
struct TavrinError;
}

namespace tavrin::layout {

class LoadedBodies;

/// Hears what is doubtful in a view tree but no error, one sentence each.
using Diagnostics = std::function<void(std::string_view message)>;

struct KeptAnswers;

/// What layout keeps of how it came about.
enum class Recording : unsigned char {
    none,
    placements,  ///< what led to each place, to be explained
    answers,     ///< what was asked and answered, for a later tree to be laid out from
};

/// What texts and shapes inherit from the modifiers around them.
struct Inherited {
    /// At most so many lines for each text; absent: any number. At least 1.
    std::optional<std::int64_t> lineLimit;
    Color foregroundColor;
};

/// One view of a laid-out tree.
struct LayoutNode {
    /// The view; lives as long as the tree.
    const AnyView* view = nullptr;
    /// Where it lies, in points from the widget's top leading corner, before any effect of itself or of what holds it.
    /// Not meaningful when absent. Infinite where a document asks for infinite sizes; never NaN.
    Rect frame = {};
    /// Index one past its last descendant; its children are the nodes in between.
    std::uint32_t end = 0;
    /// Where the tree keeps what the node inherits.
    std::uint32_t inherited = 0;
    /// Where the tree keeps more about a text, a spacer, a geometry reader or what remembers its answers.
    std::uint32_t detail = 0;
    /// Where the tree keeps how far its edges stay from others.
    EdgeTable::Id edges = EdgeTable::none;
    ViewKind kind = ViewKind::emptyView;
    /// No view at all: an `EmptyView`, every modifier around one, and what those modifiers hold.
    bool absent = false;
    /// Whether its answers are remembered.
    bool remembers = false;
    /// A spacer or an empty stack, also in modifiers that leave layout as it is: others come first.
    bool yields = false;
};

/// A view tree unrolled into one list of nodes, in pre-order, each in its place. Composed views stand for themselves,
/// with their body as their only child. The content of a geometry reader, known only when the reader has its size, is a
/// pre-order of its own further back in the list; the reader has no children. Immutable for its users; safe to read
/// from several threads.
class LayoutTree {
public:
    using Index = std::uint32_t;

    LayoutTree() = default;
    LayoutTree(LayoutTree&&) = default;
    LayoutTree& operator=(LayoutTree&&) = default;
    LayoutTree(const LayoutTree&) = delete;  // nodes point into `views_`
    LayoutTree& operator=(const LayoutTree&) = delete;

    /// Goes through the children of one node in document order, absent ones too.
    class Children {
    public:
        class Iterator {
        public:
            using difference_type = std::ptrdiff_t;
            using value_type = Index;

            Iterator() = default;
            Iterator(const LayoutNode* nodes, Index index) : nodes_(nodes), index_(index) {}
            Index operator*() const { return index_; }
            Iterator& operator++() {
                index_ = nodes_[index_].end;
                return *this;
            }
            Iterator operator++(int) {
                const Iterator before = *this;
                ++*this;
                return before;
            }
            friend bool operator==(const Iterator& a, const Iterator& b) { return a.index_ == b.index_; }

        private:
            const LayoutNode* nodes_ = nullptr;
            Index index_ = 0;
        };

        Children(const LayoutNode* nodes, Index parent) : nodes_(nodes), parent_(parent) {}
        [[nodiscard]] Iterator begin() const { return {nodes_, parent_ + 1}; }
        [[nodiscard]] Iterator end() const { return {nodes_, nodes_[parent_].end}; }
        [[nodiscard]] bool empty() const { return nodes_[parent_].end == parent_ + 1; }

    private:
        const LayoutNode* nodes_;
        Index parent_;
    };

    /// All nodes; the root is the first.
    [[nodiscard]] std::span<const LayoutNode> nodes() const { return nodes_; }
    [[nodiscard]] const LayoutNode& node(Index index) const { return nodes_[index]; }
    [[nodiscard]] Children children(Index parent) const { return {nodes_.data(), parent}; }

    /// The node that a modifier changes, a link's label, a composed view's body or a geometry reader's content.
    [[nodiscard]] Index content(Index modifier) const;
    /// The node behind or in front of the content of a background or overlay.
    [[nodiscard]] Index secondary(Index modifier) const;

    /// The children of a stack that are views, in the order in which they are drawn: `zIndex` ascending, document order
    /// among equals.
    [[nodiscard]] std::span<const Index> drawingOrder(Index stack) const;

    /// The lines of a text, broken for its place. Of absent texts: no lines.
    [[nodiscard]] const text::TextBlock& textBlock(Index text) const { return texts_[nodes_[text].detail].block; }

    [[nodiscard]] const ViewEdges& edges(Index index) const { return edges_[nodes_[index].edges]; }

    [[nodiscard]] const Inherited& inherited(Index index) const { return inherited_[nodes_[index].inherited]; }

    /// What a text looks like before it is broken.
    [[nodiscard]] const std::shared_ptr<const text::ShapedText>& shapedText(Index text) const {
        return texts_[nodes_[text].detail].shaped;
    }
    /// Tells an error at which view it happened: what made that one, or the nearest around it of which that is known.
    void noteOrigin(TavrinError& error, Index index) const;

    /// The environment of the root; appearance, date and scale hold everywhere.
    [[nodiscard]] const EnvironmentValues& environment() const { return environment_; }

    /// The size that the root was proposed.
    [[nodiscard]] Size widget() const { return widget_; }

    /// Whether anything doubtful was met, heard or not.
    [[nodiscard]] bool wasDoubted() const { return wasDoubted_; }

    /// What led to the places; null unless layout was asked to note it.
    [[nodiscard]] const Placements* placements() const { return placements_.get(); }

    /// What was asked and answered; null unless layout was asked to keep it. Only for layout.
    [[nodiscard]] const KeptAnswers* answers() const { return answers_.get(); }

    /// How many sizes were asked for, by parents of their children.
    [[nodiscard]] std::uint64_t answerCount() const { return answerCount_; }

private:
    friend LayoutTree layOut(const AnyView&, Size, const EnvironmentValues&, text::TextEngine&, const Diagnostics&,
                             Recording, LoadedBodies*, const LayoutTree*);
    friend class TreeBuilder;
    friend class StackChildren;
    friend class Measurer;
    friend class Placer;

    /// A text, shaped once.
    struct TextItem {
        std::shared_ptr<const text::ShapedText> shaped;
        text::TextBlock block;
        std::size_t bytes = 0;
    };

    /// A node whose answers are remembered: a stack with those of its children that are views, as ranges of
    /// `childLists_`, or a modifier, without.
    struct ContainerItem {
        Index inDocumentOrder = 0;
        Index inDrawingOrder = 0;
        Index count = 0;
        double totalSpacing = 0;
    };

    /// A geometry reader.
    struct ReaderItem {
        Index content = 0;  ///< its content's root; 0 until that is made
        std::uint32_t depth = 0;
    };

    LayoutTree(Size widget, const EnvironmentValues& environment);

    [[nodiscard]] const ContainerItem& container(Index index) const { return containers_[nodes_[index].detail]; }
    [[nodiscard]] std::span<const Index> presentChildren(Index stack) const;

    std::deque<AnyView> views_;  // the root and the bodies of composed views: what the nodes point into
    pool::Vector<LayoutNode> nodes_;
    pool::Vector<Inherited> inherited_;
    EdgeTable edges_;
    pool::Vector<TextItem> texts_;
    HeldBytes heldShapes_;
    pool::Vector<ContainerItem> containers_;
    pool::Vector<ReaderItem> readers_;
    pool::Vector<Index> childLists_;
    std::unique_ptr<Placements> placements_;
    std::shared_ptr<const KeptAnswers> answers_;
    EnvironmentValues environment_;
    Size widget_;
    std::uint64_t answerCount_ = 0;
    bool wasDoubted_ = false;
};

/// Gives every view of a tree its size and place: proposes `widget` to the root and centres it there.
///
/// Evaluates the body of each composed view and the content of each geometry reader once. Reports doubtful frames
/// through `diagnostics`, if any. Throws `TavrinError` of kind "Engine" for views (composed ones unfolded) nested
/// deeper than `AnyView::maximumNesting`, for more than 8,000,000 views, and for a tree whose layout takes unreasonably
/// many steps; passes on what a body throws. Recording changes nothing but what the tree keeps. `loaded`, if any, has
/// the bodies of the tree's views that wait for something, and keeps what is loaded. `before`, if any, is a tree that
/// has kept its answers and was laid out with the same engine: what is the same in it is not asked again, and comes out
/// the same.
LayoutTree layOut(const AnyView& root, Size widget, const EnvironmentValues& environment, text::TextEngine& texts,
                  const Diagnostics& diagnostics = {}, Recording recording = Recording::none,
                  LoadedBodies* loaded = nullptr, const LayoutTree* before = nullptr);

}  // namespace tavrin::layout
