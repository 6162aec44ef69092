// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_fast.h"

#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/paint/run_deflater.h"

namespace tavrin::paint {

void appendPngRowsFast(const PixelBuffer& picture, PngColorType colorType, std::string& out) {
    const auto width = static_cast<std::size_t>(picture.width());
    const bool opaque = colorType == PngColorType::rgb;
    RunDeflater deflater(out, opaque);
    // Nothing is above the first row; opaque pixels have no alpha there to be less than.
    const std::vector<std::uint32_t> nothing(width, opaque ? 0xFF000000 : 0);
    const std::uint32_t* above = nothing.data();
    for (int y = 0; y < picture.height(); ++y) {
        Meter::ofThisThread().paint(width);
        const std::uint32_t* row = picture.row(y);
        deflater.addRow(row, above, width);
        above = row;
    }
    deflater.finish();
}

std::string encodePngFast(const PixelBuffer& picture) {
    const PngColorType colorType = picture.isOpaque() ? PngColorType::rgb : PngColorType::rgba;
    PngFile file(picture.width(), picture.height(), 8, colorType);
    file.beginChunk("IDAT");
    appendPngRowsFast(picture, colorType, file.bytes());
    file.endChunk();
    return file.finish();
}

}  // namespace tavrin::paint
