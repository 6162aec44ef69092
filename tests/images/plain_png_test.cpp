// SPDX-License-Identifier: MIT
#include "tavrin/images/plain_png.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <libdeflate.h>

#include "tavrin/images/image_decoder.h"
#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::images {
namespace {

using Rows = std::vector<std::uint8_t>;

std::string bigEndian(std::size_t number) {
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

std::string chunk(std::string_view type, std::string_view data) {
    const std::string checked = std::string(type) + std::string(data);
    return bigEndian(data.size()) + checked + bigEndian(libdeflate_crc32(0, checked.data(), checked.size()));
}

std::string zlib(const Rows& rows, int level) {
    libdeflate_compressor* const compressor = libdeflate_alloc_compressor(level);
    std::string packed(libdeflate_zlib_compress_bound(compressor, rows.size()), '\0');
    packed.resize(libdeflate_zlib_compress(compressor, rows.data(), rows.size(), packed.data(), packed.size()));
    libdeflate_free_compressor(compressor);
    return packed;
}

/// What a test changes in a file.
struct Parts {
    std::string behindHeader = {};
    std::string behindRows = {};
    std::string behindEnd = {};
    std::size_t bytesInChunk = SIZE_MAX;
    char colorType = 6;
};

std::string fileOf(std::size_t width, std::size_t height, std::string_view packed, const Parts& parts) {
    std::string file = "\x89PNG\r\n\x1A\n";
    file += chunk("IHDR", bigEndian(width) + bigEndian(height) + '\x08' + parts.colorType + std::string(3, '\0'));
    file += parts.behindHeader;
    do {
        file += chunk("IDAT", packed.substr(0, parts.bytesInChunk));
        packed.remove_prefix(std::min(packed.size(), parts.bytesInChunk));
    } while (!packed.empty());
    return file + parts.behindRows + chunk("IEND", "") + parts.behindEnd;
}

int predicted(int filter, int left, int above, int corner) {
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    switch (filter) {
        case 1: return left;
        case 2: return above;
        case 3: return (left + above) / 2;
        case 4: return toLeft <= toAbove && toLeft <= toCorner ? left : toAbove <= toCorner ? above : corner;
        default: return 0;
    }
}

/// The rows of a picture's bytes, each behind its filter.
Rows filtered(const Rows& straight, std::size_t width, std::size_t height, const std::vector<int>& filters) {
    const std::size_t rowBytes = 4 * width;
    Rows rows;
    for (std::size_t y = 0; y < height; ++y) {
        rows.push_back(static_cast<std::uint8_t>(filters[y]));
        const auto at = [&](std::size_t row, std::size_t x) { return straight[row * rowBytes + x]; };
        for (std::size_t x = 0; x < rowBytes; ++x) {
            const int left = x < 4 ? 0 : at(y, x - 4);
            const int above = y == 0 ? 0 : at(y - 1, x);
            const int corner = x < 4 || y == 0 ? 0 : at(y - 1, x - 4);
            rows.push_back(static_cast<std::uint8_t>(at(y, x) - predicted(filters[y], left, above, corner)));
        }
    }
    return rows;
}

std::optional<std::vector<std::uint32_t>> plainPixels(std::string_view file, std::size_t width, std::size_t height) {
    return plainPngPixels(file, {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), 8,
                                 static_cast<std::uint8_t>(file[25]), 0});
}

TEST(PlainPng, HasThePixelsThatWereWritten) {
    std::mt19937 random(1);
    const std::string comment = chunk("tEXt", std::string_view("Comment\0x", 9));
    for (int run = 0; run < 300; ++run) {
        const std::size_t width = 1 + random() % 40;
        const std::size_t height = 1 + random() % 12;
        Rows straight(4 * width * height);
        for (std::uint8_t& byte : straight) byte = static_cast<std::uint8_t>(random() % 3 == 0 ? random() : 0xFF);
        std::vector<int> filters(height);
        for (int& filter : filters) filter = static_cast<int>(random() % 5);
        const std::string packed = zlib(filtered(straight, width, height, filters), static_cast<int>(random() % 10));
        Parts parts;
        parts.bytesInChunk = run % 2 == 0 ? SIZE_MAX : 1 + random() % 50;

        std::vector<std::uint32_t> expected(width * height);
        premultiplyPixels(straight.data(), expected.data(), expected.size());
        const auto plain = plainPixels(fileOf(width, height, packed, parts), width, height);
        ASSERT_TRUE(plain);
        ASSERT_EQ(*plain, expected);

        parts.behindHeader = comment;  // so that the general decoder reads it
        ASSERT_FALSE(plainPixels(fileOf(width, height, packed, parts), width, height));
        const auto general = tavrin::decodeImage(fileOf(width, height, packed, parts));
        ASSERT_NE(general, nullptr);
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), general->row(0)));
    }
}

TEST(PlainPng, LeavesEverythingElseToTheGeneralDecoder) {
    constexpr std::size_t width = 3;
    constexpr std::size_t height = 2;
    const Rows rows = filtered(Rows(4 * width * height, 0x7F), width, height, {0, 0});
    const std::string packed = zlib(rows, 6);
    Rows unknownFilter = rows;
    unknownFilter[0] = 5;
    Rows tooMany = rows;
    tooMany.push_back(0);
    std::string damaged = packed;
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    const struct {
        const char* why;
        std::string file;
    } rest[] = {
        {"another chunk in front",
         fileOf(width, height, packed, {.behindHeader = chunk("sRGB", std::string(1, '\0'))})},
        {"another chunk behind", fileOf(width, height, packed, {.behindRows = chunk("tEXt", std::string(3, '\0'))})},
        {"bytes behind the end", fileOf(width, height, packed, {.behindEnd = "x"})},
        {"no opacity", fileOf(width, height, packed, {.colorType = 2})},
        {"too few rows", fileOf(width, height + 1, packed, {})},
        {"too many", fileOf(width, height, zlib(tooMany, 6), {})},
        {"an unknown filter", fileOf(width, height, zlib(unknownFilter, 6), {})},
        {"a wrong checksum", fileOf(width, height, damaged, {})},
        {"bytes behind the rows", fileOf(width, height, packed + "x", {})},
        {"nothing packed", fileOf(width, height, "", {})},
    };
    for (const auto& row : rest) {
        SCOPED_TRACE(row.why);
        const std::size_t expectedHeight = row.file[23] == 3 ? height + 1 : height;
        EXPECT_FALSE(plainPixels(row.file, width, expectedHeight));
    }
    EXPECT_TRUE(plainPixels(fileOf(width, height, packed, {}), width, height));
    EXPECT_FALSE(plainPixels(fileOf(4'000, 4'000, packed, {}), 4'000, 4'000)) << "a large one";
}

}  // namespace
}  // namespace tavrin::images
