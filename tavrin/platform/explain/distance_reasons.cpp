// SPDX-License-Identifier: MIT
#include <optional>

#include <fmt/format.h>

#include "tavrin/platform/explain/reasons.h"
#include "tavrin/platform/explain/words.h"
#include "tavrin/platform/layout/edge_distances.h"
#include "tavrin/platform/layout/stack_children.h"
#include "tavrin/platform/layout/tree_builder.h"

namespace tavrin::explain {
namespace {

using layout::Axis;
using layout::DistanceCategory;
using layout::EdgeDistances;
using Index = PlacedTree::Index;

/// The text by which the top or bottom edge of a view holds a distance.
std::optional<Index> textBehind(const PlacedTree& placed, Index index, bool atTop, DistanceCategory category) {
    const auto held = [&](Index at) {
        const layout::ViewEdges& edges = placed.tree().edges(at);
        return (atTop ? edges.top : edges.bottom)[category];
    };
    const double distance = held(index);
    while (placed.node(index).kind != ViewKind::text) {
        if (!layout::isStack(placed.node(index).kind)) {
            if (placed.tree().children(index).empty()) return std::nullopt;
            index = placed.tree().content(index);
            continue;
        }
        std::optional<Index> child;
        for (const Index present : placed.presentChildren(index))
            if (held(present) == distance && (!child || !atTop)) child = present;
        if (!child) return std::nullopt;
        index = *child;
    }
    return index;
}

std::string textInWords(const PlacedTree& placed, std::optional<Index> text, DistanceCategory category) {
    const bool isBelow = category == DistanceCategory::belowText;
    const std::string side = isBelow ? "below" : "above";
    if (!text) return fmt::format("{} a text", side);
    const EnvironmentValues& environment = placed.tree().environment();
    const Font font = layout::effectiveFont(*placed.view(*text).as<Text>(), environment);
    const layout::TextDistances distances = layout::textDistances(font, environment.displayScale);
    if (category == DistanceCategory::textToText)
        return distances.leading == 0 ? "none between two texts whose fonts have no leading"
                                      : "the leading of the body font, in whole pixels";
    std::string sum =
        fmt::format("{} of descent and {} of clearance", inWords(distances.descent), inWords(distances.clearance));
    if (isBelow) sum = fmt::format("{} over its capitals, {}", inWords(distances.aboveCapitals), sum);
    return fmt::format("{} a text of {} points: {}", side, inWords(font.size), sum);
}

}  // namespace

std::string reasonOfDistance(const PlacedTree& placed, Index index, Axis axis) {
    const Index previous = placed.previous(index);
    const EdgeDistances& before = placed.tree().edges(previous).last(axis);
    const EdgeDistances& after = placed.tree().edges(index).first(axis);
    const std::optional<DistanceCategory> category = decidingCategory(before, after);
    if (!category) {
        const bool isBesideSpacer = before == EdgeDistances() || after == EdgeDistances();
        return isBesideSpacer ? "none beside a spacer" : "none between such edges";
    }
    if (*category == DistanceCategory::plain) return "the default";
    const bool isBelow = *category == DistanceCategory::belowText;
    return textInWords(placed, textBehind(placed, isBelow ? previous : index, !isBelow, *category), *category);
}

}  // namespace tavrin::explain
