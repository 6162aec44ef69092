// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/tree_builder.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/modifier_rules.h"
#include "tavrin/platform/layout/stack_children.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::layout {
namespace {

/// Calls `visit` for each view that `view` holds, in the order of its fields.
template <class Visit>
void forEachChild(const AnyView& view, const Visit& visit) {
    visitPrimitive(view, [&]<class V>(const V& primitive) {
        if constexpr (requires { V::fields; }) {
            forEachField<V>([&]<class Value>(const Field<V, Value>& field) {
                if constexpr (std::same_as<Value, AnyView>) {
                    visit(primitive.*field.member);
                } else if constexpr (std::same_as<Value, ViewList>) {
                    for (const AnyView& child : primitive.*field.member) visit(child);
                }
            });
        }
    });
}

SpacerAxes axesInside(ViewKind kind, SpacerAxes outside) {
    switch (kind) {
        case ViewKind::vstack: return SpacerAxes::vertical;
        case ViewKind::hstack: return SpacerAxes::horizontal;
        case ViewKind::zstack: return SpacerAxes::both;
        default: return outside;
    }
}

/// Looking a text up takes a step for so many bytes of it.
constexpr std::size_t bytesLookedUp = 64;

std::optional<std::int64_t> atLeastOne(std::optional<std::int64_t> lines) {
    return lines ? std::optional(std::max<std::int64_t>(1, *lines)) : std::nullopt;
}

/// What asks its content more than once remembers its answers, so that nesting does not multiply the work. Modifiers
/// ask for an answer and, to be placed, once more; it is enough that some do in each long chain of them.
bool remembersAnswers(ViewKind kind, std::uint32_t depth) {
    constexpr std::uint32_t longChain = 8;
    if (isStack(kind) || kind == ViewKind::aspectRatio) return true;
    const bool isModifier = traitsOf(kind).holds != ViewTraits::Holds::nothing && kind != ViewKind::geometryReader;
    return isModifier && depth % longChain == 0;
}

}  // namespace

Font effectiveFont(const Text& text, const EnvironmentValues& environment) {
    Font font = text.font.value_or(environment.font);
    if (text.fontWeight) font.weight = *text.fontWeight;
    return font;
}

void TreeBuilder::addRoot(const AnyView& root) {
    const EnvironmentValues& environment = tree_.environment_;
    tree_.inherited_.push_back({atLeastOne(environment.lineLimit), environment.foregroundColor});
    unroll({&tree_.views_.emplace_back(root), noParent, 0, 1, SpacerAxes::both});
}

void TreeBuilder::addContent(Index reader) {
    const LayoutNode& node = tree_.nodes_[reader];
    LayoutTree::ReaderItem& item = tree_.readers_[node.detail];
    const auto& makeContent = node.view->as<GeometryReader>()->content;
    const AnyView& content =
        tree_.views_.emplace_back(makeContent ? makeContent(GeometryProxy{node.frame.size}) : AnyView());
    item.content = static_cast<Index>(tree_.nodes_.size());
    unroll({&content, reader, node.inherited, item.depth + 1, SpacerAxes::both});
}

/// Adds a view and everything in it.
void TreeBuilder::unroll(const Pending& root) {
    const auto first = static_cast<Index>(tree_.nodes_.size());
    pending_.push_back(root);
    Pending next = root;
    try {
        while (!pending_.empty()) {
            next = pending_.back();
            pending_.pop_back();
            addNode(next);
        }
    } catch (TavrinError& error) {
        noteOrigin(error, next);
        throw;
    }
    closeSubtrees(first);
    StackChildren(tree_).prepare(first);
}

/// The same as the tree's, while it is not known yet where nodes end.
void TreeBuilder::noteOrigin(TavrinError& error, const Pending& at) const {
    if (!error.origin) error.origin = at.view->box().origin;
    for (Index outer = at.parent; outer != noParent && !error.origin; outer = parents_[outer])
        error.origin = tree_.nodes_[outer].view->box().origin;
}

void TreeBuilder::addNode(const Pending& pending) {
    if (pending.depth > AnyView::maximumNesting)
        throw TavrinError("Engine", "views are nested deeper than " + std::to_string(AnyView::maximumNesting));
    if (tree_.nodes_.size() + pending_.size() >= maximumNodes)
        throw TavrinError("Engine", "layout has more than " + std::to_string(maximumNodes) + " views");

    Meter::ofThisThread().step();
    const auto index = static_cast<Index>(tree_.nodes_.size());
    const ViewKind kind = pending.view->kind();
    LayoutNode& node = tree_.nodes_.emplace_back();
    parents_.push_back(pending.parent);
    node.view = pending.view;
    node.kind = kind;
    node.inherited = pending.inherited;
    if (kind == ViewKind::spacer) node.detail = static_cast<std::uint32_t>(pending.axes);
    if (kind == ViewKind::text) addText(pending, index);
    node.remembers = remembersAnswers(kind, pending.depth);
    if (node.remembers) node.detail = addContainer();
    if (kind == ViewKind::geometryReader) node.detail = addReader(pending);
    if (kind == ViewKind::flexibleFrame) report(*pending.view);

    if (kind == ViewKind::composed) {
        addBody(pending, index);
    } else {
        addChildren(pending, index);
    }
}

