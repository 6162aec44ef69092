// SPDX-License-Identifier: MIT
#include "tavrin/images/image_decoder.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/images/decoders.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tests/images/pictures.h"

namespace tavrin {
namespace {

using Colors = std::vector<std::uint32_t>;

const Colors opaque{0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF};
const Colors translucent{0xFFFF0000, 0xFF00FF00, 0x55000055, 0};
const Colors grays{0xFF000000, 0xFF555555, 0xFFAAAAAA, 0xFFFFFFFF};
const Colors translucentGrays{0xFF000000, 0xAA393939, 0x55393939, 0};

TEST(ImageDecoder, ReadsEveryPixelOfLosslessFormats) {
    const struct {
        const char* why;
        const char* file;
        Colors colors;
    } rows[] = {
        {"grayscale, 1 bit", "gray1.png", {0xFF000000, 0xFFFFFFFF}},
        {"grayscale, 2 bits", "gray2.png", grays},
        {"grayscale, 4 bits", "gray4.png", grays},
        {"grayscale, 8 bits", "gray8.png", grays},
        {"grayscale, 16 bits", "gray16.png", grays},
        {"palette, 1 bit", "palette1.png", {0xFFFF0000, 0xFF00FF00}},
        {"palette, 2 bits", "palette2.png", opaque},
        {"palette, 4 bits", "palette4.png", opaque},
        {"palette, 8 bits", "palette8.png", opaque},
        {"colour, 8 bits", "rgb8.png", opaque},
        {"colour, 16 bits", "rgb16.png", opaque},
        {"grayscale and alpha, 8 bits", "gray-alpha8.png", translucentGrays},
        {"grayscale and alpha, 16 bits", "gray-alpha16.png", translucentGrays},
        {"colour and alpha, 8 bits", "rgba8.png", translucent},
        {"colour and alpha, 16 bits", "rgba16.png", translucent},
        {"interlaced, 1 bit", "interlaced-gray1.png", {0xFF000000, 0xFFFFFFFF}},
        {"interlaced palette", "interlaced-palette4.png", opaque},
        {"interlaced with alpha", "interlaced-rgba8.png", translucent},
        {"interlaced, 16 bits", "interlaced-rgb16.png", opaque},
        {"a palette with alphas", "palette-transparent.png", translucent},
        {"a gray that is transparent", "gray-transparent.png", {0xFF000000, 0xFF555555, 0, 0xFFFFFFFF}},
        {"a colour that is transparent", "rgb-transparent.png", {0xFFFF0000, 0xFF00FF00, 0, 0xFFFFFFFF}},
        {"gamma is not applied", "gamma.png", translucent},
        {"WebP with alpha", "lossless.webp", translucent},
        {"WebP without", "opaque.webp", opaque},
        {"the first frame of a WebP", "two-frames.webp", translucent},
        {"GIF", "plain.gif", opaque},
        {"an index that is transparent", "transparent.gif", {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0}},
        {"an interlaced GIF", "interlaced.gif", opaque},
        {"colours of the frame alone, behind a comment", "local-colors.gif", opaque},
        {"the first frame of a GIF", "two-frames.gif", opaque},
        {"a screen of no size", "no-screen.gif", opaque},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.why) + ": " + row.file);
        const auto picture = decodeImage(pictureFile(row.file));
        ASSERT_NE(picture, nullptr);
        ASSERT_EQ(picture->width(), patternWidth);
        ASSERT_EQ(picture->height(), patternHeight);
        int wrong = 0;
        for (int y = 0; y < patternHeight; ++y)
            for (int x = 0; x < patternWidth; ++x)
                wrong += picture->row(y)[x] != row.colors[patternColor(x, y, static_cast<int>(row.colors.size()))];
        EXPECT_EQ(wrong, 0);
        bool isOpaque = true;
        for (const std::uint32_t color : row.colors) isOpaque = isOpaque && color >= 0xFF000000;
        EXPECT_EQ(picture->isOpaque(), isOpaque);
    }
}

