// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/paint/canvas.h"
#include "tests/paint/colors.h"
#include "tests/paint/drawn.h"

// Bitmaps drawn on a raster canvas.

namespace tavrin::paint {
namespace {

using SharedBitmap = std::shared_ptr<const Bitmap>;

template <class ColorAt>
SharedBitmap bitmap(int width, int height, ColorAt colorAt) {
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) pixels.push_back(colorAt(x, y));
    return std::make_shared<const Bitmap>(width, height, pixels);
}

/// Every pixel is another one.
SharedBitmap numbered(int width, int height) {
    return bitmap(width, height,
                  [](int x, int y) { return 0xFF000000 | static_cast<std::uint32_t>(x * 16 << 16 | y * 16 << 8); });
}

/// A quarter, half or whole turn about the middle of a square page, exact.
AffineTransform turned(double side, int quarters) {
    constexpr int sines[] = {0, 1, 0, -1};
    const int sine = sines[quarters % 4];
    const int cosine = sines[(quarters + 1) % 4];
    const double middle = side / 2;
    return {1.0 * cosine,
            1.0 * sine,
            -1.0 * sine,
            1.0 * cosine,
            middle - cosine * middle + sine * middle,
            middle - sine * middle - cosine * middle};
}

TEST(Pictures, AreCopiedInTheirOwnSize) {
    const SharedBitmap picture = numbered(6, 4);
    const PixelBuffer page = drawn({10, 8}, 1, [&](Canvas& canvas) { canvas.draw(picture, {{2, 3}, {6, 4}}, 1); });
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 10; ++x) {
            const bool inside = x >= 2 && x < 8 && y >= 3 && y < 7;
            EXPECT_EQ(page.row(y)[x], inside ? picture->row(y - 3)[x - 2] : 0) << x << ", " << y;
        }
}

TEST(Pictures, FillWholePixels) {
    const SharedBitmap picture = bitmap(4, 4, [](int, int) { return 0xFF00FF00; });
    const PixelBuffer page = drawn({10, 10}, 1, [&](Canvas& canvas) {
        canvas.draw(picture, {{1.4, 1.6}, {5.2, 5.2}}, 1);
    });
    EXPECT_EQ(page.row(1)[1], 0U);
    EXPECT_EQ(page.row(2)[1], 0xFF00FF00);
    EXPECT_EQ(page.row(6)[6], 0xFF00FF00);
    EXPECT_EQ(page.row(7)[6], 0U);
    EXPECT_EQ(page.row(6)[7], 0U);
}

/// Rings, finer and finer outwards, as hard to shrink as it gets.
std::uint32_t ring(int x, int y) {
    const double radius = std::hypot(x - 127.5, y - 127.5);
    const auto level = static_cast<std::uint32_t>(std::lround(127.5 + 127.5 * std::cos(radius * radius / 60)));
    const std::uint32_t alpha = x < 128 ? 0xFF : 0x80;
    return alpha << 24 | (level * alpha / 255) << 16 | ((255 - level) * alpha / 255) << 8 | (level * alpha / 255);
}

TEST(Pictures, ShrinkToTheAverageOfWhatTheyCover) {
    const SharedBitmap icon = bitmap(256, 256, ring);
    const PixelBuffer page = drawn({24, 24}, 3, [&](Canvas& canvas) { canvas.draw(icon, {{0, 0}, {24, 24}}, 1); });
    double squares = 0;
    constexpr double ratio = 256.0 / 72;
    for (int y = 0; y < 72; ++y)
        for (int x = 0; x < 72; ++x) {
            double sums[4] = {};
            for (int row = static_cast<int>(y * ratio); row < (y + 1) * ratio; ++row)
                for (int column = static_cast<int>(x * ratio); column < (x + 1) * ratio; ++column) {
                    const double height = std::min((y + 1) * ratio, row + 1.0) - std::max(y * ratio, row * 1.0);
                    const double width = std::min((x + 1) * ratio, column + 1.0) - std::max(x * ratio, column * 1.0);
                    for (unsigned i = 0; i < 4; ++i)
                        sums[i] += height * width * static_cast<double>(icon->row(row)[column] >> 8 * i & 0xFF);
                }
            for (unsigned i = 0; i < 4; ++i) {
                const double difference = sums[i] / ratio / ratio - static_cast<double>(page.row(y)[x] >> 8 * i & 0xFF);
                squares += difference * difference;
            }
        }
    const double noise = 10 * std::log10(255.0 * 255 / (squares / (72 * 72 * 4)));
    RecordProperty("decibels", std::to_string(noise));
    EXPECT_GE(noise, 50);
}

