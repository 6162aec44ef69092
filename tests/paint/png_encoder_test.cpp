// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_encoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <cairo.h>
#include <gtest/gtest.h>
#include <libdeflate.h>

#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/png_fast.h"
#include "tavrin/platform/paint/png_reduction.h"

namespace tavrin::paint {
namespace {

/// Decodes with libpng, through Cairo.
PixelBuffer decoded(const std::string& png) {
    std::string_view rest = png;
    const auto read = [](void* closure, unsigned char* out, unsigned int count) {
        auto& input = *static_cast<std::string_view*>(closure);
        if (input.size() < count) return CAIRO_STATUS_READ_ERROR;
        std::memcpy(out, input.data(), count);
        input.remove_prefix(count);
        return CAIRO_STATUS_SUCCESS;
    };
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_from_png_stream(read, &rest), &cairo_surface_destroy);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS || !rest.empty()) return {};
    const bool opaque = cairo_image_surface_get_format(surface.get()) == CAIRO_FORMAT_RGB24;
    PixelBuffer picture(cairo_image_surface_get_width(surface.get()), cairo_image_surface_get_height(surface.get()));
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
    for (int y = 0; y < picture.height(); ++y) {
        std::memcpy(picture.row(y), cairo_image_surface_get_data(surface.get()) + static_cast<std::size_t>(y) * stride,
                    static_cast<std::size_t>(picture.width()) * 4);
        if (opaque)
            for (int x = 0; x < picture.width(); ++x) picture.row(y)[x] |= 0xFF000000;
    }
    return picture;
}

template <class PixelAt>
PixelBuffer picture(int width, int height, PixelAt pixelAt) {
    PixelBuffer result(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            result.row(y)[x] = pixelAt(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y));
    return result;
}

struct Row {
    const char* why;
    PixelBuffer picture;
    /// The depth and colour type that the smaller file has.
    int bitDepth;
    int colorType;
};

std::vector<Row> rows() {
    std::mt19937 random(1);
    const auto noise = [&](std::uint32_t alpha) {
        const auto channel = [&] { return static_cast<std::uint32_t>(random()) % (alpha + 1); };
        return packPixel(alpha, channel(), channel(), channel());
    };
    const auto gray = [](std::uint32_t level, std::uint32_t alpha = 255) {
        return packPixel(alpha, level, level, level);
    };
    std::vector<Row> list;
    list.push_back({"one pixel", picture(1, 1, [](auto, auto) { return 0xFF336699U; }), 1, 3});
    list.push_back({"one clear pixel", PixelBuffer(1, 1), 1, 3});
    list.push_back({"a flat picture", picture(97, 31, [](auto, auto) { return 0xFF102030U; }), 1, 3});
    list.push_back(
        {"three colours, an odd width", picture(7, 5, [](auto x, auto) { return 0xFF000000U + x % 3 * 77; }), 2, 3});
    list.push_back({"sixteen colours", picture(33, 9, [](auto x, auto) { return 0xFF000000U + x % 16 * 16; }), 4, 3});
    list.push_back({"256 colours", picture(256, 4, [](auto x, auto) { return 0xFF000000U + x; }), 8, 3});
    list.push_back({"257 colours", picture(257, 4, [](auto x, auto) { return 0xFF000000U + x; }), 8, 2});
    list.push_back({"256 grays", picture(256, 4, [&](auto x, auto) { return gray(x); }), 8, 0});
    list.push_back({"a translucent palette", picture(40, 4, [&](auto x, auto) { return gray(0, x * 6); }), 8, 3});
    list.push_back(
        {"grays with opacities", picture(256, 256, [&](auto x, auto y) { return gray(x * y / 255, y); }), 8, 4});
    list.push_back(
        {"a gradient", picture(300, 200, [](auto x, auto y) { return packPixel(255, x / 2, y, x ^ y); }), 8, 2});
    list.push_back({"opaque noise", picture(301, 97, [&](auto, auto) { return noise(255); }), 8, 2});
    list.push_back({"translucent noise", picture(301, 97, [&](auto x, auto) { return noise(x % 256); }), 8, 6});
    list.push_back(
        {"more than one strip", picture(1200, 900, [&](auto x, auto y) { return noise(x * y % 7 ? 255 : 9); }), 8, 6});
    // Runs of every length around the longest match, of pixels as above and of others that repeat.
    const auto stripes = [](std::uint32_t alpha) {
        return picture(700, 120, [=](auto x, auto y) {
            const bool dark = x > 3 && x < 3 + 50 + y;
            return packPixel(x % 9 == 1 && !dark ? alpha : 255, dark ? 0 : 200, y / 4 % 3 * 80, x / 260 * 40);
        });
    };
    list.push_back({"long runs", stripes(255), 4, 3});
    list.push_back({"long runs, translucent", stripes(254), 8, 3});
    list.push_back({"one very wide row", picture(32767, 1, [&](auto, auto) { return noise(255); }), 8, 2});
    return list;
}

