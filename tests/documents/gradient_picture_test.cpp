// SPDX-License-Identifier: MIT
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/paint/oklab.h"
#include "tests/documents/drawn.h"

// Gradients in documents: their values, and that no bands are seen.

namespace tavrin {
namespace {

std::string gradient(const char* colors, const char* start, const char* end) {
    return node("color", R"("gradient": true, "value": ")" + std::string(colors) + R"(", "start": ")" + start +
                             R"(", "end": ")" + end + "\"");
}

/// The grays of evenly spaced colours, and black that comes out of nothing over white.
double grayAt(const std::vector<int>& levels, double place) {
    const double along = place * static_cast<double>(levels.size() - 1);
    const auto i = std::min(static_cast<std::size_t>(along), levels.size() - 2);
    const auto gray = [](int level) { return paint::oklabOf({level / 255.0, level / 255.0, level / 255.0, 1}); };
    return 255 * paint::mixed(gray(levels[i]), gray(levels[i + 1]), along - static_cast<double>(i)).red;
}

TEST(GradientPictures, HaveNoBands) {
    const struct {
        const char* why;
        const char* colors;
        std::function<double(double)> level;
    } rows[] = {
        {"every level", "#000000-#FFFFFF",
         [](double place) {
             return grayAt({0, 255}, place);
         }},
        {"backwards", "#FFFFFF-#000000",
         [](double place) {
             return grayAt({255, 0}, place);
         }},
        {"a slow one", "#404040-#505050",
         [](double place) {
             return grayAt({0x40, 0x50}, place);
         }},
        {"a slower one", "#808080-#838383",
         [](double place) {
             return grayAt({0x80, 0x83}, place);
         }},
        {"translucent black over white", "#00000000-#000000", [](double place) { return 255 * (1 - place); }},
        {"through a colour on the way", "#000000-#808080-#FFFFFF",
         [](double place) {
             return grayAt({0, 0x80, 255}, place);
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const PixelBuffer picture = drawn(gradient(row.colors, "leading", "trailing"), {{338, 4}, 3});
        ASSERT_EQ(picture.width(), 1014);
        const int first = static_cast<int>(std::lround(row.level(0)));
        const int last = static_cast<int>(std::lround(row.level(1)));
        std::map<int, int> widths;
        std::map<int, int> expectedWidths;
        for (int x = 0; x < 1014; ++x) {
            const std::uint32_t pixel = picture.row(6)[x];
            const int level = channel(pixel, 0);
            ASSERT_EQ(channel(pixel, 8), level) << "gray all along";
            ASSERT_EQ(channel(pixel, 16), level);
            const double expected = row.level((x + 0.5) / 1014);
            ASSERT_NEAR(level, expected, 1.3) << x;
            ++widths[level];
            ++expectedWidths[static_cast<int>(std::lround(expected))];
            if (x > 0) {
                const int step = level - channel(picture.row(6)[x - 1], 0);
                ASSERT_LE(std::abs(step), 1) << "no step is larger than one level, at " << x;
                ASSERT_GE(step * (last - first), 0) << "monotone, at " << x;
            }
            for (const int y : {0, 11}) ASSERT_EQ(picture.row(y)[x], pixel) << "each row is the same";
        }
        EXPECT_EQ(widths.size(), static_cast<std::size_t>(std::abs(last - first) + 1));
        for (const auto& [level, width] : widths)
            EXPECT_NEAR(width, expectedWidths[level], 2 + 0.25 * expectedWidths[level])
                << "as broad as it is, " << level;
        EXPECT_EQ(channel(picture.row(6)[0], 0), first);
        EXPECT_EQ(channel(picture.row(6)[1013], 0), last);
    }
}

TEST(GradientPictures, AreRightInEveryDirection) {
    const paint::Oklab from = paint::oklabOf({0x20 / 255.0, 0xC0 / 255.0, 1, 1});
    const paint::Oklab to = paint::oklabOf({1, 0x80 / 255.0, 0x10 / 255.0, 1});
    const struct {
        const char* start;
        const char* end;
        UnitPoint from;
        UnitPoint to;
    } rows[] = {
        {"leading", "trailing", {0, 0.5}, {1, 0.5}},
        {"trailing", "leading", {1, 0.5}, {0, 0.5}},
        {"top", "bottom", {0.5, 0}, {0.5, 1}},
        {"bottom", "top", {0.5, 1}, {0.5, 0}},
        {"topLeading", "bottomTrailing", {0, 0}, {1, 1}},
        {"bottomLeading", "topTrailing", {0, 1}, {1, 0}},
        {"center", "bottomTrailing", {0.5, 0.5}, {1, 1}},
        {"zero", "trailing", {0, 0}, {1, 0.5}},
        {"topTrailing", "center", {1, 0}, {0.5, 0.5}},
    };
    for (const auto& row : rows) {
        for (const double scale : {1.0, 3.0, 2.75}) {
            SCOPED_TRACE(std::string(row.start) + " to " + row.end + " at " + std::to_string(scale));
            const PixelBuffer picture = drawn(gradient("#20C0FF-#FF8010", row.start, row.end), {{338, 158}, scale});
            const double width = picture.width();
            const double height = picture.height();
            // In points as the document has them; at 2.75 the bounds end within a pixel.
            const double dx = (row.to.x - row.from.x) * 338 * scale;
            const double dy = (row.to.y - row.from.y) * 158 * scale;
            for (int y = 0; y < picture.height(); y += 7)
                for (int x = 0; x < picture.width(); x += 5) {
                    const double along = ((x + 0.5 - row.from.x * width) * dx + (y + 0.5 - row.from.y * height) * dy) /
                                         (dx * dx + dy * dy);
                    const std::uint32_t pixel = picture.row(y)[x];
                    const RGBA expected = paint::mixed(from, to, std::clamp(along, 0.0, 1.0));
                    ASSERT_NEAR(channel(pixel, 16), 255 * expected.red, 2.5) << x << ", " << y;
                    ASSERT_NEAR(channel(pixel, 8), 255 * expected.green, 2.5) << x << ", " << y;
                    ASSERT_NEAR(channel(pixel, 0), 255 * expected.blue, 2.5) << x << ", " << y;
                }
        }
    }
}

TEST(GradientPictures, SlopesHaveNoBands) {
    // Level by level also across: a diagonal's neighbours never differ by more than one.
    const PixelBuffer picture = drawn(gradient("#000000-#FFFFFF", "topLeading", "bottomTrailing"), {{338, 158}, 3});
    std::set<int> levels;
    for (int y = 1; y < picture.height(); ++y)
        for (int x = 1; x < picture.width(); ++x) {
            const int level = channel(picture.row(y)[x], 0);
            levels.insert(level);
            const int left = level - channel(picture.row(y)[x - 1], 0);
            const int above = level - channel(picture.row(y - 1)[x], 0);
            ASSERT_TRUE(left == 0 || left == 1) << x << ", " << y;
            ASSERT_TRUE(above == 0 || above == 1) << x << ", " << y;
        }
    EXPECT_EQ(levels.size(), 256U);
}

TEST(GradientPictures, PassThroughTheirStops) {
    const PixelBuffer picture = drawn(gradient("#FF0000-#00FF00-#0000FF", "leading", "trailing"), {{338, 4}, 3});
    const struct {
        const char* why;
        int x;
        std::uint32_t pixel;
    } rows[] = {
        {"the first colour", 0, 0xFFFF0000},    {"half way to the second", 253, 0xFFD0A800},
        {"the second colour", 507, 0xFF00FF00}, {"half way to the third", 760, 0xFF00AABF},
        {"the third colour", 1013, 0xFF0000FF},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        // Channels rise steeply out of black: half a pixel further it is as much.
        EXPECT_LE(distance(picture.row(6)[row.x], row.pixel), 5) << std::hex << picture.row(6)[row.x];
    }
    EXPECT_EQ(drawn(gradient("#102030", "top", "bottom")).row(30)[50], 0xFF102030U) << "one colour is plain";
    EXPECT_EQ(drawn(gradient("#FF0000-#102030", "top", "top")).row(30)[50], 0xFF102030U)
        << "without a way it is the last";
}

TEST(GradientPictures, FillWhatIsCutOfThem) {
    // The same values whether cut by a clip, rounded or whole.
    const char* const colors =
        R"("gradient": true, "value": "#FF0000-#8000FF00-#0000FF", "start": "topLeading", "end": "bottomTrailing")";
    for (const double scale : scales) {
        SCOPED_TRACE(scale);
        const Page page{{338, 158}, scale};
        const PixelBuffer whole = drawn(node("color", colors), page);
        const PixelBuffer cut = drawn(node("color", colors, R"({"type": "cornerRadius", "radius": 24})"), page);
        for (int y = 0; y < whole.height(); ++y) {
            ASSERT_EQ(whole.row(y)[whole.width() / 2], cut.row(y)[whole.width() / 2]);
            const bool inTheMiddle = y > 26 * scale && y < whole.height() - 26 * scale;
            if (inTheMiddle) {
                ASSERT_EQ(whole.row(y)[0], cut.row(y)[0]);
            }
        }
        EXPECT_EQ(cut.row(0)[0], 0xFFFFFFFF);
    }
}

}  // namespace
}  // namespace tavrin
