// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/images/image_decoder.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/platform/ui/views.h"
#include "tavrin/widget/image_renderer.h"

// The formats that are made of pixels show one picture.

namespace tavrin {
namespace {

using ::testing::HasSubstr;

/// A text on a disc that lets half of what is behind it through.
AnyView badge() {
    return ZStack{.children = {Opacity{.value = 0.5, .content = Circle{}}, Text{.content = SharedText("Hello")}}};
}

struct BehindIt {
    const char* name;
    WidgetBackground background;
};

std::vector<BehindIt> backgrounds() {
    return {{"automatic", {}},
            {"none", {WidgetBackground::Kind::none}},
            {"orange", {WidgetBackground::Kind::color, Color::rgb(1, 0.58, 0)}}};
}

std::shared_ptr<const Bitmap> drawn(const RenderOptions& options, PictureFormat format) {
    return decodeImage(ImageRenderer(badge(), options).encode(format));
}

/// The mean difference of a channel, both pictures laid over white.
double meanDifference(const Bitmap& picture, const Bitmap& expected) {
    double sum = 0;
    for (int y = 0; y < expected.height(); ++y)
        for (int x = 0; x < expected.width(); ++x)
            for (const unsigned shift : {0U, 8U, 16U}) {
                const auto channel = [shift](std::uint32_t pixel) {
                    return static_cast<int>(over(pixel, 0xFFFFFFFF) >> shift & 0xFF);
                };
                sum += std::abs(channel(picture.row(y)[x]) - channel(expected.row(y)[x]));
            }
    return sum / (3.0 * expected.width() * expected.height());
}

TEST(PictureFormats, ShowTheSamePixels) {
    for (const auto& [name, background] : backgrounds())
        for (const bool rounded : {false, true}) {
            SCOPED_TRACE(testing::Message() << name << (rounded ? ", rounded" : ""));
            RenderOptions options;
            options.size = {80, 60};
            options.background = background;
            options.rounded = rounded;
            const auto png = drawn(options, PictureFormat::png);
            const auto webp = drawn(options, PictureFormat::webp);
            const auto jpeg = drawn(options, PictureFormat::jpeg);
            ASSERT_TRUE(png && webp && jpeg);
            for (const auto& other : {webp, jpeg})
                ASSERT_EQ(std::pair(other->width(), other->height()), std::pair(png->width(), png->height()));
            for (int y = 0; y < png->height(); ++y)
                ASSERT_TRUE(std::equal(png->row(y), png->row(y) + png->width(), webp->row(y))) << "row " << y;
            EXPECT_TRUE(jpeg->isOpaque());
            EXPECT_LT(meanDifference(*jpeg, *png), 2);
            if (rounded || background.kind == WidgetBackground::Kind::none) {
                EXPECT_EQ(png->row(0)[0], 0U);
                EXPECT_EQ(jpeg->row(0)[0], 0xFFFFFFFF);
            }

            options.quality = 85;
            const auto lossy = drawn(options, PictureFormat::webp);
            ASSERT_TRUE(lossy);
            EXPECT_EQ(lossy->isOpaque(), png->isOpaque());
            EXPECT_LT(meanDifference(*lossy, *png), 2);
        }
}

TEST(PictureFormats, AQualityCountsWhereThereIsOne) {
    RenderOptions options;
    options.size = {80, 60};
    const auto encodedAt = [&](PictureFormat format, std::optional<int> quality) {
        options.quality = quality;
        return ImageRenderer(badge(), options).encode(format);
    };
    for (const PictureFormat format : {PictureFormat::jpeg, PictureFormat::webp}) {
        EXPECT_LT(encodedAt(format, 10).size(), encodedAt(format, 95).size());
        for (const int quality : {-1, 0, 101}) {
            try {
                (void)encodedAt(format, quality);
                ADD_FAILURE() << quality;
            } catch (const TavrinError& error) {
                EXPECT_EQ(error.kind, "Render");
                EXPECT_THAT(error.message, HasSubstr("1 to 100")) << quality;
            }
        }
    }
    EXPECT_EQ(encodedAt(PictureFormat::jpeg, std::nullopt), encodedAt(PictureFormat::jpeg, 85));
    EXPECT_NE(encodedAt(PictureFormat::webp, std::nullopt), encodedAt(PictureFormat::webp, 100));
    for (const PictureFormat format : {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf})
        EXPECT_EQ(encodedAt(format, 1), encodedAt(format, std::nullopt));
}

TEST(PictureFormats, CompressionHoldsForWebpsWithoutLoss) {
    const auto sizeAt = [](PngCompression compression) {
        RenderOptions options;
        options.compression = compression;
        return ImageRenderer(badge(), options).encode(PictureFormat::webp).size();
    };
    EXPECT_LT(sizeAt(PngCompression::balanced), sizeAt(PngCompression::fast));
    EXPECT_LT(sizeAt(PngCompression::small), sizeAt(PngCompression::fast));
}

TEST(PictureFormats, ATooLongWebpIsAnError) {
    RenderOptions options;
    options.size = {16384, 1};
    options.scale = 1;
    ImageRenderer renderer(badge(), options);
    EXPECT_THROW((void)renderer.encode(PictureFormat::webp), TavrinError);
    EXPECT_TRUE(decodeImage(renderer.encode(PictureFormat::jpeg)));
}

}  // namespace
}  // namespace tavrin
