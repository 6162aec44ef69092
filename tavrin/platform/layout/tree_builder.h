// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/leaf_rules.h"
#include "tavrin/platform/layout/loaded_bodies.h"
#include "tavrin/platform/text/shape_cache.h"

namespace tavrin::layout {

/// Unrolls a view tree into the nodes of a `LayoutTree`: evaluates bodies, shapes texts, finds out what is absent and
/// what stacks have to know of their children. Sizes and places come later, and after them the contents of geometry
/// readers.
class TreeBuilder {
public:
    /// More views than this are an error: a few shared ones can stand for any number.
    static constexpr std::size_t maximumNodes = 8'000'000;

    TreeBuilder(LayoutTree& tree, LoadedBodies& loaded, text::TextEngine& texts, const Diagnostics& diagnostics)
        : tree_(tree), loaded_(loaded), texts_(texts), diagnostics_(diagnostics) {}

    void addRoot(const AnyView& root);
    /// Makes the content of a geometry reader that has its size.
    void addContent(LayoutTree::Index reader);

private:
    using Index = LayoutTree::Index;
    static constexpr Index noParent = UINT32_MAX;

    /// A view that has no node yet.
    struct Pending {
        const AnyView* view;
        Index parent;  ///< or the geometry reader that it is the content of
        std::uint32_t inherited;
        std::uint32_t depth;
        SpacerAxes axes;
    };

    void unroll(const Pending& root);
    void noteOrigin(TavrinError& error, const Pending& at) const;
    void addNode(const Pending& pending);
    void addChildren(const Pending& pending, Index index);
    void addBody(const Pending& pending, Index index);
    std::uint32_t inheritedInside(const Pending& pending);
    EdgeTable::Id edgesOfText(const Font& font);
    void addText(const Pending& pending, Index index);
    std::uint32_t addContainer();
    std::uint32_t addReader(const Pending& pending);
    void report(const AnyView& view);

    void closeSubtrees(Index first);

    std::shared_ptr<const text::ShapedText> shapeOnce(const SharedText& shown, const Font& font);
    std::shared_ptr<const text::ShapedText> shape(std::string_view shown, const Font& font);

    using Shape = std::pair<const text::TextKey, std::shared_ptr<const text::ShapedText>>;
    std::unordered_map<text::TextKey, Shape::second_type, text::TextKey::Hash, std::equal_to<>, pool::Allocator<Shape>>
        shapes_;  // by the texts of the tree's views
    std::optional<Font> lastFont_;
    EdgeTable::Id lastEdges_ = EdgeTable::none;
    LayoutTree& tree_;
    LoadedBodies& loaded_;
    text::TextEngine& texts_;
    const Diagnostics& diagnostics_;
    pool::Vector<Pending> pending_;
    pool::Vector<Index> parents_;
};

/// The font that a text is drawn in.
Font effectiveFont(const Text& text, const EnvironmentValues& environment);

}  // namespace tavrin::layout
