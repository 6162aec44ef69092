// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "tavrin/platform/layout/proposal.h"
#include "tavrin/platform/ui/font.h"
#include "tavrin/platform/ui/view_modifiers.h"

// How far apart a stack without a spacing of its own puts two views.
//
// 1. Each edge of a view holds distances by category: one to plain views, others by which texts keep clear of them.
// 2. A leaf has them by what it is: eight points around anything plain, distances from font metrics above and below a
//    text, none around what yields, so that nothing is added to what a spacer leaves.
// 3. They pass outwards: a stack has those of its first and last child along its axis, and the largest of all its
//    children across it; padding and frames make the edges plain that they move; other modifiers change nothing.
// 4. Where two edges meet, the largest distance counts among the categories that both hold; none where they share none.

namespace tavrin::layout {

enum class DistanceCategory : unsigned char {
    plain,
    belowText,   ///< from a text down to what is no text
    aboveText,   ///< from what is no text down to a text
    textToText,  ///< from a text down to another
};

inline constexpr std::array distanceCategories{DistanceCategory::plain, DistanceCategory::belowText,
                                               DistanceCategory::aboveText, DistanceCategory::textToText};

/// What one edge holds, in points.
class EdgeDistances {
public:
    static constexpr double none = -1;

    [[nodiscard]] constexpr double operator[](DistanceCategory category) const {
        return values_[static_cast<std::size_t>(category)];
    }
    [[nodiscard]] constexpr EdgeDistances with(DistanceCategory category, double distance) const {
        EdgeDistances changed = *this;
        changed.values_[static_cast<std::size_t>(category)] = distance;
        return changed;
    }
    /// For each category the larger distance.
    [[nodiscard]] EdgeDistances unionWith(const EdgeDistances& other) const;

    friend bool operator==(const EdgeDistances&, const EdgeDistances&) = default;

private:
    std::array<double, distanceCategories.size()> values_{none, none, none, none};
};

/// The category that decides the distance of two edges that meet: of those that both hold the one with the largest;
/// none where they share none.
[[nodiscard]] std::optional<DistanceCategory> decidingCategory(const EdgeDistances& before, const EdgeDistances& after);
/// The distance of two edges that meet, in points.
[[nodiscard]] double distanceBetween(const EdgeDistances& before, const EdgeDistances& after);

/// The edges of one view.
struct ViewEdges {
    EdgeDistances top = {};
    EdgeDistances leading = {};
    EdgeDistances bottom = {};
    EdgeDistances trailing = {};

    /// The edge that meets the view before it, or after it, in a stack along `axis`.
    [[nodiscard]] const EdgeDistances& first(Axis axis) const { return axis == Axis::vertical ? top : leading; }
    [[nodiscard]] const EdgeDistances& last(Axis axis) const { return axis == Axis::vertical ? bottom : trailing; }

    friend bool operator==(const ViewEdges&, const ViewEdges&) = default;
};

/// Of a shape, a colour, a picture, and of what is padded or framed.
[[nodiscard]] const ViewEdges& plainEdges();

/// What the distances around a text are made of, in points.
struct TextDistances {
    double descent = 0;        ///< of its font
    double clearance = 0;      ///< in whole pixels
    double aboveCapitals = 0;  ///< from its font's capitals to its ascent
    double leading = 0;        ///< in whole pixels

    [[nodiscard]] double aboveText() const { return descent + clearance; }
    [[nodiscard]] double belowText() const { return descent + clearance + aboveCapitals; }
};
/// At so many pixels for each point.
[[nodiscard]] TextDistances textDistances(const Font& font, double scale);
[[nodiscard]] ViewEdges edgesOf(const TextDistances& text);
/// On every edge, for each category, the larger distance of two views.
[[nodiscard]] ViewEdges unionOf(const ViewEdges& a, const ViewEdges& b);

/// With some edges made plain.
[[nodiscard]] ViewEdges withPlain(const ViewEdges& edges, const Edges& sides);

/// The different edges of a tree, each kept once: most views have one of a few.
class EdgeTable {
public:
    using Id = std::uint32_t;
    static constexpr Id none = 0;
    static constexpr Id plain = 1;

    EdgeTable() : edges_{{}, plainEdges()} {}
    [[nodiscard]] const ViewEdges& operator[](Id id) const { return edges_[id]; }
    [[nodiscard]] Id idOf(const ViewEdges& edges);

private:
    struct Hash {
        std::size_t operator()(const ViewEdges& edges) const;
    };
    /// So many are found by looking at each, which is quicker than hashing; further ones by hash.
    static constexpr std::size_t looked = 16;

    std::vector<ViewEdges> edges_;
    std::unordered_map<ViewEdges, Id, Hash> further_;
};

}  // namespace tavrin::layout
