// SPDX-License-Identifier: MIT
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/bench_data.h"
#include "tavrin/images/image_decoder.h"
#include "tavrin/images/image_processer.h"
#include "tavrin/platform/foundation/pixels/scaling.h"
#include "tavrin/platform/paint/canvas.h"

// What pictures cost: decoding each format, scaling, drawing for the first time and again.

namespace tavrin::bench {
namespace {

void decode(benchmark::State& state, const std::string& name) {
    const std::string bytes = readFile("bench/pictures/" + name);
    std::shared_ptr<const Bitmap> picture;
    for (auto _ : state) benchmark::DoNotOptimize(picture = decodeImage(bytes));
    if (!picture) return state.SkipWithError("no picture");
    state.SetItemsProcessed(state.iterations() * picture->width() * picture->height());
}
BENCHMARK_CAPTURE(decode, icon.png, "icon.png");
BENCHMARK_CAPTURE(decode, icon.webp, "icon.webp");
BENCHMARK_CAPTURE(decode, icon.gif, "icon.gif");
BENCHMARK_CAPTURE(decode, photo.jpg, "photo.jpg");
BENCHMARK_CAPTURE(decode, progressive.jpg, "progressive.jpg");
BENCHMARK_CAPTURE(decode, turned.jpg, "turned.jpg");
BENCHMARK_CAPTURE(decode, photo.webp, "photo.webp");

std::shared_ptr<const Bitmap> copyOf(const Bitmap& bitmap) {
    const auto count = static_cast<std::size_t>(bitmap.width()) * static_cast<std::size_t>(bitmap.height());
    return std::make_shared<const Bitmap>(bitmap.width(), bitmap.height(),
                                          std::vector<std::uint32_t>(bitmap.row(0), bitmap.row(0) + count));
}

std::shared_ptr<const Bitmap> icon() { return decodeImage(readFile("bench/pictures/icon.png")); }

constexpr Rect place{{10, 10}, {24, 24}};

/// A bitmap that was never drawn before, 256 pixels wide, drawn at 72.
void drawFirst(benchmark::State& state) {
    const auto original = icon();
    paint::Canvas canvas = paint::Canvas::raster({100, 100}, 3);
    for (auto _ : state) {
        state.PauseTiming();
        const auto fresh = copyOf(*original);
        state.ResumeTiming();
        canvas.draw(fresh, place, 1);
    }
}
BENCHMARK(drawFirst);

void drawAgain(benchmark::State& state, double opacity) {
    const auto picture = icon();
    paint::Canvas canvas = paint::Canvas::raster({100, 100}, 3);
    for (auto _ : state) canvas.draw(picture, place, opacity);
}
BENCHMARK_CAPTURE(drawAgain, opaque, 1);
BENCHMARK_CAPTURE(drawAgain, faded, 0.5);

void drawAgainTurned(benchmark::State& state) {
    const auto picture = icon();
    paint::Canvas canvas = paint::Canvas::raster({100, 100}, 3);
    canvas.transform({0.8, 0.6, -0.6, 0.8, 20, 0});
    for (auto _ : state) canvas.draw(picture, place, 1);
}
BENCHMARK(drawAgainTurned);

void scale(benchmark::State& state) {
    const auto side = static_cast<int>(state.range(0));
    const auto picture = icon();
    const PixelRows rows{picture->row(0), picture->width(), picture->height(), picture->width()};
    for (auto _ : state) benchmark::DoNotOptimize(scaledPixels(rows, side, side, {0, 0, side, side}));
}
BENCHMARK(scale)->Arg(72)->Arg(255)->Arg(512);

void fitAgain(benchmark::State& state) {
    const auto picture = icon();
    const ImageProcesser processer({100, 100});
    for (auto _ : state) benchmark::DoNotOptimize(processer.fit(picture));
}
BENCHMARK(fitAgain);

}  // namespace
}  // namespace tavrin::bench
