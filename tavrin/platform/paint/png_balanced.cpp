// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_balanced.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/paint/match_deflater.h"
#include "tavrin/platform/paint/png_file.h"
#include "tavrin/platform/paint/straight_rows.h"

namespace tavrin::paint {
namespace {

using Pixels = std::span<const std::uint32_t>;

constexpr std::uint8_t filterNone = 0;
constexpr std::uint8_t filterPaeth = 4;
/// What is filtered holds few repetitions, and looking longer finds hardly any.
constexpr int looksUnfiltered = 32;
constexpr int looksFiltered = 16;

/// Whether a quarter of the pixels or more, of some rows, are neither the one above nor the one to the left: a
/// photograph, which filters make smaller. They make most else larger.
bool isNoisy(Pixels pixels, std::size_t width) {
    constexpr std::size_t rowsFromRowToRow = 16;
    constexpr std::size_t part = 4;
    std::size_t seen = 0;
    std::size_t found = 0;
    for (std::size_t begin = rowsFromRowToRow * width; begin < pixels.size(); begin += rowsFromRowToRow * width) {
        const std::uint32_t* const row = pixels.data() + begin;
        for (std::size_t x = 1; x < width; ++x)
            found += static_cast<std::size_t>((row[x] != *(row + x - width)) & (row[x] != row[x - 1]));
        seen += width;
    }
    return part * found > seen;
}

/// The bytes of a row, each less what those to the left, above and between foretell.
void applyPaeth(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* __restrict out, std::size_t count) {
    constexpr std::size_t step = sizeof(std::uint32_t);
    for (std::size_t i = 0; i < step; ++i) out[i] = static_cast<std::uint8_t>(row[i] - above[i]);
    for (std::size_t i = step; i < count; ++i) {
        // Short numbers, so that many are worked on at once.
        const std::int16_t left = row[i - step];
        const std::int16_t up = above[i];
        const std::int16_t corner = above[i - step];
        const auto fromLeft = static_cast<std::int16_t>(up - corner);
        const auto fromAbove = static_cast<std::int16_t>(left - corner);
        const auto fromBoth = static_cast<std::int16_t>(fromLeft + fromAbove);
        const auto toLeft = static_cast<std::int16_t>(fromLeft < 0 ? -fromLeft : fromLeft);
        const auto toAbove = static_cast<std::int16_t>(fromAbove < 0 ? -fromAbove : fromAbove);
        const auto toCorner = static_cast<std::int16_t>(fromBoth < 0 ? -fromBoth : fromBoth);
        const std::int16_t other = toAbove <= toCorner ? up : corner;
        const std::int16_t foretold = ((toLeft <= toAbove) & (toLeft <= toCorner)) != 0 ? left : other;
        out[i] = static_cast<std::uint8_t>(row[i] - foretold);
    }
}

pool::Vector<std::uint32_t> withPaeth(Pixels pixels, std::size_t width) {
    const std::size_t count = width * sizeof(std::uint32_t);
    const std::vector<std::uint8_t> nothing(count);
    pool::Vector<std::uint32_t> filtered(pixels.size());
    const auto* row = reinterpret_cast<const std::uint8_t*>(pixels.data());
    auto* out = reinterpret_cast<std::uint8_t*>(filtered.data());
    for (std::size_t y = 0; y < pixels.size() / width; ++y, row += count, out += count)
        applyPaeth(row, y == 0 ? nothing.data() : row - count, out, count);
    return filtered;
}

std::string balancedData(const PixelBuffer& picture, StraightRows& rows, PngColorType colorType) {
    const std::size_t width = rows.width();
    Pixels pixels(picture.row(0), width * static_cast<std::size_t>(rows.height()));
    pool::Vector<std::uint32_t> straight;
    if (!rows.areOpaque()) {
        straight.resize(pixels.size());
        auto out = straight.begin();
        for (int y = 0; y < rows.height(); ++y) out = std::copy_n(rows.row(y), width, out);
        pixels = straight;
    }
    if (!isNoisy(pixels, width)) return deflateMatches(pixels, width, filterNone, colorType, looksUnfiltered);
    return deflateMatches(withPaeth(pixels, width), width, filterPaeth, colorType, looksFiltered);
}

}  // namespace

std::string pngRowsBalanced(const PixelBuffer& picture) {
    StraightRows rows(picture);
    return balancedData(picture, rows, PngColorType::rgba);
}

std::string encodePngBalanced(const PixelBuffer& picture) {
    StraightRows rows(picture);
    const PngColorType colorType = rows.areOpaque() ? PngColorType::rgb : PngColorType::rgba;
    PngFile file(picture.width(), picture.height(), 8, colorType);
    file.beginChunk("IDAT");
    file.bytes() += balancedData(picture, rows, colorType);
    file.endChunk();
    return file.finish();
}

}  // namespace tavrin::paint
