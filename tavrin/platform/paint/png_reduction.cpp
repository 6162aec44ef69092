#include "tavrin/platform/paint/png_reduction.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace tavrin::paint {
namespace {

constexpr std::size_t maxPalette = 256;

/// Bytes R, G, B, A.
using Bytes = std::span<const std::uint8_t>;

struct Content {
    bool opaque = true;
    bool gray = true;
};

Content examine(Bytes rgba) {
    std::uint8_t opacity = 0xFF;
    std::uint8_t difference = 0;
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        opacity &= rgba[i + 3];
        difference |= static_cast<std::uint8_t>((rgba[i] ^ rgba[i + 1]) | (rgba[i] ^ rgba[i + 2]));
    }
    return {opacity == 0xFF, difference == 0};
}

std::uint32_t colorAt(Bytes rgba, std::size_t i) {
    return static_cast<std::uint32_t>(rgba[i] << 16 | rgba[i + 1] << 8 | rgba[i + 2]) |
           static_cast<std::uint32_t>(rgba[i + 3]) << 24;
}

/// The distinct colours (0xAARRGGBB) of a picture, ascending: translucent before opaque ones, so that few opacities
/// have to be written.
class Palette {
public:
    static std::optional<Palette> of(Bytes rgba) {
        Palette palette;
        for (std::size_t i = 0; i < rgba.size(); i += 4)
            if (!palette.insert(colorAt(rgba, i))) return std::nullopt;
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

PngSamples withPalette(Bytes rgba, std::size_t width, Palette& palette) {
    PngSamples samples;
    samples.colorType = PngColorType::palette;
    samples.bitDepth = palette.bitDepth();
    const auto depth = static_cast<unsigned>(samples.bitDepth);
    samples.bytesPerRow = (width * depth + 7) / 8;
    samples.rows.resize(rgba.size() / (4 * width) * samples.bytesPerRow);

    const std::uint8_t* pixel = rgba.data();
    for (auto row = samples.rows.begin(); row != samples.rows.end();
         row += static_cast<std::ptrdiff_t>(samples.bytesPerRow)) {
        for (std::size_t x = 0; x < width; ++x, pixel += 4) {
            const unsigned shift = 8 - depth - static_cast<unsigned>(x * depth % 8);
            const unsigned index = palette.indexOf(colorAt({pixel, 4}, 0));
            row[static_cast<std::ptrdiff_t>(x * depth / 8)] |= static_cast<std::uint8_t>(index << shift);
        }
    }
    for (const std::uint32_t color : palette.colors()) {
        for (const unsigned shift : {16U, 8U, 0U}) samples.palette.push_back(static_cast<std::uint8_t>(color >> shift));
        if (color < 0xFF000000) samples.paletteOpacities.push_back(static_cast<std::uint8_t>(color >> 24));
    }
    return samples;
}

PngSamples withChannels(Bytes rgba, std::size_t width, Content content) {
    PngSamples samples;
    std::vector<std::size_t> channels = content.gray ? std::vector<std::size_t>{0} : std::vector<std::size_t>{0, 1, 2};
    if (!content.opaque) channels.push_back(3);
    samples.colorType = content.gray ? (content.opaque ? PngColorType::gray : PngColorType::grayAlpha)
                                     : (content.opaque ? PngColorType::rgb : PngColorType::rgba);
    samples.bytesPerRow = width * channels.size();
    samples.rows.reserve(rgba.size() / 4 * channels.size());
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        for (const std::size_t channel : channels) samples.rows.push_back(rgba[i + channel]);
    return samples;
}

}  // namespace

PngSamples reduceToPngSamples(const PixelBuffer& picture) {
    const std::vector<std::uint8_t> rgba = picture.straightRGBA();
    const auto width = static_cast<std::size_t>(picture.width());
    const Content content = examine(rgba);
    std::optional<Palette> palette = Palette::of(rgba);
    // Eight bits of gray need no palette.
    const bool plainGray = content.gray && content.opaque && palette && palette->bitDepth() == 8;
    if (palette && !plainGray) return withPalette(rgba, width, *palette);
    return withChannels(rgba, width, content);
}

}  // namespace tavrin::paint
