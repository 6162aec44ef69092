// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include <gif_lib.h>

#include "tavrin/images/decoders.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::images {
namespace {

void closeGif(GifFileType* file) { DGifCloseFile(file, nullptr); }
using GifFile = Handle<GifFileType, closeGif>;

int readBytes(GifFileType* file, GifByteType* bytes, int wanted) {
    auto& rest = *static_cast<std::string_view*>(file->UserData);
    const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(wanted));
    std::memcpy(bytes, rest.data(), count);
    rest.remove_prefix(count);
    return static_cast<int>(count);
}

/// Reads up to the first frame's pixels; the index that means transparent on the way, -1 for none. Nothing when there
/// is no frame.
std::optional<int> transparentIndexOfFirstFrame(GifFileType* file) {
    GraphicsControlBlock control{};
    control.TransparentColor = NO_TRANSPARENT_COLOR;
    GifRecordType record{};
    while (DGifGetRecordType(file, &record) == GIF_OK) {
        if (record == IMAGE_DESC_RECORD_TYPE)
            return DGifGetImageDesc(file) == GIF_OK ? std::optional(control.TransparentColor) : std::nullopt;
        int code = 0;
        GifByteType* block = nullptr;
        if (record != EXTENSION_RECORD_TYPE || DGifGetExtension(file, &code, &block) != GIF_OK) return std::nullopt;
        if (code == GRAPHICS_EXT_FUNC_CODE && block != nullptr) DGifExtensionToGCB(block[0], block + 1, &control);
        while (block != nullptr)
            if (DGifGetExtensionNext(file, &block) != GIF_OK) return std::nullopt;
    }
    return std::nullopt;
}

/// A pixel for each index; transparent ones where there is no colour.
using Palette = std::array<std::uint32_t, 256>;

Palette paletteOf(const ColorMapObject& colors, int transparentIndex) {
    Palette palette{};
    const auto count = std::min(palette.size(), static_cast<std::size_t>(std::max(0, colors.ColorCount)));
    for (std::size_t i = 0; i < count; ++i) {
        const GifColorType& color = colors.Colors[i];
        palette[i] = packPixel(0xFF, color.Red, color.Green, color.Blue);
    }
    if (transparentIndex >= 0) palette[static_cast<std::size_t>(transparentIndex) % palette.size()] = 0;
    return palette;
}

/// Reads the frame's rows in the order of the file, top to bottom or in the four passes of an interlaced one.
bool readFrame(GifFileType* file, const Palette& palette, std::uint32_t* target, std::size_t stride,
               Decoding& decoding) {
    struct Pass {
        int first;
        int step;
    };
    constexpr std::array<Pass, 1> straight{{{0, 1}}};
    constexpr std::array<Pass, 4> interlaced{{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
    const GifImageDesc& frame = file->Image;
    std::vector<GifPixelType> indices(static_cast<std::size_t>(frame.Width));
    const auto readRows = [&](const Pass& pass) {
        for (int y = pass.first; y < frame.Height; y += pass.step) {
            if (decoding.isStopped() || DGifGetLine(file, indices.data(), frame.Width) != GIF_OK) return false;
            std::transform(indices.begin(), indices.end(), target + static_cast<std::size_t>(y) * stride,
                           [&](GifPixelType index) { return palette[index]; });
        }
        return true;
    };
    return frame.Interlace ? std::all_of(interlaced.begin(), interlaced.end(), readRows)
                           : std::all_of(straight.begin(), straight.end(), readRows);
}

}  // namespace

Picture decodeGif(std::string_view bytes, Decoding& decoding) {
    const GifFile file(DGifOpen(&bytes, readBytes, nullptr));
    if (!file) return nullptr;
    const std::optional<int> transparentIndex = transparentIndexOfFirstFrame(file.get());
    if (!transparentIndex) return nullptr;
    const GifImageDesc& frame = file->Image;
    const ColorMapObject* colors = frame.ColorMap != nullptr ? frame.ColorMap : file->SColorMap;
    if (colors == nullptr || frame.Left < 0 || frame.Top < 0 || frame.Width < 1 || frame.Height < 1) return nullptr;

    // A frame that reaches beyond its screen enlarges it: some files declare a screen of no size.
    const int width = std::max(file->SWidth, frame.Left + frame.Width);
    const int height = std::max(file->SHeight, frame.Top + frame.Height);
    if (!decoding.admits(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height))) return nullptr;
    const auto stride = static_cast<std::size_t>(width);
    std::vector<std::uint32_t> pixels(stride * static_cast<std::size_t>(height));
    std::uint32_t* target = pixels.data() + static_cast<std::size_t>(frame.Top) * stride + frame.Left;
    if (!readFrame(file.get(), paletteOf(*colors, *transparentIndex), target, stride, decoding)) return nullptr;
    return std::make_shared<const Bitmap>(width, height, std::move(pixels));
}

}  // namespace tavrin::images