TEST(ImageDecoder, PlacesAFrameOnItsScreen) {
    const auto picture = decodeImage(pictureFile("part-of-screen.gif"));
    ASSERT_NE(picture, nullptr);
    ASSERT_EQ(picture->width(), patternWidth);
    ASSERT_EQ(picture->height(), patternHeight);
    for (int y = 0; y < patternHeight; ++y)
        for (int x = 0; x < patternWidth; ++x) {
            const bool inFrame = x >= 4 && x < 10 && y >= 2 && y < 7;
            EXPECT_EQ(picture->row(y)[x], inFrame ? opaque[patternColor(x, y, 4)] : 0) << x << ", " << y;
        }
}

/// The greatest difference of any channel.
int difference(std::uint32_t a, std::uint32_t b) {
    int most = 0;
    for (const int shift : {0, 8, 16, 24})
        most = std::max(most, std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF)));
    return most;
}

const Colors tiles{0xFFC03030, 0xFF30A040, 0xFF3050C0, 0xFFF0F0F0, 0xFF808080, 0xFF202020};
const Colors grayTiles{0xFF5B5B5B, 0xFF747474, 0xFF535353, 0xFFF0F0F0, 0xFF808080, 0xFF202020};
const Colors fadedTiles{0x55401010, 0x55103515, 0x55101B40, 0x55505050, 0x552B2B2B, 0x550B0B0B};

/// Compares the middle of each of the six tiles.
void expectTiles(const Bitmap& picture, const Colors& colors, int tolerance) {
    ASSERT_EQ(picture.width() % 3, 0);
    const int tile = picture.width() / 3;
    ASSERT_EQ(picture.height(), 2 * tile);
    auto expectedColor = colors.begin();
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 3; ++column) {
            const std::uint32_t found = picture.row(row * tile + tile / 2)[column * tile + tile / 2];
            const std::uint32_t expected = *expectedColor++;
            EXPECT_LE(difference(found, expected), tolerance)
                << std::hex << found << " instead of " << expected << " in tile " << row << ", " << column;
        }
}

TEST(ImageDecoder, ReadsLossyFormats) {
    const struct {
        const char* why;
        const char* file;
        Colors colors;
    } rows[] = {
        {"JPEG", "baseline.jpg", tiles},
        {"progressive", "progressive.jpg", tiles},
        {"grayscale", "gray.jpg", grayTiles},
        {"four inks", "inks.jpg", tiles},
        {"upright", "orientation1.jpg", tiles},
        {"mirrored", "orientation2.jpg", tiles},
        {"upside down", "orientation3.jpg", tiles},
        {"mirrored upside down", "orientation4.jpg", tiles},
        {"transposed", "orientation5.jpg", tiles},
        {"to be turned right", "orientation6.jpg", tiles},
        {"transposed upside down", "orientation7.jpg", tiles},
        {"to be turned left", "orientation8.jpg", tiles},
        {"WebP", "lossy.webp", tiles},
        {"WebP with alpha", "lossy-alpha.webp", fadedTiles},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.why) + ": " + row.file);
        const auto picture = decodeImage(pictureFile(row.file));
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->width(), 48);
        expectTiles(*picture, row.colors, 6);
    }
}

TEST(ImageDecoder, RefusesWhatIsNoPicture) {
    const struct {
        const char* why;
        std::string bytes;
    } rows[] = {
        {"nothing", ""},
        {"text", "hello"},
        {"the beginning of a PNG", "\x89PNG\r\n\x1A\n"},
        {"the beginning of a JPEG", "\xFF\xD8\xFF"},
        {"the beginning of a GIF", "GIF89a"},
        {"the beginning of a WebP", std::string("RIFF\0\0\0\0WEBP", 12)},
        {"a sound", std::string("RIFF\0\0\0\0WAVE", 12)},
        {"less than a RIFF header", "RIFF"},
        {"SVG, which is a document", "<svg xmlns='http://www.w3.org/2000/svg'/>"},
        {"a GIF without colours", pictureFile("no-colors.gif")},
        {"something in front", "x" + pictureFile("plain.gif")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(decodeImage(row.bytes), nullptr);
    }
}

TEST(ImageDecoder, RefusesFilesThatAreCutOff) {
    for (const char* name : {"rgba8.png", "interlaced-palette4.png", "palette-transparent.png", "gray16.png",
                             "baseline.jpg", "progressive.jpg", "inks.jpg", "orientation6.jpg", "lossless.webp",
                             "lossy.webp", "lossy-alpha.webp", "plain.gif", "interlaced.gif", "transparent.gif"}) {
        SCOPED_TRACE(name);
        const std::string bytes = pictureFile(name);
        // What only says that the file ends may be missing: a PNG's last checksum, a GIF's last byte.
        const std::size_t needed = bytes.size() - (bytes[1] == 'P' ? 4 : bytes[0] == 'G' ? 1 : 0);
        EXPECT_NE(decodeImage(bytes), nullptr);
        for (std::size_t length = 0; length < needed; ++length)
            EXPECT_EQ(decodeImage(std::string_view(bytes).substr(0, length)), nullptr) << length << " bytes";
    }
}

TEST(ImageDecoder, RefusesPngsWithAnyByteChanged) {
    for (const char* name : {"rgba8.png", "interlaced-gray1.png", "palette-transparent.png"}) {
        SCOPED_TRACE(name);
        const std::string bytes = pictureFile(name);
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
            EXPECT_EQ(decodeImage(damaged), nullptr) << "byte " << at;
        }
    }
}