/// Straight channels rounded to bytes lose what a low opacity cannot hold; the alpha and what was opaque must agree.
void expectSame(const PixelBuffer& actual, const PixelBuffer& expected) {
    ASSERT_EQ(actual.width(), expected.width());
    ASSERT_EQ(actual.height(), expected.height());
    for (int y = 0; y < actual.height(); ++y)
        for (int x = 0; x < actual.width(); ++x) ASSERT_EQ(actual.row(y)[x], expected.row(y)[x]) << x << ", " << y;
}

constexpr std::array allCompressions{PngCompression::fast, PngCompression::balanced, PngCompression::small};

TEST(PngEncoder, PicturesComeBackPixelForPixel) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.why);
        for (const PngCompression compression : allCompressions) {
            SCOPED_TRACE(name(compression));
            const std::string png = encodePng(row.picture, compression);
            expectSame(decoded(png), row.picture);
        }
    }
}

TEST(PngEncoder, SmallChoosesThePlainestSamples) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.why);
        const std::string png = encodePng(row.picture, PngCompression::small);
        EXPECT_EQ(png[24], row.bitDepth);
        EXPECT_EQ(png[25], row.colorType);
    }
}

TEST(PngEncoder, FastLeavesOutTheAlphaOfOpaquePictures) {
    PixelBuffer opaque = picture(2, 2, [](auto, auto) { return 0xFF010203U; });
    EXPECT_EQ(encodePng(opaque)[25], 2);
    opaque.row(1)[1] = 0xFE000000;
    EXPECT_EQ(encodePng(opaque)[25], 6);
}

TEST(PngEncoder, SmallIsSmaller) {
    const PixelBuffer gradient =
        picture(300, 200, [](auto x, auto y) { return packPixel(255, x / 2, y, (x + y) / 2); });
    EXPECT_LT(encodePng(gradient, PngCompression::balanced).size(), encodePng(gradient).size());
    EXPECT_LT(encodePng(gradient, PngCompression::small).size(), encodePng(gradient).size());
}

/// Changes some pixels of a picture and says where: a few, many, or whether it is opaque.
std::vector<PixelRect> change(PixelBuffer& picture, std::mt19937& random) {
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    std::vector<PixelRect> changed(static_cast<std::size_t>(below(4)));
    for (PixelRect& area : changed) {
        area.x0 = below(picture.width());
        area.y0 = below(picture.height());
        area.x1 = area.x0 + 1 + below(picture.width() - area.x0);
        area.y1 = area.y0 + 1 + below(std::min(40, picture.height() - area.y0));
        const std::uint32_t kind = random() % 4;
        for (int y = area.y0; y < area.y1; ++y)
            for (int x = area.x0; x < area.x1; ++x) {
                const auto noise = static_cast<std::uint32_t>(random()) | 0xFF000000;
                picture.row(y)[x] = kind == 0 ? 0xFFFFFFFF : kind == 1 ? 0x80000000 : noise;
            }
    }
    return changed;
}

TEST(PngEncoder, PicturesAfterOthersAreTheSameBytes) {
    std::mt19937 random(5);
    for (const auto& [width, height] : {std::pair{1, 1}, {5, 16}, {300, 17}, {200, 400}, {700, 130}}) {
        PixelBuffer current =
            picture(width, height, [](auto x, auto y) { return x * y % 3 ? 0xFFEEEEEE : 0xFF111111; });
        FastPng png;
        std::vector<PixelRect> changed;
        for (int i = 0; i < 100; ++i) {
            ASSERT_EQ(png.encode(current, changed), encodePngFast(current)) << width << " x " << height << ", " << i;
            changed = change(current, random);
        }
    }
}

