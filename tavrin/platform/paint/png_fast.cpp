#include "tavrin/platform/paint/png_fast.h"

#include <array>
#include <vector>

#include "tavrin/platform/foundation/pixels.h"
#include "tavrin/platform/paint/png_file.h"
#include "tavrin/platform/paint/run_deflater.h"

namespace tavrin::paint {
namespace {

/// Rows with channels that are not premultiplied: the picture's own where all of a row is opaque.
class StraightRows {
public:
    StraightRows(const PixelBuffer& picture, bool opaque) : picture_(picture), opaque_(opaque) {}

    /// Valid until the second call after this one.
    const std::uint32_t* row(int y) {
        const std::uint32_t* row = picture_.row(y);
        const auto width = static_cast<std::size_t>(picture_.width());
        if (opaque_ || allOpaque(row, width)) return row;
        std::vector<std::uint32_t>& straight = made_[static_cast<std::size_t>(y) % made_.size()];
        straight.resize(width);
        straightenPixels(row, straight.data(), width);
        return straight.data();
    }

private:
    const PixelBuffer& picture_;
    bool opaque_;
    std::array<std::vector<std::uint32_t>, 2> made_;
};

}  // namespace

std::string encodePngFast(const PixelBuffer& picture) {
    const auto width = static_cast<std::size_t>(picture.width());
    const bool opaque = picture.isOpaque();
    PngFile file(picture.width(), picture.height(), 8, opaque ? PngColorType::rgb : PngColorType::rgba);
    file.beginChunk("IDAT");
    RunDeflater deflater(file.bytes(), opaque);
    StraightRows rows(picture, opaque);
    // Nothing is above the first row; opaque pixels have no alpha there to be less than.
    const std::vector<std::uint32_t> nothing(width, opaque ? 0xFF000000 : 0);
    const std::uint32_t* above = nothing.data();
    for (int y = 0; y < picture.height(); ++y) {
        const std::uint32_t* row = rows.row(y);
        deflater.addRow(row, above, width);
        above = row;
    }
    deflater.finish();
    file.endChunk();
    return file.finish();
}

}  // namespace tavrin::paint
