// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/explain/reasons.h"
#include "tavrin/platform/explain/words.h"
#include "tavrin/platform/layout/modifier_rules.h"
#include "tavrin/platform/layout/stack_children.h"

namespace tavrin::explain {
namespace {

using layout::Axis;
using layout::Proposal;
using Index = PlacedTree::Index;

Reason stackReason(const PlacedTree& placed, Index index, Axis axis) {
    const Size answer = placed.answer(index);
    double lengths = 0;
    std::size_t count = 0;
    for (const Index child : placed.tree().children(index)) {
        if (placed.node(child).absent) continue;
        lengths += extent(placed.answer(child), axis);
        ++count;
    }
    if (count == 0) return {"no children", "It answers 0 × 0, since it has no children."};
    const double spacing = extent(answer, axis) - lengths;
    const std::string children = count == 1 ? "child takes" : fmt::format("{} children together take", count);
    std::string sum = fmt::format("its {} {} points of {}", children, inWords(lengths), lengthAlong(axis));
    if (std::isfinite(spacing) && std::abs(spacing) > 0.005) sum += fmt::format(" and {} of spacing", inWords(spacing));
    const auto& offered = extent(placed.proposal(index), axis);
    const bool isOverfull = offered && extent(answer, axis) > *offered + 0.005;
    return {isOverfull ? "more than it was proposed" : fmt::format("around {}", counted(count, "child", "children")),
            fmt::format("It answers {}: {}; it is as {} as its {} child.{}", inWords(answer), sum,
                        axis == Axis::vertical ? "wide" : "high", axis == Axis::vertical ? "widest" : "highest",
                        isOverfull ? " That is more than it was proposed." : "")};
}

/// Which of a flexible frame's bounds decided one dimension.
std::string boundInWords(std::string_view length, const std::optional<double>& minimum,
                         const std::optional<double>& maximum, const std::optional<double>& proposed, double answer,
                         double content) {
    const std::string_view suffix = length == "width" ? "Width" : "Height";
    if (!minimum && !maximum) return fmt::format("its content's {}", length);
    if (minimum && answer == *minimum && (!proposed || *proposed <= *minimum))
        return fmt::format("min{} {}", suffix, inWords(answer));
    if (maximum && answer == *maximum && (!proposed || *proposed >= *maximum))
        return fmt::format("max{} {}", suffix, inWords(answer));
    if (proposed && answer == *proposed) return fmt::format("the {} proposed", length);
    if (answer == content) return fmt::format("its content's {}", length);
    return fmt::format("{}{} {}", minimum && answer == *minimum ? "min" : "max", suffix, inWords(answer));
}

/// What decided both dimensions of a frame; where it is the same, it is said once.
Reason sizeReason(Size answer, const std::string& width, const std::string& height) {
    const auto stem = [](std::string text, std::string_view length) {
        const std::size_t at = text.find(length);
        return at == std::string::npos ? text : text.replace(at, length.size(), "size");
    };
    const bool isSame = stem(width, "width") == stem(height, "height");
    const std::string both = isSame ? stem(width, "width") : width + ", " + height;
    return {both, fmt::format("It answers {}: {}.", inWords(answer), isSame ? both : width + " and " + height)};
}

Reason flexibleFrameReason(const PlacedTree& placed, Index index) {
    const auto& frame = *placed.view(index).as<FlexibleFrame>();
    const Proposal& proposal = placed.proposal(index);
    const Size answer = placed.answer(index);
    const Size content = placed.answer(index + 1);
    const std::string width =
        boundInWords("width", frame.minWidth, frame.maxWidth, proposal.width, answer.width, content.width);
    const std::string height =
        boundInWords("height", frame.minHeight, frame.maxHeight, proposal.height, answer.height, content.height);
    return sizeReason(answer, width, height);
}

Reason fixedFrameReason(const PlacedTree& placed, Index index) {
    const Proposal given = layout::proposalInside(*placed.view(index).as<FixedFrame>(), {});
    const Size answer = placed.answer(index);
    const auto dimension = [](std::string_view length, const std::optional<double>& fixed) {
        return fixed ? fmt::format("the {} given", length) : fmt::format("its content's {}", length);
    };
    return sizeReason(answer, dimension("width", given.width), dimension("height", given.height));
}

Reason paddingReason(const PlacedTree& placed, Index index) {
    const auto* padding = placed.view(index).as<Padding>();
    const EdgeInsets insets =
        padding ? layout::insetsOf(*padding) : layout::insetsOf(*placed.view(index).as<InsetPadding>());
    const auto& [top, leading, bottom, trailing] = insets;
    const bool isEven = top == leading && leading == bottom && bottom == trailing;
    std::string edges;
    for (const auto& [edge, length] : {std::pair("top", top), std::pair("leading", leading),
                                       std::pair("bottom", bottom), std::pair("trailing", trailing)})
        if (length != 0) append(edges, ", ", fmt::format("{} {}", edge, inWords(length)));
    const std::string rule = isEven ? "all edges " + inWords(top) : edges;
    return {"insets: " + rule, fmt::format("It answers {}: its content's {} and its insets ({}).",
                                           inWords(placed.answer(index)), inWords(placed.answer(index + 1)), rule)};
}

/// What a modifier that layout does not see does instead.
std::string drawingInWords(const AnyView& view) {
    switch (view.kind()) {
        case ViewKind::offset: {
            const auto& offset = *view.as<Offset>();
            return fmt::format("moved by {} when drawn", inWords(Point{offset.x, offset.y}));
        }
        case ViewKind::scaleEffect: return "scaled when drawn";
        case ViewKind::rotationEffect:
        case ViewKind::rotation3DEffect:
        case ViewKind::clockHandRotationEffect: return "turned when drawn";
        case ViewKind::clipShape:
        case ViewKind::clipped:
        case ViewKind::cornerRadius: return "clipped when drawn";
        case ViewKind::border: return "a border inside its edges";
        case ViewKind::lineLimit: {
            const auto number = view.as<LineLimit>()->number;
            if (!number) return "texts inside have any number of lines";
            const auto most = static_cast<std::size_t>(std::max<std::int64_t>(1, *number));
            return "texts inside have at most " + counted(most, "line", "lines");
        }
        case ViewKind::zIndex: return fmt::format("drawn at depth {}", inWords(view.as<ZIndex>()->value));
        default: return {};
    }
}

/// Whether some children of a stack yield, and others do not.
bool hasBoth(const PlacedTree& placed, Index stack) {
    bool isFound[2] = {false, false};
    for (const Index child : placed.tree().children(stack))
        if (!placed.node(child).absent) isFound[placed.node(child).yields ? 1 : 0] = true;
    return isFound[0] && isFound[1];
}

}  // namespace

Reason reasonOfAnswer(const PlacedTree& placed, Index index) {
    const AnyView& view = placed.view(index);
    if (placed.tree().children(index).empty() && !layout::isStack(view.kind())) return reasonOfLeaf(placed, index);
    const std::string answer = inWords(placed.answer(index));
    switch (view.kind()) {
        case ViewKind::vstack: return stackReason(placed, index, Axis::vertical);
        case ViewKind::hstack: return stackReason(placed, index, Axis::horizontal);
        case ViewKind::zstack:
            return {"around its children",
                    fmt::format("It answers {}: as wide as its widest and as high as its highest child{}.", answer,
                                hasBoth(placed, index) ? "; those that yield do not count" : "")};
        case ViewKind::fixedFrame: return fixedFrameReason(placed, index);
        case ViewKind::flexibleFrame: return flexibleFrameReason(placed, index);
        case ViewKind::padding:
        case ViewKind::insetPadding: return paddingReason(placed, index);
        case ViewKind::aspectRatio: {
            const auto& [ratio, mode, content] = *view.as<AspectRatio>();
            return {fmt::format("ratio {} ({})", ratio ? inWords(*ratio) : "of its content", name(mode)),
                    fmt::format("It answers {}, its content's size.", answer)};
        }
        case ViewKind::composed: return {"", fmt::format("It answers {}, the size of what it is made of.", answer)};
        default: break;
    }
    const std::string drawn = drawingInWords(view);
    return {drawn.empty() ? "its content's size" : drawn,
            fmt::format("It answers {}, its content's size{}{}.", answer, drawn.empty() ? "" : "; ", drawn)};
}

}  // namespace tavrin::explain
