// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/edge_distances.h"

#include <algorithm>
#include <functional>

#include "tavrin/platform/text/font_metrics.h"

namespace tavrin::layout {
namespace {

using enum DistanceCategory;

constexpr double plainDistance = 8;

/// What the phone adds to a font's descent on either side of a text, in parts of the size.
constexpr double clearanceOfSize = 0.1193359;

}  // namespace

EdgeDistances EdgeDistances::unionWith(const EdgeDistances& other) const {
    EdgeDistances larger = *this;
    for (std::size_t at = 0; at < values_.size(); ++at) larger.values_[at] = std::max(values_[at], other.values_[at]);
    return larger;
}

std::optional<DistanceCategory> decidingCategory(const EdgeDistances& before, const EdgeDistances& after) {
    std::optional<DistanceCategory> deciding;
    double largest = EdgeDistances::none;
    for (const DistanceCategory category : distanceCategories) {
        const bool isShared = before[category] != EdgeDistances::none && after[category] != EdgeDistances::none;
        const double distance = std::max(before[category], after[category]);
        if (!isShared || distance <= largest) continue;
        deciding = category;
        largest = distance;
    }
    return deciding;
}

double distanceBetween(const EdgeDistances& before, const EdgeDistances& after) {
    const std::optional<DistanceCategory> category = decidingCategory(before, after);
    return category ? std::max(before[*category], after[*category]) : 0;
}

const ViewEdges& plainEdges() {
    static constexpr EdgeDistances side = EdgeDistances().with(plain, plainDistance);
    static constexpr ViewEdges edges{
        .top = side.with(belowText, 0), .leading = side, .bottom = side.with(aboveText, 0), .trailing = side};
    return edges;
}

TextDistances textDistances(const Font& font, double scale) {
    const double size = text::drawnSize(font.size);
    return {.descent = text::descentOfSize * size,
            .clearance = text::roundedUpToPixels(clearanceOfSize * size, scale),
            .aboveCapitals = (text::ascentOfSize - text::capHeightOfSize) * size,
            .leading = text::roundedUpToPixels(text::drawnLeading(font.leading), scale)};
}

ViewEdges edgesOf(const TextDistances& text) {
    return {.top = EdgeDistances().with(aboveText, text.aboveText()).with(textToText, text.leading),
            .leading = plainEdges().leading,
            .bottom = EdgeDistances().with(belowText, text.belowText()).with(textToText, 0),
            .trailing = plainEdges().trailing};
}

ViewEdges unionOf(const ViewEdges& a, const ViewEdges& b) {
    return {a.top.unionWith(b.top), a.leading.unionWith(b.leading), a.bottom.unionWith(b.bottom),
            a.trailing.unionWith(b.trailing)};
}

ViewEdges withPlain(const ViewEdges& edges, const Edges& sides) {
    const ViewEdges& plainOnes = plainEdges();
    return {sides.top ? plainOnes.top : edges.top, sides.leading ? plainOnes.leading : edges.leading,
            sides.bottom ? plainOnes.bottom : edges.bottom, sides.trailing ? plainOnes.trailing : edges.trailing};
}

EdgeTable::Id EdgeTable::idOf(const ViewEdges& edges) {
    const auto end = edges_.begin() + static_cast<std::ptrdiff_t>(std::min(edges_.size(), looked));
    const auto found = std::find(edges_.begin(), end, edges);
    if (found != end) return static_cast<Id>(found - edges_.begin());
    const auto next = static_cast<Id>(edges_.size());
    const Id id = next < looked ? next : further_.try_emplace(edges, next).first->second;
    if (id == next) edges_.push_back(edges);
    return id;
}

std::size_t EdgeTable::Hash::operator()(const ViewEdges& edges) const {
    std::size_t hash = 0;
    for (const EdgeDistances* edge : {&edges.top, &edges.leading, &edges.bottom, &edges.trailing})
        for (const DistanceCategory category : distanceCategories)
            hash = hash * 31 + std::hash<double>()((*edge)[category]);
    return hash;
}

}  // namespace tavrin::layout
