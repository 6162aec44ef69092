// SPDX-License-Identifier: MIT
#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tests/documents/drawn.h"

// Opacities within each other: each composes what it holds, then fades it, however deep it lies.

namespace tavrin {
namespace {

constexpr double value = 0.9;
/// The whole of the drawing, in the middle of a page.
constexpr Size whole{80, 50};

using Channels = std::array<double, 3>;
struct Pair {
    const char* below;
    const char* above;
    Channels belowChannels;
    Channels aboveChannels;
};
/// By turns, from the innermost pair on.
constexpr Pair pairs[] = {
    {"#FF0000", "#00FF00", {255, 0, 0}, {0, 255, 0}},
    {"#0000FF", "#FFFF00", {0, 0, 255}, {255, 255, 0}},
    {"#000000", "#804020", {0, 0, 0}, {128, 64, 32}},
};
const Pair& pairAt(int level) { return pairs[level % 3]; }

/// Two rectangles that overlap, with the next such pair, faded, on top.
std::string nested(int depth) {
    std::string main;
    for (int level = 0; level < depth; ++level) {
        const std::string inside = main.empty() ? "" : ", " + main;
        main = node("zstack",
                    "\"children\": [" + color(pairAt(level).below, frame(60, 40) + "," + offset(-10, -5)) + ", " +
                        color(pairAt(level).above, frame(60, 40) + "," + offset(10, 5)) + inside + "]",
                    opacity(value));
    }
    return main;
}

/// What is seen over white where each pair shows one of its colours.
Channels composed(Channels Pair::*colour, int depth) {
    Channels seen = pairAt(0).*colour;
    for (int level = 1; level <= depth; ++level)
        for (std::size_t c = 0; c < seen.size(); ++c)
            seen[c] = value * seen[c] + (1 - value) * (level < depth ? (pairAt(level).*colour)[c] : 255);
    return seen;
}

void expectComposed(const PixelBuffer& picture, const Page& page, int depth) {
    const struct {
        const char* why;
        double x;
        double y;
        Channels Pair::*colour;
    } rows[] = {
        {"below alone", 5, 5, &Pair::belowChannels},
        {"its lower end", 5, 38, &Pair::belowChannels},
        {"above below", 40, 25, &Pair::aboveChannels},
        {"above alone", 75, 45, &Pair::aboveChannels},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        // Each level rounds to whole levels once more.
        const Channels expected = composed(row.colour, depth);
        const std::uint32_t pixel = at(picture, page, row.x + (page.size.width - whole.width) / 2,
                                       row.y + (page.size.height - whole.height) / 2);
        for (const unsigned c : {0U, 1U, 2U}) EXPECT_NEAR(channel(pixel, 16 - 8 * c), expected[c], 5) << c;
    }
    EXPECT_EQ(at(picture, page, 1, 1), 0xFFFFFFFF);
}

TEST(NestedOpacity, ComposesEachLevel) {
    for (const int depth : {1, 2, 8, 9, 20, 200})
        for (const double scale : {1.0, 3.0}) {
            SCOPED_TRACE(std::to_string(depth) + " at " + std::to_string(scale));
            const Page page{{100, 60}, scale};
            expectComposed(drawn(nested(depth), page), page, depth);
        }
}

TEST(NestedOpacity, IsTheSameInStrips) {
    // So many layers of so large a picture are not held at once.
    const Page page{{338, 354}, 3};
    const PixelBuffer picture = drawn(nested(60), page);
    expectComposed(picture, page, 60);
    for (int y = 0; y < picture.height(); ++y) {
        const auto isAsAbove = [&](int x) { return y == 0 || picture.row(y)[x] == picture.row(y - 1)[x]; };
        // Down the middle and beside it there are two edges each.
        const double edge = (page.size.height - whole.height) / 2;
        for (const double x : {135.0, 169.0, 203.0}) {
            const bool isAnEdge = y == edge * 3 || y == (edge + 10) * 3 || y == (edge + 40) * 3 || y == (edge + 50) * 3;
            ASSERT_TRUE(isAnEdge || isAsAbove(static_cast<int>(x * 3))) << x << ", " << y;
        }
    }
}

TEST(NestedOpacity, OfOneThingIsTheProduct) {
    std::string opacities = opacity(0.9);
    double product = 0.9;
    for (int i = 1; i < 30; ++i, product *= 0.9) opacities += "," + opacity(0.9);
    const std::string children =
        "\"children\": [" + color("#FF0000", frame(60, 40)) + "," + color("#0000FF", frame(40, 60)) + "]";
    EXPECT_LE(distance(drawn(node("zstack", children, opacities)), drawn(node("zstack", children, opacity(product)))),
              0);
}

}  // namespace
}  // namespace tavrin
