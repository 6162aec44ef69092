// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_reduction.h"

#include <algorithm>
#include <array>
#include <optional>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/paint/straight_rows.h"

namespace tavrin::paint {
namespace {

constexpr std::size_t maxPalette = 256;

bool isGray(const std::uint32_t* pixels, std::size_t count) {
    std::uint32_t difference = 0;
    for (std::size_t i = 0; i < count; ++i) difference |= pixels[i] ^ pixels[i] >> 8;  // red and green, green and blue
    return (difference & 0xFFFF) == 0;
}

bool isGray(StraightRows& rows) {
    for (int y = 0; y < rows.height(); ++y)
        if (!isGray(rows.row(y), rows.width())) return false;
    return true;
}

/// The distinct colours (0xAARRGGBB) of a picture, ascending: translucent before opaque ones, so that few opacities
/// have to be written.
class Palette {
public:
    static std::optional<Palette> of(StraightRows& rows) {
        Palette palette;
        for (int y = 0; y < rows.height(); ++y)
            if (!palette.insert(rows.row(y), rows.width())) return std::nullopt;
        std::sort(palette.colors_.begin(), palette.colors_.end());
        palette.slots_.fill({});
        for (std::size_t i = 0; i < palette.colors_.size(); ++i) {
            Slot& slot = palette.find(palette.colors_[i]);
            slot = {palette.colors_[i], static_cast<std::uint8_t>(i), true};
        }
        return palette;
    }

    [[nodiscard]] const std::vector<std::uint32_t>& colors() const { return colors_; }
    [[nodiscard]] std::uint8_t indexOf(std::uint32_t color) { return find(color).index; }
    [[nodiscard]] int bitDepth() const {
        const std::size_t count = colors_.size();
        return count <= 2 ? 1 : count <= 4 ? 2 : count <= 16 ? 4 : 8;
    }

private:
    struct Slot {
        std::uint32_t color = 0;
        std::uint8_t index = 0;
        bool used = false;
    };

    /// The slot of a colour, or the free one that it would take. At most a quarter of the slots is in use.
    Slot& find(std::uint32_t color) {
        std::size_t i = (color * 0x9E3779B1U) >> 22;
        while (slots_[i].used && slots_[i].color != color) i = (i + 1) % slots_.size();
        return slots_[i];
    }

    bool insert(const std::uint32_t* pixels, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            if ((i == 0 || pixels[i] != pixels[i - 1]) && !insert(pixels[i])) return false;
        return true;
    }

    bool insert(std::uint32_t color) {
        Slot& slot = find(color);
        if (slot.used) return true;
        if (colors_.size() == maxPalette) return false;
        slot = {color, 0, true};
        colors_.push_back(color);
        return true;
    }

    std::array<Slot, 4 * maxPalette> slots_{};
    std::vector<std::uint32_t> colors_;
};

/// Samples with every byte zero.
PngSamples emptySamples(const StraightRows& rows, PngColorType colorType, std::size_t bytesPerRow) {
    PngSamples samples;
    samples.colorType = colorType;
    samples.bytesPerRow = 1 + bytesPerRow;
    Meter::ofThisThread().paint(rows.width() * static_cast<std::size_t>(rows.height()));
    samples.rows.resize(static_cast<std::size_t>(rows.height()) * samples.bytesPerRow);
    return samples;
}

PngSamples withPalette(StraightRows& rows, Palette& palette) {
    const auto depth = static_cast<unsigned>(palette.bitDepth());
    PngSamples samples = emptySamples(rows, PngColorType::palette, (rows.width() * depth + 7) / 8);
    samples.bitDepth = palette.bitDepth();
    std::uint8_t* out = samples.rows.data() + 1;
    for (int y = 0; y < rows.height(); ++y, out += samples.bytesPerRow) {
        const std::uint32_t* pixels = rows.row(y);
        unsigned index = 0;
        for (std::size_t x = 0; x < rows.width(); ++x) {
            if (x == 0 || pixels[x] != pixels[x - 1]) index = palette.indexOf(pixels[x]);
            const unsigned shift = 8 - depth - static_cast<unsigned>(x * depth % 8);
            out[x * depth / 8] |= static_cast<std::uint8_t>(index << shift);
        }
    }
    for (const std::uint32_t color : palette.colors()) {
        for (const unsigned shift : {16U, 8U, 0U}) samples.palette.push_back(static_cast<std::uint8_t>(color >> shift));
        if (color < 0xFF000000) samples.paletteOpacities.push_back(static_cast<std::uint8_t>(color >> 24));
    }
    return samples;
}

/// Samples made of the bytes of each pixel that lie at `shifts`.
template <int... shifts>
PngSamples withBytes(StraightRows& rows, PngColorType colorType) {
    PngSamples samples = emptySamples(rows, colorType, rows.width() * sizeof...(shifts));
    std::uint8_t* out = samples.rows.data();
    for (int y = 0; y < rows.height(); ++y) {
        const std::uint32_t* pixels = rows.row(y);
        ++out;
        for (std::size_t x = 0; x < rows.width(); ++x) ((*out++ = static_cast<std::uint8_t>(pixels[x] >> shifts)), ...);
    }
    return samples;
}

PngSamples withRGBA(StraightRows& rows) { return withBytes<16, 8, 0, 24>(rows, PngColorType::rgba); }

PngSamples withChannels(StraightRows& rows, bool gray) {
    if (gray)
        return rows.areOpaque() ? withBytes<0>(rows, PngColorType::gray)
                                : withBytes<0, 24>(rows, PngColorType::grayAlpha);
    return rows.areOpaque() ? withBytes<16, 8, 0>(rows, PngColorType::rgb) : withRGBA(rows);
}

}  // namespace

PngSamples reduceToPngSamples(const PixelBuffer& picture) {
    StraightRows rows(picture);
    const bool gray = isGray(rows);
    std::optional<Palette> palette = Palette::of(rows);
    // Eight bits of gray need no palette.
    const bool plainGray = gray && rows.areOpaque() && palette && palette->bitDepth() == 8;
    return palette && !plainGray ? withPalette(rows, *palette) : withChannels(rows, gray);
}

PngSamples rgbaPngSamples(const PixelBuffer& picture) {
    StraightRows rows(picture);
    return withRGBA(rows);
}

}  // namespace tavrin::paint