TEST(Pictures, HaveNoDarkFringe) {
    // A red disc; what is transparent is black, as it is in files.
    const SharedBitmap disc =
        bitmap(100, 100, [](int x, int y) { return std::hypot(x - 49.5, y - 49.5) < 45 ? 0xFFFF0000 : 0; });
    const double turn = std::numbers::pi / 7;
    const struct {
        const char* why;
        AffineTransform transform;
        Rect frame;
    } rows[] = {
        {"smaller", {}, {{0, 0}, {33, 33}}},
        {"larger", {}, {{0, 0}, {300, 300}}},
        {"turned and smaller",
         {std::cos(turn), std::sin(turn), -std::sin(turn), std::cos(turn), 60, 0},
         {{0, 0}, {47, 47}}},
        {"turned and larger",
         {std::cos(turn), std::sin(turn), -std::sin(turn), std::cos(turn), 120, 0},
         {{0, 0}, {220, 220}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const PixelBuffer page = drawn({300, 300}, 1, [&](Canvas& canvas) {
            canvas.fill(Rect{{0, 0}, {300, 300}}, white);
            canvas.transform(row.transform);
            canvas.draw(disc, row.frame, 1);
        });
        int red = 0;
        std::uint32_t leastRed = 0xFF;
        for (int y = 0; y < 300; ++y)
            for (int x = 0; x < 300; ++x) {
                const std::uint32_t pixel = page.row(y)[x];
                leastRed = std::min(leastRed, pixel >> 16 & 0xFF);
                red += (pixel & 0xFFFF) == 0;
            }
        EXPECT_GE(leastRed, 0xFEU) << "white mixes with red to nothing darker";
        EXPECT_GT(red, 300);
    }
}

TEST(Pictures, GrowSmoothlyUpToTheirEdges) {
    const SharedBitmap steps =
        bitmap(4, 2, [](int x, int) { return 0xFF000000 | static_cast<std::uint32_t>(x * 0x505050); });
    const PixelBuffer page = drawn({80, 40}, 1, [&](Canvas& canvas) { canvas.draw(steps, {{0, 0}, {80, 40}}, 1); });
    EXPECT_EQ(page.row(0)[0], 0xFF000000);
    EXPECT_EQ(page.row(39)[79], 0xFFF0F0F0);
    for (int x = 1; x < 80; ++x) {
        const auto step = static_cast<int>(page.row(20)[x] & 0xFF) - static_cast<int>(page.row(20)[x - 1] & 0xFF);
        EXPECT_GE(step, 0) << x;
        EXPECT_LE(step, 5) << x;
    }
}

TEST(Pictures, AreOpaqueUpToTheirEdgesWhenTurned) {
    const SharedBitmap plain = bitmap(3, 3, [](int, int) { return 0xFFFFFFFF; });
    const double turn = 0.5;
    const PixelBuffer page = drawn({100, 100}, 1, [&](Canvas& canvas) {
        canvas.transform({std::cos(turn), std::sin(turn), -std::sin(turn), std::cos(turn), 40, 10});
        canvas.draw(plain, {{0, 0}, {50, 50}}, 1);
    });
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x) {
            const double across = (x + 0.5 - 40) * std::cos(turn) + (y + 0.5 - 10) * std::sin(turn);
            const double down = -(x + 0.5 - 40) * std::sin(turn) + (y + 0.5 - 10) * std::cos(turn);
            const double inside = std::min({across, 50 - across, down, 50 - down});
            if (inside > 1) {
                ASSERT_EQ(page.row(y)[x], 0xFFFFFFFF) << x << ", " << y;
            }
            if (inside < -1) {
                ASSERT_EQ(page.row(y)[x], 0U) << x << ", " << y;
            }
        }
}

TEST(Pictures, FollowTransforms) {
    const SharedBitmap picture = numbered(8, 8);
    const auto expected = [&](int quarters, bool mirrored, int x, int y) {
        for (int i = 0; i < quarters; ++i) {
            const int before = x;
            x = y;
            y = 7 - before;
        }
        return picture->row(y)[mirrored ? 7 - x : x];
    };
    for (const int quarters : {0, 1, 2, 3})
        for (const bool mirrored : {false, true}) {
            SCOPED_TRACE(std::to_string(quarters) + (mirrored ? " quarters, mirrored" : " quarters"));
            const PixelBuffer page = drawn({8, 8}, 1, [&](Canvas& canvas) {
                canvas.transform(turned(8, quarters));
                if (mirrored) canvas.transform({-1, 0, 0, 1, 8, 0});
                canvas.draw(picture, {{0, 0}, {8, 8}}, 1);
            });
            int wrong = 0;
            for (int y = 0; y < 8; ++y)
                for (int x = 0; x < 8; ++x) wrong += page.row(y)[x] != expected(quarters, mirrored, x, y);
            EXPECT_EQ(wrong, 0);
        }
}

TEST(Pictures, ShowThePartThatTheClipLeaves) {
    const SharedBitmap picture = bitmap(64, 64, ring);
    const Rect frame{{-10, -6}, {50, 50}};
    const auto draw = [&](Canvas& canvas) { canvas.draw(picture, frame, 1); };
    for (const bool mirrored : {false, true}) {
        const AffineTransform transform{mirrored ? -1.0 : 1.0, 0, 0, mirrored ? -1.0 : 1.0, mirrored ? 45.0 : 0.0,
                                        mirrored ? 47.0 : 0.0};
        const PixelBuffer whole = drawn({60, 60}, 1, [&](Canvas& canvas) {
            canvas.transform(transform);
            draw(canvas);
        });
        const PixelBuffer clipped = drawn({60, 60}, 1, [&](Canvas& canvas) {
            canvas.clip({{7, 9}, {11, 20}}, false);
            canvas.transform(transform);
            draw(canvas);
        });
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 60; ++x) {
                const bool inside = x >= 7 && x < 18 && y >= 9 && y < 29;
                ASSERT_EQ(clipped.row(y)[x], inside ? whole.row(y)[x] : 0) << x << ", " << y;
            }
    }
}

