// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/pixels/scaling.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

using Pixels = std::vector<std::uint32_t>;

/// Noise with every alpha, premultiplied.
Pixels noise(int width, int height) {
    std::mt19937 random(7);
    Pixels pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (std::uint32_t& pixel : pixels) {
        const auto below = [&](std::uint32_t most) { return static_cast<std::uint32_t>(random()) % (most + 1); };
        const std::uint32_t alpha = below(255);
        pixel = alpha << 24 | below(alpha) << 16 | below(alpha) << 8 | below(alpha);
    }
    return pixels;
}

std::size_t at(int x, int y, int width) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
}

/// How much of source pixel `i` lies under target pixel `at`, or how much it counts where the picture grows.
double share(int from, int to, int place, int i) {
    const double ratio = static_cast<double>(from) / to;
    if (ratio >= 1)
        return std::max(0.0, std::min((place + 1) * ratio, i + 1.0) - std::max(place * ratio, i * 1.0)) / ratio;
    const double middle = std::clamp((place + 0.5) * ratio - 0.5, 0.0, from - 1.0);
    return std::max(0.0, 1 - std::abs(middle - i));
}

/// A channel of a scaled pixel, worked out from every source pixel in double precision.
double exact(const Pixels& pixels, int width, int height, int toWidth, int toHeight, int x, int y, unsigned shift) {
    double sum = 0;
    for (int row = 0; row < height; ++row) {
        const double down = share(height, toHeight, y, row);
        for (int column = 0; down > 0 && column < width; ++column)
            sum += down * share(width, toWidth, x, column) *
                   static_cast<double>(pixels[at(column, row, width)] >> shift & 0xFF);
    }
    return sum;
}

TEST(Scaling, AveragesAndInterpolates) {
    const struct {
        const char* why;
        int width, height, toWidth, toHeight;
    } rows[] = {
        {"an icon", 256, 256, 72, 72},
        {"by a whole number", 60, 40, 20, 10},
        {"a little smaller", 50, 31, 49, 30},
        {"to one pixel", 33, 21, 1, 1},
        {"one row", 100, 1, 37, 1},
        {"one column", 1, 100, 1, 37},
        {"larger", 7, 5, 40, 33},
        {"a little larger", 30, 20, 31, 21},
        {"from one pixel", 1, 1, 5, 9},
        {"wider and lower", 10, 40, 35, 11},
        {"the same", 12, 8, 12, 8},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Pixels source = noise(row.width, row.height);
        const Pixels scaled = scaledPixels({source.data(), row.width, row.height, row.width}, row.toWidth, row.toHeight,
                                           {0, 0, row.toWidth, row.toHeight});
        ASSERT_EQ(scaled.size(), static_cast<std::size_t>(row.toWidth * row.toHeight));
        double worst = 0;
        for (int y = 0; y < row.toHeight; ++y)
            for (int x = 0; x < row.toWidth; ++x) {
                const std::uint32_t pixel = scaled[at(x, y, row.toWidth)];
                for (const unsigned shift : {0U, 8U, 16U, 24U}) {
                    const double want = exact(source, row.width, row.height, row.toWidth, row.toHeight, x, y, shift);
                    worst = std::max(worst, std::abs(want - static_cast<double>(pixel >> shift & 0xFF)));
                    EXPECT_LE(pixel >> shift & 0xFF, pixel >> 24) << "premultiplied";
                }
            }
        EXPECT_LE(worst, 0.501) << "only rounded";
    }
}

TEST(Scaling, KeepsPlainColours) {
    for (const std::uint32_t color : {0xFFFFFFFFU, 0xFF010203U, 0x80402010U, 0U, 0x01010101U}) {
        const Pixels source(37 * 23, color);
        for (const int side : {1, 5, 22, 23, 36, 64, 100})
            EXPECT_EQ(scaledPixels({source.data(), 37, 23, 37}, side, side, {0, 0, side, side}),
                      Pixels(static_cast<std::size_t>(side * side), color))
                << side;
    }
}

TEST(Scaling, MakesOnlyAPart) {
    const Pixels source = noise(61, 47);
    const PixelRows rows{source.data(), 61, 47, 61};
    for (const int side : {20, 150}) {
        const Pixels whole = scaledPixels(rows, side, side, {0, 0, side, side});
        for (const PixelRect& part :
             {PixelRect{0, 0, 3, 2}, PixelRect{7, 5, 19, 20}, PixelRect{side - 1, side - 1, side, side}}) {
            const Pixels scaled = scaledPixels(rows, side, side, part);
            for (int y = part.y0; y < part.y1; ++y)
                for (int x = part.x0; x < part.x1; ++x)
                    ASSERT_EQ(scaled[static_cast<std::size_t>((y - part.y0) * part.width() + x - part.x0)],
                              whole[static_cast<std::size_t>(y * side + x)]);
        }
    }
}

TEST(Scaling, ReadsRowsWithGaps) {
    const Pixels source = noise(20, 10);
    Pixels cut;
    for (int y = 0; y < 10; ++y) cut.insert(cut.end(), source.begin() + y * 20, source.begin() + y * 20 + 15);
    EXPECT_EQ(scaledPixels({source.data(), 15, 10, 20}, 6, 6, {0, 0, 6, 6}),
              scaledPixels({cut.data(), 15, 10, 15}, 6, 6, {0, 0, 6, 6}));
}

TEST(Scaling, ShowsAPieceOfSomethingEnormous) {
    const Pixels source{0xFF000000, 0xFFFFFFFF};
    const Pixels scaled = scaledPixels({source.data(), 2, 1, 2}, 2'000'000, 2'000'000, {999'999, 5, 1'000'001, 6});
    EXPECT_EQ(scaled, (Pixels{0xFF7F7F7F, 0xFF808080})) << "the middle between black and white";
}

}  // namespace
}  // namespace tavrin
