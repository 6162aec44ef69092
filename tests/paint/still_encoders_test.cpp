// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <future>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/images/image_decoder.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/jpeg_encoder.h"
#include "tavrin/platform/paint/webp_encoder.h"

// WebPs and JPEGs of one picture.

namespace tavrin::paint {
namespace {

using ::testing::HasSubstr;

constexpr std::array<PngCompression, 3> efforts = enumerators<PngCompression>;

/// Each pixel any one, of any opacity.
PixelBuffer noiseOf(int width, int height, bool isOpaque) {
    std::mt19937 random(static_cast<unsigned>(width * 1000 + height));
    PixelBuffer picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint32_t color = 0xFF000000 | static_cast<std::uint32_t>(random());
            picture.row(y)[x] = isOpaque ? color : scalePixel(color, static_cast<std::uint32_t>(random()) >> 24);
        }
    return picture;
}

/// Colours that go from side to side, as a whole ever clearer towards the bottom.
PixelBuffer fadingGradient(int width, int height) {
    PixelBuffer picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto share = static_cast<std::uint32_t>(255 * x / width);
            picture.row(y)[x] =
                scalePixel(packPixel(255, share, 128, 255 - share), static_cast<std::uint32_t>(255 - 255 * y / height));
        }
    return picture;
}

struct Channels {
    int alpha, red, green, blue;
};
Channels channelsOf(std::uint32_t pixel) {
    const auto channel = [pixel](unsigned shift) { return static_cast<int>(pixel >> shift & 0xFF); };
    return {channel(24), channel(16), channel(8), channel(0)};
}

/// The most by which a channel of the decoded file differs from what is expected; none where it is no such picture.
std::optional<int> differenceOf(const std::string& file, const PixelBuffer& picture,
                                const std::function<std::uint32_t(std::uint32_t)>& expected) {
    const auto decoded = decodeImage(file);
    if (!decoded || decoded->width() != picture.width() || decoded->height() != picture.height()) return std::nullopt;
    int most = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const Channels is = channelsOf(decoded->row(y)[x]);
            const Channels was = channelsOf(expected(picture.row(y)[x]));
            most = std::max({most, std::abs(is.alpha - was.alpha), std::abs(is.red - was.red),
                             std::abs(is.green - was.green), std::abs(is.blue - was.blue)});
        }
    return most;
}

std::uint32_t asItIs(std::uint32_t pixel) { return pixel; }
std::uint32_t overWhite(std::uint32_t pixel) { return over(pixel, 0xFFFFFFFF); }

struct Encoder {
    const char* name;
    std::function<std::string(const PixelBuffer&)> encode;
};

std::vector<Encoder> encoders() {
    std::vector<Encoder> all{
        {"JPEG", [](const PixelBuffer& picture) { return encodeJpeg(picture); }},
        {"WebP with loss", [](const PixelBuffer& picture) { return encodeWebp(picture, PngCompression::fast, 85); }}};
    for (const PngCompression effort : efforts)
        all.push_back(
            {name(effort).data(), [effort](const PixelBuffer& picture) { return encodeWebp(picture, effort); }});
    return all;
}

/// What the call costs, whatever comes of it.
Cost costOf(const std::function<void()>& work, const RenderBudget& budget = {}) {
    Cost cost;
    {
        const Metering metering(budget, cost);
        work();
    }
    return cost;
}

TEST(WebpEncoder, LosesNothingWithoutAQuality) {
    for (const PngCompression effort : efforts)
        for (const bool isOpaque : {true, false})
            for (const auto& [width, height] : {std::pair{1, 1}, {1, 70}, {70, 1}, {3, 5}, {61, 67}, {300, 40}}) {
                const PixelBuffer picture = noiseOf(width, height, isOpaque);
                EXPECT_EQ(differenceOf(encodeWebp(picture, effort), picture, asItIs), 0)
                    << name(effort) << ' ' << isOpaque << ' ' << width << " x " << height;
            }
}

TEST(WebpEncoder, AQualityLosesColoursButNoOpacity) {
    const PixelBuffer picture = fadingGradient(200, 150);
    std::size_t last = 0;
    for (const int quality : {1, 30, 85, 100}) {
        const std::string file = encodeWebp(picture, PngCompression::fast, quality);
        EXPECT_GT(file.size(), last) << quality;
        last = file.size();
        const auto opacities = [](std::uint32_t pixel) { return pixel & 0xFF000000; };
        const auto decoded = decodeImage(file);
        ASSERT_TRUE(decoded) << quality;
        for (int y = 0; y < picture.height(); ++y)
            ASSERT_TRUE(std::ranges::equal(std::span(decoded->row(y), 200), std::span(picture.row(y), 200), {},
                                           opacities, opacities))
                << quality << " at " << y;
        if (quality >= 85) {
            EXPECT_LE(differenceOf(file, picture, asItIs), 8) << quality;
        }
    }
}

TEST(JpegEncoder, LiesOverWhite) {
    const struct {
        const char* why;
        PixelBuffer picture;
        int most;
    } rows[] = {
        {"transparent", PixelBuffer(20, 10), 0},
        {"a gradient", fadingGradient(200, 150), 8},
        {"one pixel", noiseOf(1, 1, false), 2},
        {"sides that are no multiples of blocks", fadingGradient(13, 21), 24},
        {"more than the first of the memory for files", fadingGradient(1500, 1500), 8},
    };
    for (const auto& row : rows) {
        const std::optional<int> difference = differenceOf(encodeJpeg(row.picture), row.picture, overWhite);
        ASSERT_TRUE(difference) << row.why;
        EXPECT_LE(*difference, row.most) << row.why;
    }
}