TEST(Pictures, AreClippedAlongOutlines) {
    const SharedBitmap picture = bitmap(10, 10, [](int, int) { return 0xFF00FF00; });
    for (const double turn : {0.0, 0.3}) {
        const PixelBuffer page = drawn({60, 60}, 1, [&](Canvas& canvas) {
            canvas.fill(Rect{{0, 0}, {60, 60}}, black);
            canvas.transform({std::cos(turn), std::sin(turn), -std::sin(turn), std::cos(turn), 30, 30});
            canvas.save();
            canvas.clip(Circle{}, {{-20, -20}, {40, 40}});
            canvas.draw(picture, {{-20, -20}, {40, 40}}, 1);
            canvas.restore();
        });
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 60; ++x) {
                const double radius = std::hypot(x - 29.5, y - 29.5);
                if (radius < 19) {
                    ASSERT_EQ(page.row(y)[x], 0xFF00FF00) << x << ", " << y;
                }
                if (radius > 21) {
                    ASSERT_EQ(page.row(y)[x], 0xFF000000) << x << ", " << y;
                }
            }
    }
}

TEST(Pictures, Fade) {
    const SharedBitmap plain = bitmap(4, 4, [](int, int) { return 0xFF00FF00; });
    const struct {
        double opacity;
        std::uint32_t pixel;
    } rows[] = {{1, 0xFF00FF00}, {7, 0xFF00FF00}, {0.2, 0x33003300}, {0, 0}, {-1, 0}, {nan, 0}};
    for (const auto& row : rows)
        for (const double turn : {0.0, 0.01}) {
            const PixelBuffer page = drawn({40, 40}, 1, [&](Canvas& canvas) {
                canvas.transform({std::cos(turn), std::sin(turn), -std::sin(turn), std::cos(turn), 0, 0});
                canvas.draw(plain, {{0, 0}, {40, 40}}, row.opacity);
            });
            EXPECT_EQ(page.row(20)[20], row.pixel) << row.opacity;
        }
}

