// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/animation/frame_patch.h"

#include <cstdint>
#include <ostream>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin {

inline void PrintTo(const PixelRect& rect, std::ostream* out) {
    *out << '[' << rect.x0 << ", " << rect.y0 << ", " << rect.x1 << ", " << rect.y1 << ']';
}

}  // namespace tavrin

namespace tavrin::paint {
namespace {

constexpr std::uint32_t whitePixel = 0xFFFFFFFF;
constexpr std::uint32_t redPixel = 0xFFFF0000;
constexpr std::uint32_t translucentPixel = 0x80000000;

PixelBuffer plain(int width, int height, std::uint32_t color = whitePixel) {
    PixelBuffer picture(width, height);
    for (int y = 0; y < height; ++y) std::fill_n(picture.row(y), width, color);
    return picture;
}

struct Dot {
    int x, y;
    std::uint32_t color = redPixel;
};

PixelBuffer with(PixelBuffer picture, const std::vector<Dot>& dots) {
    for (const auto& [x, y, color] : dots) picture.row(y)[x] = color;
    return picture;
}

TEST(FramePatch, AreaHoldsAllThatChanged) {
    const struct {
        const char* why;
        std::vector<Dot> dots;
        PixelRect area;
    } rows[] = {
        {"nothing", {}, {0, 0, 0, 0}},
        {"one pixel", {{3, 2}}, {3, 2, 4, 3}},
        {"the first pixel", {{0, 0}}, {0, 0, 1, 1}},
        {"the last pixel", {{7, 5}}, {7, 5, 8, 6}},
        {"two in a row", {{1, 4}, {6, 4}}, {1, 4, 7, 5}},
        {"two across", {{6, 1}, {2, 4}}, {2, 1, 7, 5}},
        {"opposite corners", {{7, 0}, {0, 5}}, {0, 0, 8, 6}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(changedArea(plain(8, 6), with(plain(8, 6), row.dots)), row.area);
    }
}

TEST(FramePatch, LeavesOutWhatStays) {
    const PixelBuffer before = plain(8, 6);
    const FramePatch patch = patchOf(before, with(before, {{1, 1}, {3, 3}}), {1, 1, 4, 4});
    EXPECT_TRUE(patch.isBlended);
    EXPECT_EQ(patch.pixels, with(PixelBuffer(3, 3), {{0, 0}, {2, 2}}));
}

TEST(FramePatch, ReplacesWhereSomethingBecomesTranslucent) {
    const PixelBuffer before = plain(8, 6);
    const FramePatch patch = patchOf(before, with(before, {{1, 1}, {3, 3, translucentPixel}}), {1, 1, 4, 4});
    EXPECT_FALSE(patch.isBlended);
    EXPECT_EQ(patch.pixels, with(plain(3, 3), {{0, 0}, {2, 2, translucentPixel}}));
}

TEST(FramePatch, TranslucentPixelsThatStayDoNotMatter) {
    const PixelBuffer before = plain(8, 6, translucentPixel);
    const FramePatch patch = patchOf(before, with(before, {{1, 1}, {3, 3}}), {1, 1, 4, 4});
    EXPECT_TRUE(patch.isBlended);
    EXPECT_EQ(patch.pixels, with(PixelBuffer(3, 3), {{0, 0}, {2, 2}}));
}

}  // namespace
}  // namespace tavrin::paint