void TreeBuilder::addChildren(const Pending& pending, Index index) {
    const ViewKind kind = pending.view->kind();
    const std::size_t first = pending_.size();
    const std::uint32_t inherited = inheritedInside(pending);
    const SpacerAxes axes = axesInside(kind, pending.axes);
    forEachChild(*pending.view, [&](const AnyView& child) {
        if (pending_.size() >= maximumNodes) return;  // the bound is reported by the next node
        pending_.push_back({&child, index, inherited, pending.depth + 1, axes});
    });
    // A second view comes before the content; it is in no stack.
    if (traitsOf(kind).holdsSecond()) pending_[first].axes = SpacerAxes::both;
    // The last to be pushed is the first to be taken.
    std::reverse(pending_.begin() + static_cast<std::ptrdiff_t>(first), pending_.end());
}

void TreeBuilder::addBody(const Pending& pending, Index index) {
    EnvironmentValues environment = tree_.environment_;
    const Inherited& inherited = tree_.inherited_[pending.inherited];
    environment.lineLimit = inherited.lineLimit;
    environment.foregroundColor = inherited.foregroundColor;
    const AnyView& body = tree_.views_.emplace_back(loaded_.body(pending.view->box(), environment));
    pending_.push_back({&body, index, pending.inherited, pending.depth + 1, pending.axes});
}

std::uint32_t TreeBuilder::inheritedInside(const Pending& pending) {
    Inherited inside = tree_.inherited_[pending.inherited];
    if (const auto* limit = pending.view->as<LineLimit>()) {
        inside.lineLimit = atLeastOne(limit->number);
    } else if (const auto* foreground = pending.view->as<ForegroundColor>()) {
        inside.foregroundColor = foreground->color;
    } else {
        return pending.inherited;
    }
    tree_.inherited_.push_back(inside);
    return static_cast<std::uint32_t>(tree_.inherited_.size() - 1);
}

void TreeBuilder::addText(const Pending& pending, Index index) {
    const Text& text = *pending.view->as<Text>();
    const Font font = effectiveFont(text, tree_.environment_);
    LayoutTree::TextItem item;
    if (const auto* date = std::get_if<Date>(&text.content)) {
        const std::string shown = timerText(*date, tree_.environment_.date);
        item.bytes = shown.size();
        item.shaped = shape(shown, font);
    } else {
        const SharedText& shown = std::get<SharedText>(text.content);
        item.bytes = shown.size();
        item.shaped = shapeOnce(shown, font);
    }
    LayoutNode& node = tree_.nodes_[index];
    node.detail = static_cast<std::uint32_t>(tree_.texts_.size());
    node.edges = edgesOfText(font);
    tree_.texts_.push_back(std::move(item));
}

/// Where the tree keeps the edges of a text; neighbours often have one font.
EdgeTable::Id TreeBuilder::edgesOfText(const Font& font) {
    if (!lastFont_ || *lastFont_ != font) {
        lastFont_ = font;
        lastEdges_ = tree_.edges_.idOf(edgesOf(textDistances(font, tree_.environment_.displayScale)));
    }
    return lastEdges_;
}

/// However often a text stands in the tree, it is shaped and held once.
std::shared_ptr<const text::ShapedText> TreeBuilder::shapeOnce(const SharedText& shown, const Font& font) {
    Meter::ofThisThread().step(shown.size() / bytesLookedUp);
    const auto [known, isNew] = shapes_.try_emplace(text::TextKey{shown, font});
    if (isNew) known->second = shape(shown, font);
    return known->second;
}

std::shared_ptr<const text::ShapedText> TreeBuilder::shape(std::string_view shown, const Font& font) {
    std::shared_ptr<const text::ShapedText> shaped = texts_.shape(shown, font);
    tree_.heldShapes_.grow(shaped->bytes());
    return shaped;
}

std::uint32_t TreeBuilder::addContainer() {
    tree_.containers_.emplace_back();
    return static_cast<std::uint32_t>(tree_.containers_.size() - 1);
}

std::uint32_t TreeBuilder::addReader(const Pending& pending) {
    tree_.readers_.push_back({.depth = pending.depth});
    return static_cast<std::uint32_t>(tree_.readers_.size() - 1);
}

void TreeBuilder::report(const AnyView& view) {
    if (!isContradictory(*view.as<FlexibleFrame>())) return;
    tree_.wasDoubted_ = true;
    if (diagnostics_) diagnostics_("a frame's minimum is larger than its maximum; the minimum holds");
}

void TreeBuilder::closeSubtrees(Index first) {
    for (auto index = static_cast<Index>(tree_.nodes_.size()); index-- > first;) {
        LayoutNode& node = tree_.nodes_[index];
        node.end = std::max(node.end, index + 1);
        if (index > first) {
            Index& outer = tree_.nodes_[parents_[index]].end;
            outer = std::max(outer, node.end);
        }
        const bool changesContent = !isStack(node.kind) && !tree_.children(index).empty();
        node.absent = node.kind == ViewKind::emptyView || (changesContent && tree_.node(tree_.content(index)).absent);
    }
}

}  // namespace tavrin::layout