TEST(ImageDecoder, SurvivesAnyByteChanged) {
    for (const char* name : {"baseline.jpg", "progressive.jpg", "orientation6.jpg", "lossless.webp", "lossy-alpha.webp",
                             "two-frames.webp", "transparent.gif", "part-of-screen.gif"}) {
        SCOPED_TRACE(name);
        const std::string bytes = pictureFile(name);
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            for (const int flip : {0x01, 0x80, 0xFF}) {
                std::string damaged = bytes;
                damaged[at] = static_cast<char>(damaged[at] ^ flip);
                const auto picture = decodeImage(damaged, {.maximumPixels = 100'000});
                EXPECT_TRUE(!picture || picture->byteCount() <= 400'000);
            }
        }
    }
}

TEST(ImageDecoder, RefusesMorePixelsThanItMay) {
    for (const char* name : {"rgba8.png", "lossless.webp", "plain.gif", "no-screen.gif"}) {
        SCOPED_TRACE(name);
        const std::string bytes = pictureFile(name);
        constexpr std::size_t pixels = patternWidth * patternHeight;
        EXPECT_NE(decodeImage(bytes, {.maximumPixels = pixels}), nullptr);
        EXPECT_EQ(decodeImage(bytes, {.maximumPixels = pixels - 1}), nullptr);
        EXPECT_EQ(decodeImage(bytes, {.maximumPixels = 0}), nullptr);
    }
    const std::string jpeg = pictureFile("large.jpg");
    EXPECT_NE(decodeImage(jpeg, {.maximumPixels = 480 * 320}), nullptr);
    EXPECT_EQ(decodeImage(jpeg, {.maximumPixels = 480 * 320 - 1}), nullptr);
}

TEST(ImageDecoder, RefusesSidesThatNoCanvasHas) {
    std::string gif = pictureFile("plain.gif");
    const std::size_t width = 6, height = 8;  // of its screen, the lower byte first
    for (const std::size_t side : {width, height}) {
        gif = pictureFile("plain.gif");
        gif[side] = '\xFF', gif[side + 1] = '\x7F';
        EXPECT_NE(decodeImage(gif), nullptr);
        gif[side] = '\0', gif[side + 1] = '\x80';
        EXPECT_EQ(decodeImage(gif), nullptr);
    }
}

TEST(ImageDecoder, GivesUpWhatNobodyMayHold) {
    const struct {
        const char* name;
        double working;  // bytes for each pixel
    } rows[] = {{"rgba8.png", 0},       {"lossless.webp", 4},    {"plain.gif", 0},       {"large.jpg", 0},
                {"progressive.jpg", 3}, {"orientation6.jpg", 4}, {"lossy-alpha.webp", 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string bytes = pictureFile(row.name);
        images::Decoding decoding;
        const auto picture = images::decodeImage(bytes, decoding);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(decoding.pixels * 4, picture->byteCount());
        const auto pixels = static_cast<double>(decoding.pixels);
        EXPECT_GE(static_cast<double>(decoding.meanwhile - bytes.size()), row.working * pixels);
        EXPECT_LE(static_cast<double>(decoding.meanwhile - bytes.size()), 2.5 * row.working * pixels);
        const std::size_t needed = picture->byteCount() + decoding.meanwhile;
        const auto atMost = [](std::size_t most) {
            return images::Decoding{.mayBeHeld = [most](std::size_t count) { return count <= most; }};
        };
        images::Decoding allowed = atMost(needed);
        EXPECT_NE(images::decodeImage(bytes, allowed), nullptr);
        EXPECT_FALSE(allowed.isGivenUp);
        images::Decoding less = atMost(needed - 1);
        EXPECT_EQ(images::decodeImage(bytes, less), nullptr);
        EXPECT_TRUE(less.isGivenUp);
        EXPECT_EQ(less.pixels, decoding.pixels);
    }
}

TEST(ImageDecoder, EndsWithTheBudgetOfItsThread) {
    Cost cost;
    const RenderBudget budget{.cancel = CancelToken()};
    const Metering metering(budget, cost);
    EXPECT_NE(decodeImage(pictureFile("rgba8.png")), nullptr);
    budget.cancel->cancel();
    for (const char* name : {"rgba8.png", "progressive.jpg", "plain.gif"})
        EXPECT_THROW((void)decodeImage(pictureFile(name)), TavrinError) << name;
}

TEST(ImageDecoder, CountsWhatAllPicturesTake) {
    const std::string bytes = pictureFile("rgba8.png");
    constexpr std::size_t size = patternWidth * patternHeight * 4;
    const std::size_t before = Bitmap::bytesInUse();
    EXPECT_EQ(decodeImage(bytes, {.maximumBytesInUse = before + size - 1}), nullptr);
    const auto first = decodeImage(bytes, {.maximumBytesInUse = before + size});
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(Bitmap::bytesInUse(), before + size);
    EXPECT_EQ(decodeImage(bytes, {.maximumBytesInUse = before + size}), nullptr) << "the first one is still there";
    EXPECT_NE(decodeImage(bytes, {.maximumBytesInUse = before + 2 * size}), nullptr);
    EXPECT_EQ(Bitmap::bytesInUse(), before + size) << "the second is gone";
}

/// `bytes` with the big-endian numbers at `at` replaced.
std::string withNumbers(std::string bytes, std::size_t at, std::size_t length,
                        const std::vector<std::uint32_t>& numbers) {
    for (const std::uint32_t number : numbers)
        for (std::size_t i = 0; i < length; ++i) bytes[at++] = static_cast<char>(number >> 8 * (length - 1 - i) & 0xFF);
    return bytes;
}

TEST(ImageDecoder, RefusesAbsurdSizesAtOnce) {
    const std::string jpeg = pictureFile("baseline.jpg");
    const std::size_t frame = jpeg.find("\xFF\xC0") + 5;
    const std::string gif = pictureFile("plain.gif");
    const struct {
        const char* why;
        std::string bytes;
    } rows[] = {
        {"a JPEG of 65,500 pixels a side", withNumbers(jpeg, frame, 2, {65'500, 65'500})},
        {"a JPEG without a height", withNumbers(jpeg, frame, 2, {0, 48})},
        {"a JPEG without a width", withNumbers(jpeg, frame, 2, {32, 0})},
        {"a GIF whose screen has 65,535 pixels a side", withNumbers(gif, 6, 2, {65'535, 65'535})},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(decodeImage(row.bytes), nullptr);
    }
}

/// A progressive JPEG that goes over the same scan again and again.
std::string withScans(std::size_t count) {
    const std::string bytes = pictureFile("progressive.jpg");
    const std::size_t last = bytes.rfind("\xFF\xDA");
    std::string result = bytes.substr(0, bytes.size() - 2);
    const std::string scan = bytes.substr(last, bytes.size() - 2 - last);
    for (std::size_t i = 0; i < count; ++i) result += scan;
    return result + bytes.substr(bytes.size() - 2);
}

TEST(ImageDecoder, BoundsTheScansOfAJpeg) {
    EXPECT_NE(decodeImage(withScans(0)), nullptr);
    EXPECT_EQ(decodeImage(withScans(100'000)), nullptr);
}

TEST(ImageDecoder, IgnoresFaultyOrientations) {
    const std::string upright = pictureFile("orientation2.jpg");
    const std::size_t tiff = upright.find(std::string_view("Exif\0\0", 6)) + 6;
    // II, 42, directory at 8, one entry: tag, type, count, value
    const struct {
        const char* why;
        std::size_t at;
        char byte;
    } rows[] = {
        {"the directory lies past the end", tiff + 7, '\x7F'},
        {"it has 65,281 entries", tiff + 9, '\xFF'},
        {"the orientation is no short number", tiff + 12, '\4'},
        {"there is no orientation 9", tiff + 18, '\x09'},
        {"there is no orientation 0", tiff + 18, '\0'},
        {"another tag", tiff + 10, '\x13'},
        {"no EXIF at all", tiff - 6, 'e'},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::string bytes = upright;
        bytes[row.at] = row.byte;
        EXPECT_NE(decodeImage(bytes), nullptr);
    }
    std::string bytes = upright;
    bytes[tiff + 18] = '\1';
    EXPECT_GT(difference(decodeImage(bytes)->row(8)[8], tiles[0]), 50) << "what is stored is mirrored";
}

TEST(ImageDecoder, LooksForTheOrientationInAnyNumberOfSegments) {
    const std::string turned = pictureFile("orientation6.jpg");
    constexpr std::string_view empty(
        "\xFF\xE1\0\x14"
        "Exif\0\0II*\0\x08\0\0\0\xFF\xFF\0\0",
        22);  // of 65,535 entries
    std::string bytes = turned.substr(0, 2);
    for (int i = 0; i < 200'000; ++i) bytes += empty;
    bytes += turned.substr(2);
    const auto picture = decodeImage(bytes);
    ASSERT_NE(picture, nullptr);
    const auto expected = decodeImage(turned);
    ASSERT_EQ(picture->width(), expected->width());
    ASSERT_EQ(picture->height(), expected->height());
    for (int y = 0; y < expected->height(); ++y)
        EXPECT_TRUE(std::equal(picture->row(y), picture->row(y) + picture->width(), expected->row(y))) << y;
}

/// A gray JPEG of `side` pixels a side, a multiple of 8: each block is two bits, "no difference" and "nothing more".
std::string largeJpeg(unsigned side) {
    const auto bytes = [](std::initializer_list<unsigned> values) {
        std::string text;
        for (const unsigned value : values) text += static_cast<char>(value);
        return text;
    };
    const auto code = [&](unsigned kind) {  // of one bit, for the symbol 0
        return bytes({0xFF, 0xC4, 0, 20, kind, 1}) + std::string(15 + 1, '\0');
    };
    const std::size_t blocks = std::size_t{side} / 8 * (side / 8);
    return bytes({0xFF, 0xD8, 0xFF, 0xDB, 0, 67, 0}) + std::string(64, '\1') +
           bytes({0xFF, 0xC0, 0, 11, 8, side >> 8, side & 255, side >> 8, side & 255, 1, 1, 0x11, 0}) + code(0) +
           code(0x10) + bytes({0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0}) + std::string(blocks / 4, '\0') +
           bytes({0xFF, 0xD9});
}

std::string largePng(int side) { return paint::encodePng(paint::PixelBuffer(side, side)); }

TEST(ImageDecoder, DoesNotBeginWhatNobodyWants) {
    std::stop_source source;
    source.request_stop();
    for (const char* name : {"rgba8.png", "baseline.jpg", "plain.gif", "lossy.webp"}) {
        images::Decoding wanted;
        EXPECT_NE(images::decodeImage(pictureFile(name), wanted), nullptr) << name;
        images::Decoding stopped{.stop = source.get_token()};
        EXPECT_EQ(images::decodeImage(pictureFile(name), stopped), nullptr) << name;
        EXPECT_FALSE(stopped.isGivenUp) << name;
    }
}

TEST(ImageDecoderThreads, StopBetweenRows) {
    const struct {
        const char* why;
        std::string bytes;
    } rows[] = {{"JPEG", largeJpeg(4000)}, {"PNG", largePng(4000)}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ASSERT_NE(decodeImage(row.bytes), nullptr);
        std::stop_source source;
        std::shared_ptr<const Bitmap> picture;
        std::jthread decoding([&] {
            images::Decoding stopped{.stop = source.get_token()};
            picture = images::decodeImage(row.bytes, stopped);
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        source.request_stop();
        decoding.join();
        EXPECT_EQ(picture, nullptr);
    }
}

}  // namespace
}  // namespace tavrin
