// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/pixel_buffer.h"

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin::paint {
namespace {

TEST(PixelBuffer, RejectsSizesBeforeAllocating) {
    const struct {
        const char* why;
        std::int64_t width;
        std::int64_t height;
    } rows[] = {
        {"no width", 0, 5},
        {"a negative height", 5, -1},
        {"a side too long", 32768, 1},
        {"too many pixels", 20000, 20000},
        {"far too large", 1LL << 62, 1LL << 62},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        try {
            const PixelBuffer made(row.width, row.height);
            ADD_FAILURE() << "no error for " << made.width();
        } catch (const TavrinError& error) {
            EXPECT_EQ(error.kind, "Render");
            EXPECT_NE(error.message.find(std::to_string(row.width)), std::string::npos) << error.message;
        }
    }
    EXPECT_EQ(PixelBuffer(32767, 1).width(), 32767);
}

TEST(PixelBuffer, StartsTransparentAndKnowsWhenItIsOpaque) {
    PixelBuffer picture(3, 2);
    EXPECT_EQ(picture.row(1)[2], 0U);
    EXPECT_FALSE(picture.isOpaque());
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) picture.row(y)[x] = 0xFF000000;
    EXPECT_TRUE(picture.isOpaque());
    picture.row(1)[2] = 0xFE000000;
    EXPECT_FALSE(picture.isOpaque());
}

TEST(PixelBuffer, StraightensEveryChannelAndOpacityRounded) {
    PixelBuffer picture(256, 256);
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha)
        for (std::uint32_t channel = 0; channel <= alpha; ++channel)
            picture.row(static_cast<int>(alpha))[channel] = packPixel(alpha, channel, 0, alpha - channel);
    const std::vector<std::uint8_t> bytes = picture.straightRGBA();
    ASSERT_EQ(bytes.size(), 256U * 256 * 4);
    const auto expected = [](std::size_t channel, std::size_t alpha) {
        return alpha == 0 ? 0 : (channel * 255 + alpha / 2) / alpha;
    };
    for (std::size_t alpha = 0; alpha < 256; ++alpha)
        for (std::size_t channel = 0; channel <= alpha; ++channel) {
            const std::uint8_t* pixel = bytes.data() + (alpha * 256 + channel) * 4;
            ASSERT_EQ(pixel[0], expected(channel, alpha)) << channel << " of " << alpha;
            ASSERT_EQ(pixel[1], 0);
            ASSERT_EQ(pixel[2], expected(alpha - channel, alpha));
            ASSERT_EQ(pixel[3], alpha);
        }
}

TEST(Pixels, BlendRounded) {
    const struct {
        const char* why;
        std::uint32_t actual;
        std::uint32_t expected;
    } rows[] = {
        {"all of a pixel", scalePixel(0x80FF4001, 255), 0x80FF4001},
        {"none of it", scalePixel(0x80FF4001, 0), 0},
        {"half of white", scalePixel(0xFFFFFFFF, 128), 0x80808080},
        {"opaque hides", over(0xFF123456, 0xFFABCDEF), 0xFF123456},
        {"transparent shows", over(0, 0xFFABCDEF), 0xFFABCDEF},
        {"half black over white", over(0x80000000, 0xFFFFFFFF), 0xFF7F7F7F},
        {"the first", mixPixels(0xFF010203, 0x00FFFFFF, 255), 0xFF010203},
        {"the second", mixPixels(0xFF010203, 0x00FFFFFF, 0), 0x00FFFFFF},
        {"a mixture of like pixels", mixPixels(0xFF7F3311, 0xFF7F3311, 77), 0xFF7F3311},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.actual, row.expected);
    }
}

}  // namespace
}  // namespace tavrin::paint