TEST(PngEncoder, BlocksEndAlikeWherePartsAreKept) {
    // So many runs in a group of rows that more than one block is written in it.
    std::mt19937 random(5);
    PixelBuffer noise =
        picture(1500, 64, [&](auto, auto) { return static_cast<std::uint32_t>(random()) | 0xFF000000; });
    FastPng png;
    EXPECT_EQ(png.encode(noise, {}), encodePngFast(noise));
    for (const int y : {5, 20, 40}) {
        for (int x = 0; x < 900; ++x) noise.row(y)[x] = 0xFFFFFFFF;
        EXPECT_EQ(png.encode(noise, std::vector<PixelRect>{{0, y, 900, y + 1}}), encodePngFast(noise)) << y;
    }
}

TEST(PngEncoder, PicturesAfterOthersCompressOnlyRowsThatDiffer) {
    // Noise, so that each group of rows is a band.
    std::mt19937 random(5);
    PixelBuffer noise =
        picture(400, 320, [&](auto, auto) { return static_cast<std::uint32_t>(random()) | 0xFF000000; });
    FastPng png;
    EXPECT_NE(png.encode(noise, {}), "");
    EXPECT_EQ(png.seenRows(), 320);
    EXPECT_NE(png.encode(noise, {}), "");
    EXPECT_EQ(png.seenRows(), 320) << "nothing differs";
    noise.row(100)[7] ^= 0x30;
    EXPECT_EQ(png.encode(noise, std::vector<PixelRect>{{7, 100, 8, 101}}), encodePngFast(noise));
    EXPECT_EQ(png.seenRows(), 322) << "rows 100 and 101";
    noise.row(15)[0] ^= 0x30;
    EXPECT_EQ(png.encode(noise, std::vector<PixelRect>{{0, 15, 1, 16}}), encodePngFast(noise));
    EXPECT_EQ(png.seenRows(), 324) << "row 15, and the one below in another band";
    EXPECT_GT(png.byteCount(), 400U * 320 * 3);
}

/// How many bytes the rows take in a PNG with one chunk of data.
std::size_t dataSize(const std::string& png) {
    const std::size_t length = png.find("IDAT") - 4;
    std::size_t size = 0;
    for (std::size_t i = length; i < length + 4; ++i) size = size << 8 | static_cast<unsigned char>(png[i]);
    return size;
}

/// How many the same samples take where no row is filtered.
std::size_t plainDataSize(const PixelBuffer& picture) {
    const PngSamples samples = reduceToPngSamples(picture);
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(7), &libdeflate_free_compressor);
    std::vector<std::uint8_t> out(libdeflate_zlib_compress_bound(compressor.get(), samples.rows.size()));
    return libdeflate_zlib_compress(compressor.get(), samples.rows.data(), samples.rows.size(), out.data(), out.size());
}

/// Mostly something like text, which filters make larger; in the rows from 0 and from 128, of which an encoder may
/// think that they stand for all, a gradient, which they make smaller.
PixelBuffer misleadingPicture() {
    return picture(300, 200, [](auto x, auto y) {
        if (y % 128 < 16) return packPixel(255, x % 256, x / 2, x / 256 * 90);
        return (x / 5 * 7 + y / 9 * 3 + x * y / 40) % 5 == 0 ? 0xFF202020U : 0xFFF0F0F0U;
    });
}

/// Bars of a slope between bars of spots.
PixelBuffer stripedPicture(std::uint32_t slope, std::uint32_t height) {
    return picture(160, 300, [=](auto x, auto y) {
        if (y / height % 2 == 1) return packPixel(x * y % 7 == 0 ? 99 : 255, 0, 0, 0);
        return packPixel(255, (x * slope + y * 3) / 4 % 256, x % 256, y % 256);
    });
}

TEST(PngEncoder, SmallIsNoLargerThanRowsWithoutFilters) {
    std::vector<PixelBuffer> pictures;
    for (Row& row : rows()) pictures.push_back(std::move(row.picture));
    pictures.push_back(misleadingPicture());
    for (const std::uint32_t slope : {1U, 3U, 8U, 40U})
        for (const std::uint32_t height : {5U, 16U, 60U}) pictures.push_back(stripedPicture(slope, height));
    for (std::size_t i = 0; i < pictures.size(); ++i)
        EXPECT_LE(dataSize(encodePng(pictures[i], PngCompression::small)), plainDataSize(pictures[i])) << i;
}

