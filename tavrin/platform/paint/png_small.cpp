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
constexpr int compressionLevel = 6;

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

/// Rows with their filter numbers; `choose` false leaves all rows as they are.
Bytes filtered(const PngSamples& samples, std::size_t step, bool choose) {
    const std::size_t count = samples.bytesPerRow;
    Bytes out;
    out.reserve(samples.rows.size() / count * (count + 1));
    Bytes row(step + count, 0);
    Bytes above(step + count, 0);
    std::array<Bytes, filterCount> candidates;
    candidates.fill(Bytes(count));

    for (auto next = samples.rows.begin(); next != samples.rows.end(); next += static_cast<std::ptrdiff_t>(count)) {
        std::size_t best = 0;
        if (choose) {
            std::copy_n(next, count, row.begin() + static_cast<std::ptrdiff_t>(step));
            const std::uint8_t* current = row.data() + step;
            const std::uint8_t* previous = above.data() + step;
            applyFilter<0>(current, previous, candidates[0].data(), count, step);
            applyFilter<1>(current, previous, candidates[1].data(), count, step);
            applyFilter<2>(current, previous, candidates[2].data(), count, step);
            applyFilter<3>(current, previous, candidates[3].data(), count, step);
            applyFilter<4>(current, previous, candidates[4].data(), count, step);
            std::array<std::uint64_t, filterCount> weights{};
            std::transform(candidates.begin(), candidates.end(), weights.begin(), weigh);
            best = static_cast<std::size_t>(std::min_element(weights.begin(), weights.end()) - weights.begin());
            row.swap(above);
            out.push_back(static_cast<std::uint8_t>(best));
            out.insert(out.end(), candidates[best].begin(), candidates[best].end());
        } else {
            out.push_back(0);
            out.insert(out.end(), next, next + static_cast<std::ptrdiff_t>(count));
        }
    }
    return out;
}

Bytes compressed(const Bytes& bytes) {
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(compressionLevel), &libdeflate_free_compressor);
    if (!compressor) throw TavrinError{"Render", "a picture could not be compressed (out of memory)"};
    Bytes out(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    out.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), out.data(), out.size()));
    if (out.empty()) throw TavrinError{"Render", "a picture could not be compressed"};
    return out;
}

Bytes smallestData(const PngSamples& samples, int width) {
    Bytes plain = compressed(filtered(samples, 0, false));
    // Differences of palette indexes mean nothing.
    if (samples.colorType == PngColorType::palette) return plain;
    const std::size_t step = samples.bytesPerRow / static_cast<std::size_t>(width);
    Bytes chosen = compressed(filtered(samples, step, true));
    return chosen.size() < plain.size() ? chosen : plain;
}

}  // namespace

std::vector<std::uint8_t> pngRowsSmall(const PixelBuffer& picture) {
    PngSamples samples;
    samples.bytesPerRow = 4 * static_cast<std::size_t>(picture.width());
    samples.rows = picture.straightRGBA();
    return smallestData(samples, picture.width());
}

std::string encodePngSmall(const PixelBuffer& picture) {
    const PngSamples samples = reduceToPngSamples(picture);
    PngFile file(picture.width(), picture.height(), samples.bitDepth, samples.colorType);
    if (!samples.palette.empty()) file.addChunk("PLTE", samples.palette);
    if (!samples.paletteOpacities.empty()) file.addChunk("tRNS", samples.paletteOpacities);
    file.addChunk("IDAT", smallestData(samples, picture.width()));
    return file.finish();
}

}  // namespace tavrin::paint
