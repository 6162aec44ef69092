// SPDX-License-Identifier: MIT
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/bench_data.h"
#include "bench/measures.h"
#include "tavrin/tavrin.h"

// What the next picture costs beside one from scratch, both from a model's text to the bytes of a PNG, by turns in one
// run: `ratio` is that of the processor's times.

namespace tavrin::bench {
namespace {

WidgetOptions widgetOptions(const Example& example) {
    WidgetOptions options;
    options.date = Date{1'795'249'105};
    options.timeZone = TimeZone();
    options.imageCacheDir = URL::fileURL(example.pictures);
    return options;
}

/// An example's document with models that differ in one text, each from the one before.
struct Personal {
    Personal(const char* name, std::string_view text) : example(name), document(example.document) {
        const std::size_t at = example.model.find(text);
        if (at == std::string::npos) throw std::runtime_error("no such text in the model of " + example.document);
        for (int person = 0; person < 100; ++person) {
            std::string model = example.model;
            models.push_back(model.replace(at, text.size(), "Person " + std::to_string(person)));
        }
    }

    Example example;
    Document document;
    std::vector<std::string> models;
};

const Personal& personal(std::size_t which) {
    static const std::array<Personal, 2> all{Personal("agenda", "Market with Ana"), Personal("weather", "Palma")};
    return all[which];
}

/// Times `next` beside `scratch`, each called with the number of the picture: by turns, several of a kind together, as
/// they follow each other where many are drawn.
template <class Scratch, class Next>
void compare(benchmark::State& state, const Scratch& scratch, const Next& next) {
    constexpr std::size_t together = 20;
    double scratchSeconds = 0;
    double nextSeconds = 0;
    std::size_t picture = 0;
    static_cast<void>(next(picture));
    for (auto _ : state) {
        const double begin = threadSeconds();
        for (std::size_t i = 1; i <= together; ++i) benchmark::DoNotOptimize(scratch(picture + i));
        const double middle = threadSeconds();
        for (std::size_t i = 1; i <= together; ++i) benchmark::DoNotOptimize(next(picture + i));
        const double end = threadSeconds();
        picture += together;
        scratchSeconds += middle - begin;
        nextSeconds += end - middle;
        state.SetIterationTime(end - middle);  // of several
    }
    state.counters["ratio"] = nextSeconds / scratchSeconds;
    state.counters["pictures_per_second"] = static_cast<double>(picture) / nextSeconds;
}

void BM_NextPersonal(benchmark::State& state) {
    const Personal& people = personal(static_cast<std::size_t>(state.range(0)));
    const WidgetOptions options = widgetOptions(people.example);
    LastPicture last;
    const auto widget = [&](std::size_t picture) {
        return people.document.widget(people.models[picture % people.models.size()], options);
    };
    compare(
        state, [&](std::size_t picture) { return widget(picture).encode(); },
        [&](std::size_t picture) { return widget(picture).encode(PictureFormat::png, last); });
}
BENCHMARK(BM_NextPersonal)->DenseRange(0, 1)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_NextEqual(benchmark::State& state) {
    const Personal& people = personal(0);
    const WidgetOptions options = widgetOptions(people.example);
    LastPicture last;
    const auto widget = [&] { return people.document.widget(people.models.front(), options); };
    compare(
        state, [&](std::size_t) { return widget().encode(); },
        [&](std::size_t) { return widget().encode(PictureFormat::png, last); });
}
BENCHMARK(BM_NextEqual)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// Two widgets of one size that have nothing in common.
void BM_NextOfAnother(benchmark::State& state) {
    LastPicture last;
    const auto widget = [](std::size_t picture) {
        const Personal& people = personal(picture % 2);
        return people.document.widget(people.models.front(), widgetOptions(people.example));
    };
    compare(
        state, [&](std::size_t picture) { return widget(picture).encode(); },
        [&](std::size_t picture) { return widget(picture).encode(PictureFormat::png, last); });
}
BENCHMARK(BM_NextOfAnother)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavrin::bench
