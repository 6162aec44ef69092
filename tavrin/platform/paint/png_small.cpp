// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_small.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include <libdeflate.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/png_file.h"
#include "tavrin/platform/paint/png_reduction.h"

namespace tavrin::paint {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int filterCount = 5;
/// The lowest at which libdeflate looks for a longer match behind each one; for widgets a tenth smaller than the level
/// below.
constexpr int compressionLevel = 7;
/// Of so many rows, some that follow each other stand for all when filters are compared with none.
constexpr std::size_t rowsInBand = 16;
constexpr std::size_t rowsFromBandToBand = 128;

std::uint8_t paeth(int left, int above, int corner) {
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toAbove && toLeft <= toCorner) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toAbove <= toCorner ? above : corner);
}

/// One row under one filter. `row` and `above` have `step` zero bytes (one pixel) before them.
template <int filter>
void applyFilter(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* out, std::size_t count,
                 std::size_t step) {
    for (std::size_t i = 0; i < count; ++i) {
        const int left = *(row + i - step);
        const int corner = *(above + i - step);
        const int predicted = filter == 0   ? 0
                              : filter == 1 ? left
                              : filter == 2 ? above[i]
                              : filter == 3 ? (left + above[i]) / 2
                                            : paeth(left, above[i], corner);
        out[i] = static_cast<std::uint8_t>(row[i] - predicted);
    }
}

/// The sum of the differences' sizes: a cheap guess at what they cost when compressed.
std::uint64_t weigh(std::span<const std::uint8_t> differences) {
    std::uint64_t sum = 0;
    for (const std::uint8_t byte : differences) {
        const int signedByte = static_cast<std::int8_t>(byte);
        sum += static_cast<unsigned>(signedByte < 0 ? -signedByte : signedByte);
    }
    return sum;
}

class Compressor {
public:
    Compressor() : compressor_(libdeflate_alloc_compressor(compressionLevel)) {
        if (!compressor_) throw TavrinError{"Render", "a picture could not be compressed (out of memory)"};
    }

    /// A zlib stream, valid until the next call.
    std::span<const std::uint8_t> compress(const Bytes& bytes) {
        const std::size_t bound = libdeflate_zlib_compress_bound(compressor_.get(), bytes.size());
        if (bound > room_) out_ = std::make_unique_for_overwrite<std::uint8_t[]>(room_ = bound);
        const std::size_t size =
            libdeflate_zlib_compress(compressor_.get(), bytes.data(), bytes.size(), out_.get(), room_);
        if (size == 0) throw TavrinError{"Render", "a picture could not be compressed"};
        return {out_.get(), size};
    }

private:
    std::unique_ptr<libdeflate_compressor, decltype([](auto* it) { libdeflate_free_compressor(it); })> compressor_;
    std::unique_ptr<std::uint8_t[]> out_;
    std::size_t room_ = 0;
};

/// The rows of one picture with filter numbers, all of them or those of the bands.
class Rows {
public:
    Rows(const PngSamples& samples, std::size_t width)
        : samples_(samples),
          height_(samples.rows.size() / samples.bytesPerRow),
          count_(samples.bytesPerRow - 1),
          step_(count_ / width) {}

    /// Nothing filtered.
    [[nodiscard]] Bytes plain(bool bands) const {
        Bytes out;
        forEach(bands,
                [&](const std::uint8_t* row, const std::uint8_t*) { out.insert(out.end(), row - 1, row + count_); });
        return out;
    }

    /// Each row under the filter that leaves the smallest differences.
    [[nodiscard]] Bytes filtered(bool bands) const {
        // One pixel of zeros stands before each row.
        Bytes row(step_ + count_);
        Bytes above(step_ + count_);
        std::array<Bytes, filterCount> candidates;
        candidates.fill(Bytes(count_));
        Bytes out;
        forEach(bands, [&](const std::uint8_t* current, const std::uint8_t* previous) {
            std::copy_n(current, count_, row.data() + step_);
            std::copy_n(previous, count_, above.data() + step_);
            const std::size_t best = applyFilters(row.data() + step_, above.data() + step_, candidates);
            out.push_back(static_cast<std::uint8_t>(best));
            out.insert(out.end(), candidates[best].begin(), candidates[best].end());
        });
        return out;
    }

private:
    template <class Visit>
    void forEach(bool bands, const Visit& visit) const {
        const Bytes nothing(count_);
        for (std::size_t y = 0; y < height_; ++y) {
            if (bands && y % rowsFromBandToBand >= rowsInBand) continue;
            const std::uint8_t* row = samples_.rows.data() + y * (1 + count_) + 1;
            visit(row, y == 0 ? nothing.data() : row - (1 + count_));
        }
    }

    std::size_t applyFilters(const std::uint8_t* row, const std::uint8_t* above,
                             std::array<Bytes, filterCount>& candidates) const {
        applyFilter<0>(row, above, candidates[0].data(), count_, step_);
        applyFilter<1>(row, above, candidates[1].data(), count_, step_);
        applyFilter<2>(row, above, candidates[2].data(), count_, step_);
        applyFilter<3>(row, above, candidates[3].data(), count_, step_);
        applyFilter<4>(row, above, candidates[4].data(), count_, step_);
        std::array<std::uint64_t, filterCount> weights{};
        std::transform(candidates.begin(), candidates.end(), weights.begin(), weigh);
        return static_cast<std::size_t>(std::min_element(weights.begin(), weights.end()) - weights.begin());
    }

    const PngSamples& samples_;
    std::size_t height_;
    std::size_t count_;
    std::size_t step_;
};

std::span<const std::uint8_t> smallData(Compressor& compressor, const PngSamples& samples, std::size_t width) {
    // Differences of palette indexes mean nothing.
    if (samples.colorType == PngColorType::palette) return compressor.compress(samples.rows);
    const Rows rows(samples, width);
    const std::size_t plainSize = compressor.compress(rows.plain(true)).size();
    const bool filter = compressor.compress(rows.filtered(true)).size() < plainSize;
    return compressor.compress(filter ? rows.filtered(false) : samples.rows);
}

}  // namespace

std::vector<std::uint8_t> pngRowsSmall(const PixelBuffer& picture) {
    Compressor compressor;
    const auto rows = smallData(compressor, rgbaPngSamples(picture), static_cast<std::size_t>(picture.width()));
    return {rows.begin(), rows.end()};
}

std::string encodePngSmall(const PixelBuffer& picture) {
    const PngSamples samples = reduceToPngSamples(picture);
    PngFile file(picture.width(), picture.height(), samples.bitDepth, samples.colorType);
    if (!samples.palette.empty()) file.addChunk("PLTE", samples.palette);
    if (!samples.paletteOpacities.empty()) file.addChunk("tRNS", samples.paletteOpacities);
    Compressor compressor;
    file.addChunk("IDAT", smallData(compressor, samples, static_cast<std::size_t>(picture.width())));
    return file.finish();
}

}  // namespace tavrin::paint