TEST(JpegEncoder, AQualityIsKept) {
    const PixelBuffer picture = noiseOf(300, 300, true);
    std::size_t lastSize = 0;
    int lastDifference = 256;
    for (const int quality : {1, 30, 85, 100}) {
        const std::string file = encodeJpeg(picture, quality);
        const std::optional<int> difference = differenceOf(file, picture, overWhite);
        ASSERT_TRUE(difference) << quality;
        EXPECT_GT(file.size(), lastSize) << quality;
        EXPECT_LE(*difference, lastDifference) << quality;
        lastSize = file.size();
        lastDifference = *difference;
    }
    EXPECT_LE(lastDifference, 4);
    EXPECT_GT(lastSize, std::size_t{1} << 17) << "the memory for the file had to grow more than once";
}

/// The segment behind the first marker of a kind; empty where there is none before the pixels.
std::string_view segmentOf(std::string_view file, std::uint8_t marker) {
    const auto byte = [file](std::size_t at) { return static_cast<std::uint8_t>(file[at]); };
    constexpr std::uint8_t pixels = 0xDA;
    for (std::size_t at = 2; at + 4 <= file.size() && byte(at) == 0xFF && byte(at + 1) != pixels;) {
        const std::size_t length = std::size_t{byte(at + 2)} << 8 | byte(at + 3);
        if (byte(at + 1) == marker) return file.substr(at + 4, length - 2);
        at += 2 + length;
    }
    return {};
}

TEST(JpegEncoder, EachPixelHasAColourOfItsOwn) {
    constexpr std::uint8_t baseline = 0xC0;
    const std::string file = encodeJpeg(fadingGradient(40, 30));
    const std::string_view frame = segmentOf(file, baseline);
    // 8 bits, 30 rows, 40 columns, three components: each its number, how often it is sampled, its table.
    ASSERT_EQ(frame.size(), 15U);
    EXPECT_EQ(frame.substr(0, 6), std::string_view("\x08\x00\x1E\x00\x28\x03", 6));
    for (const std::size_t component : {7U, 10U, 13U}) EXPECT_EQ(frame[component], '\x11') << component;
}

TEST(StillEncoders, RefuseSizesThatTheFormatHasNot) {
    EXPECT_THROW((void)encodeJpeg(PixelBuffer{}), TavrinError);
    EXPECT_TRUE(decodeImage(encodeJpeg(PixelBuffer(PixelBuffer::maxSide, 2))));
    const struct {
        int width, height;
        bool fits;
    } rows[] = {{0, 0, false}, {16383, 1, true}, {1, 16383, true}, {16384, 1, false}, {1, 16384, false}};
    for (const auto& [width, height, fits] : rows)
        for (const std::optional<int> quality : {std::optional<int>(), std::optional(50)}) {
            SCOPED_TRACE(testing::Message() << width << " x " << height << (quality ? " with loss" : ""));
            const PixelBuffer picture = width == 0 ? PixelBuffer{} : PixelBuffer(width, height);
            try {
                EXPECT_FALSE(encodeWebp(picture, PngCompression::fast, quality).empty());
                EXPECT_TRUE(fits);
            } catch (const TavrinError& error) {
                EXPECT_FALSE(fits) << error.what();
                EXPECT_EQ(error.kind, "Render");
                EXPECT_THAT(error.message, HasSubstr("each side must be 1 to 16383 pixels"));
            }
        }
}

TEST(StillEncoders, DrawOnTheBudget) {
    const PixelBuffer small = fadingGradient(40, 30);
    const PixelBuffer large = fadingGradient(80, 60);
    for (const auto& [name, encode] : encoders()) {
        SCOPED_TRACE(name);
        const auto encoding = [&encode = encode](const PixelBuffer& picture) { return [&] { (void)encode(picture); }; };
        const Cost cost = costOf(encoding(small));
        EXPECT_GE(cost.pixels, 40U * 30);
        EXPECT_EQ(costOf(encoding(large)).pixels, 4 * cost.pixels);
        EXPECT_EQ(cost.bytes, 0) << "all given back";
        CancelToken cancelled;
        cancelled.cancel();
        const struct {
            const char* why;
            RenderBudget budget;
            const char* message;
        } rows[] = {
            {"pixels", {.pixels = cost.pixels - 1}, "pixels are painted"},
            {"bytes", {.bytes = 10 * 40 * 30}, "bytes are held at once"},
            {"no time, which is noticed between rows", {.seconds = 0}, "it takes more than 0 seconds"},
            {"cancelled, which is noticed there too", {.cancel = cancelled}, "the call was cancelled"},
        };
        for (const auto& row : rows) {
            try {
                costOf(encoding(small), row.budget);
                ADD_FAILURE() << row.why;
            } catch (const TavrinError& error) {
                EXPECT_EQ(error.kind, "Budget") << row.why;
                EXPECT_THAT(error.message, HasSubstr(row.message)) << row.why;
            }
        }
    }
}

TEST(StillEncodersOfThreads, WriteTheSameBytes) {
    const PixelBuffer picture = fadingGradient(120, 90);
    for (const auto& [name, encode] : encoders()) {
        const std::string expected = encode(picture);
        std::vector<std::future<std::string>> others;
        for (int i = 0; i < 4; ++i)
            others.push_back(std::async(std::launch::async, [&encode = encode, &picture] { return encode(picture); }));
        for (auto& other : others) EXPECT_TRUE(other.get() == expected) << name;
    }
}

}  // namespace
}  // namespace tavrin::paint
