// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/picture_difference.h"

#include <gtest/gtest.h>

namespace tavrin::paint {
namespace {

constexpr std::uint32_t gray = 0xFF808080;

PixelBuffer filled(int width, int height, std::uint32_t pixel = gray) {
    PixelBuffer picture(width, height);
    for (int y = 0; y < height; ++y) std::fill_n(picture.row(y), width, pixel);
    return picture;
}

PixelBuffer with(PixelBuffer picture, const std::vector<std::pair<int, int>>& places, std::uint32_t pixel) {
    for (const auto& [x, y] : places) picture.row(y)[x] = pixel;
    return picture;
}

TEST(PictureDifference, CountsPixelsAndTheirBounds) {
    const struct {
        const char* why;
        PixelBuffer before;
        PixelBuffer after;
        int tolerance;
        bool sameSize;
        std::int64_t count;
        PixelRect bounds;
        int greatest;
    } rows[] = {
        {"the same", filled(4, 3), filled(4, 3), 0, true, 0, {}, 0},
        {"one pixel", filled(4, 3), with(filled(4, 3), {{2, 1}}, 0xFF808180), 0, true, 1, {2, 1, 3, 2}, 1},
        {"two corners", filled(4, 3), with(filled(4, 3), {{0, 2}, {3, 0}}, 0xFF000000), 0, true, 2, {0, 0, 4, 3}, 128},
        {"within the tolerance", filled(4, 3), with(filled(4, 3), {{2, 1}}, 0xFF838080), 3, true, 0, {}, 3},
        {"beyond the tolerance", filled(4, 3), with(filled(4, 3), {{2, 1}}, 0xFF848080), 3, true, 1, {2, 1, 3, 2}, 4},
        {"alpha", filled(1, 1, 0xFF000000), filled(1, 1, 0xFE000000), 0, true, 1, {0, 0, 1, 1}, 1},
        {"the whole range", filled(1, 1, 0), filled(1, 1, 0xFFFFFFFF), 254, true, 1, {0, 0, 1, 1}, 255},
        {"a wider one", filled(2, 2), filled(3, 2), 255, false, 2, {2, 0, 3, 2}, 0},
        {"wider and lower", filled(2, 2), filled(3, 1), 0, false, 3, {0, 0, 3, 2}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const PictureDifference found = compare(row.before, row.after, row.tolerance);
        EXPECT_EQ(found.sameSize, row.sameSize);
        EXPECT_EQ(found.count, row.count);
        EXPECT_EQ(found.bounds, row.bounds);
        EXPECT_EQ(found.greatest, row.greatest);
        EXPECT_EQ(found.none(), row.sameSize && row.count == 0);
    }
}

TEST(PictureDifference, IsShownBesideBothPictures) {
    const PixelBuffer before = filled(5, 4);
    const PixelBuffer after = with(filled(6, 4, 0xFF00FF00), {{1, 1}}, gray);
    const PixelBuffer picture = differencePicture(before, after);
    constexpr int gap = 24;
    EXPECT_EQ(picture.width(), 5 + 6 + 6 + 4 * gap);
    EXPECT_EQ(picture.height(), 4 + 2 * gap);
    EXPECT_TRUE(picture.isOpaque());
    EXPECT_EQ(picture.row(gap)[gap], gray);
    EXPECT_EQ(picture.row(gap)[5 + 2 * gap], 0xFF00FF00);
    const std::uint32_t* const row = picture.row(gap + 1) + 11 + 3 * gap;
    EXPECT_EQ(row[0], 0xFFE8112D) << "what differs is red";
    EXPECT_NE(row[1], 0xFFE8112D) << "what does not is not";
    EXPECT_EQ(row[5], 0xFFE8112D) << "what only one of them has is red";
}

}  // namespace
}  // namespace tavrin::paint
