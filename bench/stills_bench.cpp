// SPDX-License-Identifier: MIT
#include <cstddef>
#include <string>

#include <benchmark/benchmark.h>

#include "tavrin/platform/paint/jpeg_encoder.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/paint/webp_encoder.h"
#include "tests/golden/golden_case.h"

// One picture at scale 3 in each format that is made of pixels; compare with the fast PNG of the same run.

namespace tavrin::bench {
namespace {

constexpr const char* examples[] = {"agenda", "weather"};

struct Still {
    const char* name;
    std::string (*encode)(const PixelBuffer& picture);
};

template <PngCompression compression>
std::string png(const PixelBuffer& picture) {
    return paint::encodePng(picture, compression);
}
template <PngCompression compression>
std::string webp(const PixelBuffer& picture) {
    return paint::encodeWebp(picture, compression);
}

constexpr Still stills[] = {
    {"PNG fast", png<PngCompression::fast>},
    {"PNG balanced", png<PngCompression::balanced>},
    {"PNG small", png<PngCompression::small>},
    {"WebP fast", webp<PngCompression::fast>},
    {"WebP balanced", webp<PngCompression::balanced>},
    {"WebP small", webp<PngCompression::small>},
    {"WebP 85", [](const PixelBuffer& picture) { return paint::encodeWebp(picture, PngCompression::fast, 85); }},
    {"JPEG 85", [](const PixelBuffer& picture) { return paint::encodeJpeg(picture, 85); }},
};

void encodeStill(benchmark::State& state) {
    const std::string example = examples[state.range(0)];
    const Still& still = stills[state.range(1)];
    const GoldenCase drawn{std::string(TAVRIN_SOURCE_DIR "/examples/") + example, "systemMedium"};
    const PixelBuffer picture = drawn.widget(Appearance::light).pixels();
    std::size_t bytes = 0;
    for (auto _ : state) bytes = still.encode(picture).size();
    state.SetLabel(example + " as " + still.name);
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(encodeStill)
    ->ArgsProduct({{0, 1}, benchmark::CreateDenseRange(0, std::size(stills) - 1, 1)})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavrin::bench
