// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot.h"

#include <algorithm>
#include <limits>

#include <fmt/format.h>

#include "cli/input.h"
#include "tavrin/images/image_decoder.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/picture_difference.h"
#include "tavrin/platform/paint/png_encoder.h"

namespace tavrin::cli {
namespace {

using paint::PixelBuffer;

std::optional<PixelBuffer> pixelsOf(const std::string& png) {
    const auto bitmap = decodeImage(png, {.maximumPixels = static_cast<std::size_t>(PixelBuffer::maxPixels),
                                          .maximumBytesInUse = std::numeric_limits<std::size_t>::max()});
    if (!bitmap) return std::nullopt;
    PixelBuffer pixels(bitmap->width(), bitmap->height());
    for (int y = 0; y < pixels.height(); ++y) std::copy_n(bitmap->row(y), pixels.width(), pixels.row(y));
    return pixels;
}

std::string sizeInWords(const PixelBuffer& picture) {
    return fmt::format("{} × {}", picture.width(), picture.height());
}

std::string inWords(const paint::PictureDifference& found, const PixelBuffer& before, const PixelBuffer& after) {
    if (!found.sameSize)
        return fmt::format("the picture is {} pixels instead of {}", sizeInWords(after), sizeInWords(before));
    const auto& [x0, y0, x1, y1] = found.bounds;
    return fmt::format("{} of {} pixels, within {} × {} at {}, {} and by up to {} of 255", found.count,
                       std::int64_t{after.width()} * after.height(), x1 - x0, y1 - y0, x0, y0, found.greatest);
}

/// A picture of the difference; none where it would be too large for a picture.
std::string drawnDifference(const PixelBuffer& before, const PixelBuffer& after, int tolerance) {
    try {
        return paint::encodePng(paint::differencePicture(before, after, tolerance));
    } catch (const TavrinError&) {
        return {};
    }
}

SnapshotDifference ofPictures(const std::string& kept, const std::string& drawn, int tolerance) {
    if (kept == drawn) return {};
    const auto before = pixelsOf(kept);
    const auto after = pixelsOf(drawn);
    if (!before || !after) return {.picture = "the kept picture cannot be read as one"};
    const paint::PictureDifference found = compare(*before, *after, tolerance);
    if (found.none()) return {};
    return {inWords(found, *before, *after), found.sameSize, drawnDifference(*before, *after, tolerance)};
}

bool isThere(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

}  // namespace

std::optional<Snapshot> readSnapshot(const SnapshotFiles& files) {
    if (!isThere(files.png) || !isThere(files.tree)) return std::nullopt;
    return Snapshot{readFound(files.png.string()), readFound(files.tree.string())};
}

SnapshotDifference difference(const Snapshot& kept, const Snapshot& drawn, int tolerance) {
    SnapshotDifference found = ofPictures(kept.png, drawn.png, tolerance);
    found.tree = treeChanges(kept.tree, drawn.tree);
    return found;
}

}  // namespace tavrin::cli
