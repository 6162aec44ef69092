// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_small.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include <libdeflate.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/png_file.h"
#include "tavrin/platform/paint/png_reduction.h"

namespace tavrin::paint {
namespace {

using Bytes = pool::Vector<std::uint8_t>;

/// The lowest at which libdeflate looks for a longer match behind each one; for widgets a tenth smaller than the level
/// below.
constexpr int compressionLevel = 7;
/// Half as slow, and thorough enough to tell how well some rows can be compressed.
constexpr int samplingLevel = 4;
/// Of so many rows, some that follow each other stand for all.
constexpr std::size_t rowsInBand = 16;
constexpr std::size_t rowsFromBandToBand = 128;

/// Those that are tried; the format's fifth, the mean of two neighbours, is of no use.
enum class PngFilter : std::uint8_t { sub = 1, up = 2, paeth = 4 };

std::uint8_t paethPrediction(int left, int above, int corner) {
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toAbove && toLeft <= toCorner) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toAbove <= toCorner ? above : corner);
}

/// One row under one filter. `row` and `above` have `step` zero bytes (one pixel) before them.
template <PngFilter filter>
void applyFilter(const std::uint8_t* row, const std::uint8_t* above, Bytes& out, std::size_t step) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        const int left = *(row + i - step);
        const int corner = *(above + i - step);
        const int predicted = filter == PngFilter::sub  ? left
                              : filter == PngFilter::up ? above[i]
                                                        : paethPrediction(left, above[i], corner);
        out[i] = static_cast<std::uint8_t>(row[i] - predicted);
    }
}

/// A cheap guess at what differences cost when compressed: that there is one counts for more than its size.
std::uint32_t weigh(std::span<const std::uint8_t> differences) {
    constexpr std::uint32_t perDifference = 64;
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : differences) {
        const int signedByte = static_cast<std::int8_t>(byte);
        sum += byte == 0 ? 0 : perDifference + static_cast<std::uint32_t>(std::abs(signedByte));
    }
    return sum;
}

/// A zlib stream.
Bytes compressed(const Bytes& bytes, int level) {
    constexpr std::uint64_t bytesInPixel = 2;  // compressing takes longer than painting
    Meter::ofThisThread().paint(bytes.size() / bytesInPixel);
    const std::unique_ptr<libdeflate_compressor, decltype([](auto* it) { libdeflate_free_compressor(it); })> compressor(
        libdeflate_alloc_compressor(level));
    if (!compressor) throw TavrinError{"Render", "a picture could not be compressed (out of memory)"};
    Bytes out(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    out.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), out.data(), out.size()));
    if (out.empty()) throw TavrinError{"Render", "a picture could not be compressed"};
    return out;
}

/// The rows of one picture with filter numbers, all of them or those of the bands.
class Rows {
public:
    Rows(const PngSamples& samples, std::size_t width)
        : samples_(samples),
          height_(samples.rows.size() / samples.bytesPerRow),
          count_(samples.bytesPerRow - 1),
          step_(count_ / width) {}

    /// Nothing of the bands filtered.
    [[nodiscard]] Bytes plainBands() const {
        Bytes out;
        forEach(true,
                [&](const std::uint8_t* row, const std::uint8_t*) { out.insert(out.end(), row - 1, row + count_); });
        return out;
    }

    /// Each row under the filter whose differences weigh least.
    [[nodiscard]] Bytes filtered(bool bands) const {
        // One pixel of zeros stands before each row.
        Bytes row(step_ + count_);
        Bytes above(step_ + count_);
        std::array<FilteredRow, 3> candidates{{{PngFilter::sub}, {PngFilter::up}, {PngFilter::paeth}}};
        for (FilteredRow& candidate : candidates) candidate.differences.resize(count_);
        Bytes out;
        forEach(bands, [&](const std::uint8_t* current, const std::uint8_t* previous) {
            std::copy_n(current, count_, row.data() + step_);
            std::copy_n(previous, count_, above.data() + step_);
            applyFilter<PngFilter::sub>(row.data() + step_, above.data() + step_, candidates[0].differences, step_);
            applyFilter<PngFilter::up>(row.data() + step_, above.data() + step_, candidates[1].differences, step_);
            applyFilter<PngFilter::paeth>(row.data() + step_, above.data() + step_, candidates[2].differences, step_);
            const FilteredRow& best = *std::ranges::min_element(
                candidates, {}, [](const FilteredRow& candidate) { return weigh(candidate.differences); });
            out.push_back(static_cast<std::uint8_t>(best.filter));
            out.insert(out.end(), best.differences.begin(), best.differences.end());
        });
        return out;
    }

private:
    /// What a filter leaves of a row.
    struct FilteredRow {
        PngFilter filter;
        Bytes differences = {};
    };

    template <class Visit>
    void forEach(bool bands, const Visit& visit) const {
        const Bytes nothing(count_);
        for (std::size_t y = 0; y < height_; ++y) {
            if (bands && y % rowsFromBandToBand >= rowsInBand) continue;
            Meter::ofThisThread().paint(count_ / step_);
            const std::uint8_t* row = samples_.rows.data() + y * (1 + count_) + 1;
            visit(row, y == 0 ? nothing.data() : row - (1 + count_));
        }
    }

    const PngSamples& samples_;
    std::size_t height_;
    std::size_t count_;
    std::size_t step_;
};

Bytes smallData(const PngSamples& samples, std::size_t width) {
    // 1. Differences of palette indexes mean nothing.
    if (samples.colorType == PngColorType::palette) return compressed(samples.rows, compressionLevel);
    // 2. Filters help photographs and harm most else: where they do not seem to help in some bands, none is used.
    const Rows rows(samples, width);
    const auto sampledSize = [](const Bytes& bands) { return compressed(bands, samplingLevel).size(); };
    const bool maybeFiltered = sampledSize(rows.filtered(true)) < sampledSize(rows.plainBands());
    // 3. What repeats from band to band is not seen in them, so that the smaller one is known only in the end.
    Bytes plain = compressed(samples.rows, compressionLevel);
    if (!maybeFiltered) return plain;
    Bytes filtered = compressed(rows.filtered(false), compressionLevel);
    return filtered.size() < plain.size() ? filtered : plain;
}

}  // namespace

std::string pngRowsSmall(const PixelBuffer& picture) {
    const Bytes rows = smallData(rgbaPngSamples(picture), static_cast<std::size_t>(picture.width()));
    return {rows.begin(), rows.end()};
}

std::string encodePngSmall(const PixelBuffer& picture) {
    const PngSamples samples = reduceToPngSamples(picture);
    PngFile file(picture.width(), picture.height(), samples.bitDepth, samples.colorType);
    if (!samples.palette.empty()) file.addChunk("PLTE", samples.palette);
    if (!samples.paletteOpacities.empty()) file.addChunk("tRNS", samples.paletteOpacities);
    file.addChunk("IDAT", smallData(samples, static_cast<std::size_t>(picture.width())));
    return file.finish();
}

}  // namespace tavrin::paint
