// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include "bench/bench_data.h"
#include "tavrin/tavrin.h"

// The moments of the clock: each by a renderer of its own, which lays out and draws, against one after another by one
// renderer, which only draws; and minutes as animations. Compare the items, frames, per second.

namespace tavrin::bench {
namespace {

constexpr Date moment{1'795'249'105};
constexpr double framesOfMinute = 60;

RenderOptions clockOptions(double seconds = 0) {
    RenderOptions options;
    options.size = {158, 158};
    options.environment.date = {moment.secondsSince1970 + seconds};
    return options;
}

AnyView loadClock() {
    const Example example("clock");
    Context context;
    context.date = moment;
    return TavrinEngine().loadView(example.document, example.model, context);
}

void BM_ClockMomentsAlone(benchmark::State& state) {
    const AnyView view = loadClock();
    double seconds = 0;
    for (auto _ : state) benchmark::DoNotOptimize(ImageRenderer(view, clockOptions(++seconds)).pixels());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ClockMomentsAlone)->Unit(benchmark::kMicrosecond);

void BM_ClockMoments(benchmark::State& state) {
    AnimationRenderer renderer(loadClock(), clockOptions());
    double seconds = 0;
    for (auto _ : state) benchmark::DoNotOptimize(renderer.pixels({moment.secondsSince1970 + ++seconds}));
    state.SetItemsProcessed(state.iterations());
    state.counters["layouts"] = static_cast<double>(renderer.layoutCount());
}
BENCHMARK(BM_ClockMoments)->Unit(benchmark::kMicrosecond);

/// A minute, written as the options say.
void animate(benchmark::State& state, AnimationFormat format, PngCompression compression) {
    const AnyView view = loadClock();
    RenderOptions options = clockOptions();
    options.compression = compression;
    const FrameSpan minute{moment, {moment.secondsSince1970 + framesOfMinute - 1}, 1};
    std::size_t bytes = 0;
    for (auto _ : state) bytes = AnimationRenderer(view, options).encode(minute, {.format = format}).size();
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(framesOfMinute));
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK_CAPTURE(animate, png_fast, AnimationFormat::png, PngCompression::fast)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(animate, png_small, AnimationFormat::png, PngCompression::small)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(animate, webp_fast, AnimationFormat::webp, PngCompression::fast)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(animate, webp_small, AnimationFormat::webp, PngCompression::small)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace tavrin::bench
