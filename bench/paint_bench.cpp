// SPDX-License-Identifier: MIT
#include <chrono>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/bench_data.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/painter.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/tavrin.h"

// What painting costs: the weather example by primitive, gradients against plain colours, many shapes, layers.

namespace tavrin::bench {
namespace {

constexpr Size page{338, 158};
constexpr double scale = 3;

/// A laid-out view that can be painted again and again.
class Picture {
public:
    explicit Picture(const AnyView& view)
        : texts_(paint::TextPainter::ofThisThread()),
          tree_(layout::layOut(view, page, environment_, texts_.engine())) {}

    void paint(paint::Canvas& canvas) const { paint::paintTree(tree_, canvas, texts_); }

private:
    EnvironmentValues environment_;
    paint::TextPainter& texts_;
    layout::LayoutTree tree_;
};

AnyView viewOf(const std::string& main) {
    Context context;
    return TavrinEngine().loadView(R"({"version":"1.2","nodes":{"main":)" + main + "}}", std::nullopt, context);
}

/// Paints over and over on one canvas, without making the surface anew.
void paintRepeatedly(benchmark::State& state, const Picture& picture) {
    paint::Canvas canvas = paint::Canvas::raster(page, scale);
    picture.paint(canvas);
    for (auto _ : state) {
        picture.paint(canvas);
        benchmark::ClobberMemory();
    }
}

/// The weather example with only some of its primitives left.
struct Part {
    const char* name;
    bool background;
    bool line;
    bool texts;
    bool pictures;
    bool fading = true;
};

constexpr Part parts[] = {
    {"all", true, true, true, true},
    {"background gradient", true, false, false, false},
    {"line", false, true, false, false},
    {"texts", false, false, true, false},
    {"texts, none faded", false, false, true, false, false},
    {"pictures", false, false, false, true},
    {"nothing", false, false, false, false},
};

/// Replaces every `from` from `begin` on.
void replaceAll(std::string& text, std::string_view from, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += by.size())
        text.replace(at, from.size(), by);
}

AnyView weatherPart(const Part& part) {
    Example weather("weather");
    std::string& document = weather.document;
    if (!part.background) replaceAll(document, R"("type": "background")", R"("type": "zIndex", "zIndex": 0)");
    if (!part.line) replaceAll(document, "#40FFFFFF", "#00FFFFFF");
    if (!part.fading) replaceAll(document, R"("type": "opacity", "opacity": 0)", R"("type": "opacity", "opacity": 1)");
    if (!part.texts)
        for (const char* key : {"city", "temperature", "condition", "range", "time"}) {
            replaceAll(document, "initServerParam." + std::string(key) + "}}", "initServerParam.none}}");
            replaceAll(document, "]." + std::string(key) + "}}", "].none}}");
        }
    if (!part.pictures) {
        replaceAll(document, "initServerParam.sky}}", "initServerParam.none}}");
        replaceAll(document, "].sky}}", "].none}}");
    }
    replaceAll(weather.model, "\"city\"", R"("none": " ", "city")");
    replaceAll(weather.model, "\"time\"", R"("none": " ", "time")");
    Context context;
    context.imageCacheDir = URL::fileURL(weather.pictures);
    return TavrinEngine().loadView(document, weather.model, context);
}

void BM_PaintWeather(benchmark::State& state) {
    const Part& part = parts[state.range(0)];
    state.SetLabel(part.name);
    paintRepeatedly(state, Picture(weatherPart(part)));
}
BENCHMARK(BM_PaintWeather)->DenseRange(0, 6)->Unit(benchmark::kMicrosecond);

constexpr const char* solid = R"("fillColor":{"value":"#2F6FDE"})";
constexpr const char* corners = R"("modifiers":[{"type":"cornerRadius","radius":21.6}])";

/// One primitive over the whole page.
struct Primitive {
    const char* name;
    std::string main;
};

const std::vector<Primitive>& primitives() {
    const std::string gradient = R"({"type":"color","gradient":true,"value":"#2F6FDE-#5AA5F2-#8CC8F5",)";
    static const std::vector<Primitive> list{
        {"solid rectangle", R"({"type":"color","value":"#2F6FDE"})"},
        {"translucent rectangle", R"({"type":"color","value":"#50FF0000"})"},
        {"solid rounded rectangle", R"({"type":"roundedRectangle","cornerRadius":21.6,)" + std::string(solid) + "}"},
        {"solid continuous rectangle",
         R"({"type":"roundedRectangle","cornerRadius":21.6,"style":"continuous",)" + std::string(solid) + "}"},
        {"solid circle", R"({"type":"circle",)" + std::string(solid) + "}"},
        {"ring", R"({"type":"circle","stroke":true,"lineWidth":12,"strokeColor":{"value":"#2F6FDE"}})"},
        {"vertical gradient", gradient + R"("start":"top","end":"bottom"})"},
        {"diagonal gradient", gradient + R"("start":"topLeading","end":"bottomTrailing"})"},
        {"translucent diagonal",
         R"({"type":"color","gradient":true,"value":"#50FF0000-#500000FF","start":"topLeading","end":"bottomTrailing"})"},
        {"colour in corners", R"({"type":"color","value":"#2F6FDE",)" + std::string(corners) + "}"},
        {"diagonal gradient in corners", gradient + R"("start":"topLeading","end":"bottomTrailing",)" + corners + "}"},
        {"border",
         R"({"type":"color","value":"#00000000","modifiers":[{"type":"border","color":"","colorNode":{"value":"#2F6FDE"},"width":2}]})"},
        {"emoji", R"({"type":"text","content":"🌤️☀️⛅🌦️🌧️","fontSize":24})"},
    };
    return list;
}

void BM_PaintPrimitive(benchmark::State& state) {
    const Primitive& primitive = primitives()[static_cast<std::size_t>(state.range(0))];
    state.SetLabel(primitive.name);
    paintRepeatedly(state, Picture(viewOf(primitive.main)));
}
BENCHMARK(BM_PaintPrimitive)->DenseRange(0, 12)->Unit(benchmark::kMicrosecond);

/// A diagonal gradient in a rounded rectangle against one colour in it, by turns; `ratio` is at most 5.
void BM_GradientAgainstColor(benchmark::State& state) {
    const Rect bounds{{0, 0}, page};
    const Shape shape = RoundedRectangle{21.6};
    const paint::Paint color = RGBA{0.18, 0.43, 0.87, 1};
    const paint::Paint gradient = paint::Gradient{
        {{0.18, 0.43, 0.87, 1}, {0.35, 0.65, 0.95, 1}, {0.55, 0.78, 0.96, 1}}, {0, 0}, {page.width, page.height}};
    paint::Canvas canvas = paint::Canvas::raster(page, scale);
    using Clock = std::chrono::steady_clock;
    std::chrono::duration<double> colorTime{};
    std::chrono::duration<double> gradientTime{};
    for (auto _ : state) {
        const auto start = Clock::now();
        canvas.fill(shape, bounds, color);
        const auto middle = Clock::now();
        canvas.fill(shape, bounds, gradient);
        const auto end = Clock::now();
        colorTime += middle - start;
        gradientTime += end - middle;
    }
    state.counters["ratio"] = gradientTime / colorTime;
}
BENCHMARK(BM_GradientAgainstColor)->Unit(benchmark::kMicrosecond);

std::string repeated(const std::string& child, std::int64_t count) {
    std::string list = child;
    for (std::int64_t i = 1; i < count; ++i) list += "," + child;
    return list;
}

benchmark::Counter perItem(std::int64_t count) {
    return {static_cast<double>(count), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert};
}

/// Shapes on top of each other; `per_shape` stays what it is.
void BM_PaintOverlapping(benchmark::State& state) {
    const std::string child = R"({"type":"roundedRectangle","cornerRadius":6,"fillColor":{"value":"#50FF0000"},)"
                              R"("modifiers":[{"type":"frame","width":40,"height":30}]})";
    paintRepeatedly(state,
                    Picture(viewOf(R"({"type":"zstack","children":[)" + repeated(child, state.range(0)) + "]}")));
    state.counters["per_shape"] = perItem(state.range(0));
}
BENCHMARK(BM_PaintOverlapping)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

/// Shapes in rows of 100, one row below another.
void BM_PaintStacked(benchmark::State& state) {
    const std::string child = R"({"type":"circle","fillColor":{"value":"#2F6FDE"}})";
    const std::string row = R"({"type":"hstack","spacing":0,"children":[)" + repeated(child, 100) + "]}";
    paintRepeatedly(state, Picture(viewOf(R"({"type":"vstack","spacing":0,"children":[)" +
                                          repeated(row, state.range(0) / 100) + "]}")));
    state.counters["per_shape"] = perItem(state.range(0));
}
BENCHMARK(BM_PaintStacked)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

/// Clips within clips, each with an outline of its own.
void BM_PaintNestedClips(benchmark::State& state) {
    const std::string clip = R"({"type":"cornerRadius","radius":9})";
    paintRepeatedly(state, Picture(viewOf(R"({"type":"color","value":"#2F6FDE","modifiers":[)" +
                                          repeated(clip, state.range(0)) + "]}")));
    state.counters["per_clip"] = perItem(state.range(0));
}
BENCHMARK(BM_PaintNestedClips)->Arg(100)->Arg(1'000)->Unit(benchmark::kMillisecond);

/// Fading: no layer for one primitive, for opacities in opacities, and for opacity 1; one where views overlap.
void BM_PaintFaded(benchmark::State& state) {
    const std::string one = R"({"type":"roundedRectangle","cornerRadius":21.6,)" + std::string(solid);
    const std::string two = R"({"type":"zstack","children":[)" + one + "}," + one + "}]";
    const auto faded = [](const std::string& node, const std::string& opacities) {
        return node + ",\"modifiers\":[" + opacities + "]}";
    };
    const auto opacity = [](const char* value) { return R"({"type":"opacity","opacity":)" + std::string(value) + "}"; };
    const Primitive rows[] = {
        {"one, not faded", one + "}"},
        {"one", faded(one, opacity("0.5"))},
        {"one, a hundred times", faded(one, repeated(opacity("0.99"), 100))},
        {"two, not faded", two + "}"},
        {"two, opacity 1", faded(two, opacity("1"))},
        {"two, in a layer", faded(two, opacity("0.5"))},
        {"two, a hundred times", faded(two, repeated(opacity("0.99"), 100))},
    };
    const Primitive& row = rows[state.range(0)];
    state.SetLabel(row.name);
    paintRepeatedly(state, Picture(viewOf(row.main)));
}
BENCHMARK(BM_PaintFaded)->DenseRange(0, 6)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavrin::bench
