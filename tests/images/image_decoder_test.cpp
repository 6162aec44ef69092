#include "tavrin/images/image_decoder.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

TEST(ImageDecoder, DecodesLargeJpegsAsSmallAsIsEnough) {
    const struct {
        const char* why;
        const char* file;
        Size wanted;
        int width;
    } rows[] = {
        {"all of it", "large.jpg", {480, 320}, 480},
        {"just more than a half", "large.jpg", {241, 161}, 480},
        {"a half", "large.jpg", {240, 160}, 240},
        {"a quarter", "large.jpg", {120, 1000}, 120},
        {"height decides", "large.jpg", {1000, 80}, 120},
        {"an eighth", "large.jpg", {60, 40}, 60},
        {"never less than an eighth", "large.jpg", {1, 1}, 60},
        {"no room at all is no reason", "large.jpg", {0, 40}, 480},
        {"nor less than that", "large.jpg", {-5, -5}, 480},
        {"turned by a quarter: its sides as they are shown", "orientation6.jpg", {24, 100}, 24},
        {"turned by a quarter and bound by its height", "orientation8.jpg", {100, 8}, 12},
        {"other formats in full", "lossy.webp", {6, 4}, 48},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto picture = decodeImage(pictureFile(row.file), {.wanted = row.wanted});
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->width(), row.width);
        expectTiles(*picture, tiles, 6);
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
    EXPECT_EQ(decodeImage(jpeg, {.maximumPixels = 480 * 320 - 1, .wanted = Size{10, 10}}), nullptr)
        << "however small it is wanted";
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

}  // namespace
}  // namespace tavrin
