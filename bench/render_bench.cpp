// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/bench_data.h"
#include "bench/measures.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/painter.h"
#include "tavrin/tavrin.h"

// From JSON to PNG by stage, warm, at scale 3; encoding beside what a general compressor takes for the same bytes.

namespace tavrin::bench {
namespace {

constexpr Date moment{1'795'249'105};

/// An example with the widget's size it is made for.
struct Widget {
    const char* name;
    Size size;
};
constexpr Widget widgets[] = {
    {"agenda", {338, 158}}, {"countdown", {158, 158}}, {"headlines", {338, 354}}, {"departures", {338, 158}}};

RenderOptions optionsFor(const Widget& widget) {
    RenderOptions options;
    options.size = widget.size;
    options.environment.date = moment;
    return options;
}

AnyView load(const Example& example) {
    Context context;
    context.date = moment;
    context.imageCacheDir = URL::fileURL(example.pictures);
    return TavrinEngine().loadView(example.document, example.model, context);
}

void BM_DecodeBindBuild(benchmark::State& state) {
    const Example example(widgets[state.range(0)].name);
    state.SetLabel(widgets[state.range(0)].name);
    for (auto _ : state) benchmark::DoNotOptimize(load(example));
}
BENCHMARK(BM_DecodeBindBuild)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

void BM_Layout(benchmark::State& state) {
    const Widget& widget = widgets[state.range(0)];
    const AnyView view = load(Example(widget.name));
    const RenderOptions options = optionsFor(widget);
    state.SetLabel(widget.name);
    text::TextEngine& texts = text::TextEngine::ofThisThread();
    for (auto _ : state)
        benchmark::DoNotOptimize(layout::layOut(view, options.size, options.environment, texts).answerCount());
}
BENCHMARK(BM_Layout)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

void BM_Paint(benchmark::State& state) {
    const Widget& widget = widgets[state.range(0)];
    const RenderOptions options = optionsFor(widget);
    ImageRenderer renderer(load(Example(widget.name)), options);
    state.SetLabel(widget.name);
    benchmark::DoNotOptimize(renderer.layoutTree().answerCount());
    for (auto _ : state) benchmark::DoNotOptimize(renderer.pixels());
}
BENCHMARK(BM_Paint)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

void encodeWith(benchmark::State& state, PngCompression compression) {
    const Widget& widget = widgets[state.range(0)];
    const PixelBuffer pixels = ImageRenderer(load(Example(widget.name)), optionsFor(widget)).pixels();
    state.SetLabel(widget.name);
    std::size_t bytes = 0;
    for (auto _ : state) bytes = paint::encodePng(pixels, compression).size();
    state.counters["bytes"] = static_cast<double>(bytes);
}
void BM_EncodeFast(benchmark::State& state) { encodeWith(state, PngCompression::fast); }
void BM_EncodeSmall(benchmark::State& state) { encodeWith(state, PngCompression::small); }
BENCHMARK(BM_EncodeFast)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_EncodeSmall)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

/// The rows of an opaque picture, filtered as the fast encoder does: RGB, each less the row above.
std::vector<std::uint8_t> filteredRows(const PixelBuffer& pixels) {
    const std::vector<std::uint8_t> rgba = pixels.straightRGBA();
    const auto width = static_cast<std::size_t>(pixels.width());
    std::vector<std::uint8_t> rows;
    for (std::size_t y = 0; y < static_cast<std::size_t>(pixels.height()); ++y) {
        rows.push_back(2);
        for (std::size_t x = 0; x < width; ++x) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const std::size_t at = (y * width + x) * 4 + channel;
                const int above = y == 0 ? 0 : rgba[at - width * 4];
                rows.push_back(static_cast<std::uint8_t>(rgba[at] - above));
            }
        }
    }
    return rows;
}

void BM_IgzipAlone(benchmark::State& state) {
    const Widget& widget = widgets[state.range(0)];
    const std::vector<std::uint8_t> rows =
        filteredRows(ImageRenderer(load(Example(widget.name)), optionsFor(widget)).pixels());
    state.SetLabel(widget.name);
    std::size_t bytes = 0;
    for (auto _ : state) bytes = sizeByIgzip(rows);
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_IgzipAlone)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

std::string renderOnce(const Example& example, const Widget& widget) {
    return ImageRenderer(load(example), optionsFor(widget)).encode(PictureFormat::png);
}

void BM_JsonToPng(benchmark::State& state) {
    const Widget& widget = widgets[state.range(0)];
    const Example example(widget.name);
    state.SetLabel(widget.name);
    for (auto _ : state) benchmark::DoNotOptimize(renderOnce(example, widget));
}
BENCHMARK(BM_JsonToPng)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

/// Threads that render the agenda side by side; compare the pictures per second of one and of two.
void BM_Threads(benchmark::State& state) {
    static const Example example("agenda");
    for (auto _ : state) benchmark::DoNotOptimize(renderOnce(example, widgets[0]));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Threads)->Threads(1)->Threads(2)->UseRealTime()->Unit(benchmark::kMicrosecond);

void layOutDocument(benchmark::State& state, const std::string& document, std::int64_t nodes) {
    Context context;
    const AnyView view = TavrinEngine().loadView(document, std::nullopt, context);
    const EnvironmentValues environment;
    text::TextEngine& texts = text::TextEngine::ofThisThread();
    for (auto _ : state) benchmark::DoNotOptimize(layout::layOut(view, {338, 158}, environment, texts).answerCount());
    state.counters["per_node"] = benchmark::Counter(
        static_cast<double>(nodes), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
void BM_LayoutFlat(benchmark::State& state) {
    layOutDocument(state, flatDocument(static_cast<int>(state.range(0))), state.range(0));
}
void BM_LayoutNested(benchmark::State& state) {
    layOutDocument(state, nestedDocument(static_cast<int>(state.range(0))), 2 * state.range(0));
}
BENCHMARK(BM_LayoutFlat)->Arg(200)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LayoutNested)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavrin::bench