TEST(Pictures, AreDrawnInLayers) {
    const SharedBitmap picture = numbered(6, 6);
    const PixelBuffer page = drawn({20, 20}, 1, [&](Canvas& canvas) {
        canvas.clip({{3, 4}, {12, 12}}, false);
        canvas.beginLayer();
        canvas.draw(picture, {{5, 6}, {6, 6}}, 1);
        canvas.endLayer(1);
    });
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x) EXPECT_EQ(page.row(y + 6)[x + 5], picture->row(y)[x]);
}

TEST(Pictures, AreTheSameTheSecondTime) {
    const SharedBitmap icon = bitmap(256, 256, ring);
    const auto draw = [&](Canvas& canvas) {
        canvas.draw(icon, {{1, 1}, {24, 24}}, 1);
        canvas.transform({0.8, 0.6, -0.6, 0.8, 30, 10});
        canvas.draw(icon, {{1, 1}, {24, 24}}, 0.5);
    };
    EXPECT_EQ(drawn({60, 60}, 2, draw), drawn({60, 60}, 2, draw));
}

TEST(Pictures, SurviveImpossiblePlaces) {
    const SharedBitmap small = numbered(3, 3);
    const SharedBitmap wide = bitmap(40'000, 1, [](int, int) { return 0xFF00FF00; });
    const Rect frames[] = {
        {{nan, 0}, {10, 10}},   {{0, 0}, {infinity, 10}},   {{0, 0}, {0, 10}},         {{0, 0}, {10, -3}},
        {{1e300, 0}, {10, 10}}, {{-1e9, -1e9}, {2e9, 2e9}}, {{0, 0}, {1e-9, 1e-9}},    {{-5e5, 0}, {1e6, 1}},
        {{1e5, 1e5}, {10, 10}}, {{0, 0}, {1e308, 1e308}},   {{-1e308, 0}, {1e308, 9}}, {{3, 3}, {5, 5}},
    };
    const AffineTransform transforms[] = {
        {},
        {-1, 0, 0, 1, 20, 0},
        {0.6, 0.8, -0.8, 0.6, 0, 0},
        {1e6, 0, 0, 1e6, 0, 0},
        {1e5, 1e5, -1e5, 1e5, 0, 0},
        {1e-5, 0, 0, 1e-5, 0, 0},
        {1e-4, 1e-4, -1e-4, 1e-4, 5, 5},
        {1, 0.5, 0.5, 0.2501, 0, 0},
    };
    for (const SharedBitmap& picture : {small, wide})
        for (const Rect& frame : frames)
            for (const AffineTransform& transform : transforms) {
                Canvas canvas = Canvas::raster({20, 20}, 1);
                canvas.transform(transform);
                canvas.draw(picture, frame, 0.5);
                EXPECT_NO_THROW((void)canvas.finishRaster());
            }
}

TEST(Pictures, LargerThanCairoTakesAreDrawnToo) {
    const SharedBitmap wide = bitmap(40'000, 1, [](int, int) { return 0xFF00FF00; });
    const PixelBuffer page = drawn({20, 20}, 1, [&](Canvas& canvas) {
        canvas.draw(wide, {{0, 0}, {20, 5}}, 1);
        canvas.transform({1, 0.01, -0.01, 1, 0, 0});
        canvas.draw(wide, {{-100, 10}, {40'000, 5}}, 1);
    });
    EXPECT_EQ(page.row(2)[10], 0xFF00FF00);
    EXPECT_EQ(page.row(12)[10], 0xFF00FF00);
}

}  // namespace
}  // namespace tavrin::paint
