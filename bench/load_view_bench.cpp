// SPDX-License-Identifier: MIT
#include <string>

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include "bench/bench_data.h"
#include "tavrin/tavrin.h"

// Decoding, binding and building: `loadView`, beside the bare parsing of the same bytes.

namespace tavrin::bench {
namespace {

void BM_ParseAgendaWithSimdjson(benchmark::State& state) {
    const Example agenda("agenda");
    const simdjson::padded_string document(agenda.document);
    const simdjson::padded_string model(agenda.model);
    simdjson::dom::parser parser;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parser.parse(document).error());
        benchmark::DoNotOptimize(parser.parse(model).error());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size() + model.size()));
}
BENCHMARK(BM_ParseAgendaWithSimdjson);

void BM_LoadAgenda(benchmark::State& state) {
    const Example agenda("agenda");
    const TavrinEngine engine;
    Context context;
    for (auto _ : state) benchmark::DoNotOptimize(engine.loadView(agenda.document, agenda.model, context));
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(agenda.document.size() + agenda.model.size()));
}
BENCHMARK(BM_LoadAgenda);

void loadDocument(benchmark::State& state, const std::string& document, std::int64_t nodes) {
    const TavrinEngine engine;
    Context context;
    for (auto _ : state) benchmark::DoNotOptimize(engine.loadView(document, std::nullopt, context));
    state.counters["per_node"] = benchmark::Counter(
        static_cast<double>(nodes), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_LoadFlat(benchmark::State& state) {
    loadDocument(state, flatDocument(static_cast<int>(state.range(0))), state.range(0));
}
BENCHMARK(BM_LoadFlat)->Arg(200)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void BM_LoadNested(benchmark::State& state) {
    loadDocument(state, nestedDocument(static_cast<int>(state.range(0))), 2 * state.range(0));
}
BENCHMARK(BM_LoadNested)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavrin::bench
