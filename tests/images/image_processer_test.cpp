// SPDX-License-Identifier: MIT
#include "tavrin/images/image_processer.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

std::shared_ptr<const Bitmap> plain(int width, int height) {
    const std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                                            0x80402010);
    return std::make_shared<const Bitmap>(width, height, pixels);
}

TEST(ImageProcesser, FitsPicturesInASize) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* why;
        int width;
        int height;
        Size maximum;
        int fittedWidth;
        int fittedHeight;
    } rows[] = {
        {"wide", 400, 200, {100, 100}, 100, 50},
        {"tall", 200, 400, {100, 100}, 50, 100},
        {"small enough", 50, 50, {100, 100}, 50, 50},
        {"just fits", 100, 100, {100, 100}, 100, 100},
        {"too wide only", 400, 50, {100, 100}, 100, 13},
        {"too tall only", 50, 400, {100, 100}, 13, 100},
        {"width first, then height", 400, 300, {200, 60}, 80, 60},
        {"a third is exact", 300, 100, {150, 100}, 150, 50},
        {"rounding errors make no pixel", 100, 300, {1000, 99}, 33, 99},
        {"parts of pixels are rounded up", 1000, 333, {100, 100}, 100, 34},
        {"never without a pixel", 1000, 1, {10, 10}, 10, 1},
        {"less than a pixel", 40, 40, {0.5, 0.5}, 1, 1},
        {"only the width is bounded", 400, 200, {100, infinite}, 100, 50},
        {"not bounded", 400, 200, {infinite, infinite}, 400, 200},
        {"a size that is no number bounds nothing", 400, 200, {notANumber, notANumber}, 400, 200},
        {"no width: as it is", 400, 200, {0, 100}, 400, 200},
        {"no height: as it is", 400, 200, {100, 0}, 400, 200},
        {"negative: as it is", 400, 200, {-100, -100}, 400, 200},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto picture = plain(row.width, row.height);
        const auto fitted = ImageProcesser(row.maximum).fit(picture);
        ASSERT_NE(fitted, nullptr);
        EXPECT_EQ(fitted->width(), row.fittedWidth);
        EXPECT_EQ(fitted->height(), row.fittedHeight);
        EXPECT_EQ(fitted->row(fitted->height() - 1)[fitted->width() - 1], 0x80402010);
        EXPECT_EQ(fitted == picture, row.width == row.fittedWidth && row.height == row.fittedHeight)
            << "copied only when scaled";
        EXPECT_EQ(ImageProcesser(row.maximum).fit(picture), fitted) << "made once";
    }
}

TEST(ImageProcesser, LeavesNoPictureAlone) { EXPECT_EQ(ImageProcesser({10, 10}).fit(nullptr), nullptr); }

}  // namespace
}  // namespace tavrin
