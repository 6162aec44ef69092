// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <libdeflate.h>

#include "bench/measures.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/paint/png_reduction.h"
#include "tests/golden/golden_case.h"

// PNG compressions over the gallery: every example in three families, light and dark, at two scales. Each picture goes
// through all of them by turns, so that a slow moment of the machine slows all alike; compare `time`, of the sums of
// medians to that of the fast encoder, and `size`, of the sums of bytes to that of the small one. What works on reduced
// samples is measured without the reduction, which is a row of its own.

namespace tavrin::bench {
namespace {

using paint::PngSamples;
using Bytes = std::vector<std::uint8_t>;

std::vector<PixelBuffer> gallery() {
    std::vector<PixelBuffer> pictures;
    for (const GoldenCase& example : exampleCases())
        for (const char* family : {"systemSmall", "systemMedium", "systemLarge"})
            for (const Appearance appearance : {Appearance::light, Appearance::dark})
                for (const double scale : {2.0, 3.0}) {
                    const GoldenCase picture{example.folder, family};
                    WidgetOptions options = picture.widgetOptions(appearance);
                    options.scale = scale;
                    pictures.push_back(picture.widget(options).pixels());
                }
    return pictures;
}

std::size_t sizeByLibdeflate(const std::uint8_t* bytes, std::size_t count, int level) {
    const std::unique_ptr<libdeflate_compressor, decltype([](auto* it) { libdeflate_free_compressor(it); })> compressor(
        libdeflate_alloc_compressor(level));
    static Bytes out;
    out.resize(std::max(out.size(), libdeflate_zlib_compress_bound(compressor.get(), count)));
    return libdeflate_zlib_compress(compressor.get(), bytes, count, out.data(), out.size());
}

template <int level>
std::size_t libdeflate(const PixelBuffer&, const PngSamples& samples) {
    return sizeByLibdeflate(samples.rows.data(), samples.rows.size(), level);
}

std::size_t igzip(const PixelBuffer&, const PngSamples& samples) { return sizeByIgzip(samples.rows); }

/// Whether a fifth of the pixels of some rows is neither the one above nor the one to the left.
bool isNoisy(const PixelBuffer& picture) {
    constexpr int rowsFromRowToRow = 16;
    std::size_t seen = 0;
    std::size_t found = 0;
    for (int y = rowsFromRowToRow; y < picture.height(); y += rowsFromRowToRow) {
        const std::uint32_t* const row = picture.row(y);
        const std::uint32_t* const above = picture.row(y - 1);
        for (int x = 1; x < picture.width(); ++x, ++seen)
            found += static_cast<std::size_t>((row[x] != above[x]) & (row[x] != row[x - 1]));
    }
    return 5 * found > seen;
}

/// Every row under the filter *Paeth*.
Bytes withPaeth(const PngSamples& samples, std::size_t step) {
    const std::size_t size = samples.bytesPerRow;
    Bytes out(samples.rows.begin(), samples.rows.end());
    for (std::size_t begin = 0; begin < out.size(); begin += size) {
        const std::uint8_t* const row = samples.rows.data() + begin;
        out[begin] = 4;
        for (std::size_t i = 1; i < size; ++i) {
            const int left = i > step ? row[i - step] : 0;
            const int above = begin > 0 ? *(row + i - size) : 0;
            const int corner = begin > 0 && i > step ? *(row + i - size - step) : 0;
            const int toLeft = std::abs(above - corner);
            const int toAbove = std::abs(left - corner);
            const int toCorner = std::abs(above + left - 2 * corner);
            const int other = toAbove <= toCorner ? above : corner;
            out[begin + i] =
                static_cast<std::uint8_t>(row[i] - (toLeft <= toAbove && toLeft <= toCorner ? left : other));
        }
    }
    return out;
}

/// Level 1 of what is filtered, where that seems to help, else a thorough level.
template <int level>
std::size_t filteredWhereNoisy(const PixelBuffer& picture, const PngSamples& samples) {
    if (samples.colorType == paint::PngColorType::palette || !isNoisy(picture))
        return libdeflate<level>(picture, samples);
    const Bytes rows = withPaeth(samples, (samples.bytesPerRow - 1) / static_cast<std::size_t>(picture.width()));
    return sizeByLibdeflate(rows.data(), rows.size(), 1);
}

struct Compression {
    const char* name;
    std::size_t (*size)(const PixelBuffer& picture, const PngSamples& samples);
    double seconds = 0;
    double bytes = 0;
};

using Compressions = std::array<Compression, 12>;
constexpr std::size_t fastest = 0;
constexpr std::size_t smallest = 1;

/// Everything, measured once.
const Compressions& measured() {
    static const Compressions all = [] {
        constexpr std::size_t rounds = 5;
        Compressions compressions{{
            {"fast", [](auto& picture, auto&) { return encodePng(picture, PngCompression::fast).size(); }},
            {"small", [](auto& picture, auto&) { return encodePng(picture, PngCompression::small).size(); }},
            {"balanced", [](auto& picture, auto&) { return encodePng(picture, PngCompression::balanced).size(); }},
            {"reduction alone", [](auto& picture, auto&) { return reduceToPngSamples(picture).rows.size(); }},
            {"ISA-L 1", igzip},
            {"libdeflate 1", libdeflate<1>},
            {"libdeflate 2", libdeflate<2>},
            {"libdeflate 3", libdeflate<3>},
            {"libdeflate 4", libdeflate<4>},
            {"libdeflate 5", libdeflate<5>},
            {"libdeflate 4, or Paeth", filteredWhereNoisy<4>},
            {"libdeflate 5, or Paeth", filteredWhereNoisy<5>},
        }};
        for (const PixelBuffer& picture : gallery()) {
            const PngSamples samples = reduceToPngSamples(picture);
            std::array<std::array<double, rounds>, std::tuple_size_v<Compressions>> times{};
            std::array<std::size_t, std::tuple_size_v<Compressions>> sizes{};
            for (std::size_t round = 0; round < rounds; ++round) {
                for (std::size_t i = 0; i < compressions.size(); ++i) {
                    const double start = threadSeconds();
                    sizes[i] = compressions[i].size(picture, samples);
                    times[i][round] = threadSeconds() - start;
                }
            }
            for (std::size_t i = 0; i < compressions.size(); ++i) {
                std::ranges::sort(times[i]);
                compressions[i].seconds += times[i][rounds / 2];
                compressions[i].bytes += static_cast<double>(sizes[i]);
            }
        }
        return compressions;
    }();
    return all;
}

void compressGallery(benchmark::State& state) {
    const Compressions& all = measured();
    const Compression& one = all[static_cast<std::size_t>(state.range(0))];
    for (auto _ : state) state.SetIterationTime(one.seconds);
    state.SetLabel(one.name);
    state.counters["time"] = one.seconds / all[fastest].seconds;
    state.counters["size"] = one.bytes / all[smallest].bytes;
}
BENCHMARK(compressGallery)
    ->DenseRange(0, std::tuple_size_v<Compressions> - 1)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavrin::bench