std::uint32_t below(std::uint32_t end, std::mt19937& random) { return static_cast<std::uint32_t>(random()) % end; }

/// Some pixels, then copies of them and of other pixels, from anywhere, as long as they are random.
PixelBuffer copyingPicture(std::mt19937& random, int width, int height, std::uint32_t colors) {
    PixelBuffer made(width, height);
    const int count = width * height;
    std::uint32_t* const pixels = made.row(0);
    for (int i = 0; i < count;) {
        const int length = std::min(count - i, 1 + static_cast<int>(random() % 120));
        const int distance =
            random() % 2 == 0 ? static_cast<int>(random() % 3) * width : static_cast<int>(random() % 12000);
        for (const int end = i + length; i < end; ++i) {
            const bool isNew = distance == 0 || distance > i || random() % 30 == 0;
            pixels[i] = isNew ? 0xFF000000 | (below(colors, random) * 0x010305) : pixels[i - distance];
        }
    }
    return made;
}

TEST(PngEncoder, WhatRepeatsComesBackPixelForPixel) {
    std::mt19937 random(7);
    for (const int width : {1, 2, 85, 86, 87, 300, 1014, 8191, 10922, 10923, 12000}) {
        for (const std::uint32_t colors : {1U, 2U, 40U, 200U}) {
            for (const bool opaque : {true, false}) {
                SCOPED_TRACE(std::to_string(width) + " wide, " + std::to_string(colors) + " colours");
                PixelBuffer picture = copyingPicture(random, width, 60, colors);
                if (!opaque) picture.row(30)[0] = 0;
                expectSame(decoded(encodePng(picture, PngCompression::balanced)), picture);
            }
        }
    }
}

/// Spots like letters, each some rows below or beside one that is the same.
TEST(PngEncoder, BalancedFindsWhatRepeats) {
    std::mt19937 random(9);
    std::vector<std::uint32_t> letter(20 * 20);
    for (std::uint32_t& pixel : letter)
        pixel = packPixel(255, below(200, random), below(200, random), below(200, random));
    const PixelBuffer spots = picture(400, 200, [&](auto x, auto y) {
        return x % 40 < 20 && y % 40 < 20 ? letter[y % 40 * 20 + x % 40] : 0xFFFFFFFFU;
    });
    EXPECT_LT(encodePng(spots, PngCompression::balanced).size(), encodePng(spots).size() / 4);
    EXPECT_LT(encodePng(spots, PngCompression::balanced).size(),
              encodePng(spots, PngCompression::small).size() * 3 / 2);
}

TEST(PngEncoder, BalancedFiltersPhotographs) {
    std::mt19937 random(9);
    const PixelBuffer photograph = picture(300, 200, [&](auto x, auto y) {
        return packPixel(255, x / 2 + below(4, random), y + below(4, random), (x + y) / 3 + below(4, random));
    });
    EXPECT_LT(encodePng(photograph, PngCompression::balanced).size(), plainDataSize(photograph) * 3 / 4);
}

/// What cannot be compressed takes hardly more than it is.
TEST(PngEncoder, BalancedAddsLittleToNoise) {
    std::mt19937 random(9);
    const PixelBuffer noise =
        picture(400, 300, [&](auto, auto) { return static_cast<std::uint32_t>(random()) | 0xFF000000; });
    EXPECT_LT(encodePng(noise, PngCompression::balanced).size(), 400 * 300 * 3 * 101 / 100);
}

TEST(PngEncoderThreads, WriteTheSameBytes) {
    const PixelBuffer gradient =
        picture(500, 300, [](auto x, auto y) { return packPixel(255, x / 2, y / 2, x * y % 256); });
    for (const PngCompression compression : allCompressions) {
        const std::string expected = encodePng(gradient, compression);
        std::vector<std::future<std::string>> others;
        for (int i = 0; i < 4; ++i)
            others.push_back(std::async(std::launch::async, [&] { return encodePng(gradient, compression); }));
        for (auto& other : others) EXPECT_EQ(other.get(), expected);
    }
}

TEST(PngEncoder, RefusesAPictureWithoutPixels) {
    for (const PngCompression compression : allCompressions)
        EXPECT_THROW((void)encodePng(PixelBuffer{}, compression), TavrinError);
}

}  // namespace
}  // namespace tavrin::paint
