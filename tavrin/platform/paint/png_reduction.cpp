#include "tavrin/platform/paint/png_reduction.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace tavrin::paint {
namespace {

constexpr std::size_t maxPalette = 256;

/// Pixels 0xAARRGGBB, channels not premultiplied.
using Pixels = std::span<const std::uint32_t>;

struct Content {
    bool opaque = true;
    bool gray = true;
};

Content examine(Pixels pixels) {
    std::uint32_t common = 0xFF000000;
    std::uint32_t difference = 0;
    for (const std::uint32_t pixel : pixels) {
        common &= pixel;
        difference |= pixel ^ pixel >> 8;  // red beside green, and green beside blue
    }
    return {common == 0xFF000000, (difference & 0xFFFF) == 0};
}

/// The distinct colours (0xAARRGGBB) of a picture, ascending: translucent before opaque ones, so that few opacities
/// have to be written.
class Palette {
public:
    static std::optional<Palette> of(Pixels pixels) {
        Palette palette;
        std::uint32_t last = ~pixels.front();
        for (const std::uint32_t pixel : pixels) {
            if (pixel != last && !palette.insert(pixel)) return std::nullopt;
            last = pixel;
        }
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

PngSamples withPalette(Pixels pixels, std::size_t width, Palette& palette) {
    PngSamples samples;
    samples.colorType = PngColorType::palette;
    samples.bitDepth = palette.bitDepth();
    const auto depth = static_cast<unsigned>(samples.bitDepth);
    samples.bytesPerRow = (width * depth + 7) / 8;
    samples.rows.resize(pixels.size() / width * samples.bytesPerRow);

    auto pixel = pixels.begin();
    std::uint32_t last = *pixel;
    unsigned index = palette.indexOf(last);
    for (auto row = samples.rows.begin(); row != samples.rows.end();
         row += static_cast<std::ptrdiff_t>(samples.bytesPerRow)) {
        for (std::size_t x = 0; x < width; ++x, ++pixel) {
            if (*pixel != last) index = palette.indexOf(last = *pixel);
            const unsigned shift = 8 - depth - static_cast<unsigned>(x * depth % 8);
            row[static_cast<std::ptrdiff_t>(x * depth / 8)] |= static_cast<std::uint8_t>(index << shift);
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
PngSamples withChannels(Pixels pixels, std::size_t width, PngColorType colorType) {
    PngSamples samples;
    samples.colorType = colorType;
    samples.bytesPerRow = width * sizeof...(shifts);
    samples.rows.resize(pixels.size() * sizeof...(shifts));
    std::uint8_t* byte = samples.rows.data();
    for (const std::uint32_t pixel : pixels) ((*byte++ = static_cast<std::uint8_t>(pixel >> shifts)), ...);
    return samples;
}

PngSamples withChannels(Pixels pixels, std::size_t width, Content content) {
    if (content.gray)
        return content.opaque ? withChannels<0>(pixels, width, PngColorType::gray)
                              : withChannels<0, 24>(pixels, width, PngColorType::grayAlpha);
    return content.opaque ? withChannels<16, 8, 0>(pixels, width, PngColorType::rgb)
                          : withChannels<16, 8, 0, 24>(pixels, width, PngColorType::rgba);
}

}  // namespace

PngSamples reduceToPngSamples(const PixelBuffer& picture) {
    const std::vector<std::uint32_t> pixels = picture.straightPixels();
    const auto width = static_cast<std::size_t>(picture.width());
    const Content content = examine(pixels);
    std::optional<Palette> palette = Palette::of(pixels);
    // Eight bits of gray need no palette.
    const bool plainGray = content.gray && content.opaque && palette && palette->bitDepth() == 8;
    if (palette && !plainGray) return withPalette(pixels, width, *palette);
    return withChannels(pixels, width, content);
}

}  // namespace tavrin::paint
