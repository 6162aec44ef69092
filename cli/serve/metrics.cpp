// SPDX-License-Identifier: MIT
#include "cli/serve/metrics.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/time/date.h"

namespace tavrin::cli {
namespace {

/// Writes families of series, one after the other. No label has a character that would have to be escaped.
class PrometheusWriter {
public:
    void begin(std::string_view name, std::string_view type, std::string_view help) {
        name_ = name;
        text_.append("# HELP ").append(name).append(" ").append(help).append("\n");
        text_.append("# TYPE ").append(name).append(" ").append(type).append("\n");
    }

    /// A series of the family; `labels` are without their braces.
    template <class Number>
    void series(std::string_view labels, Number value, std::string_view suffix = {}) {
        text_.append(name_).append(suffix);
        if (!labels.empty()) text_.append("{").append(labels).append("}");
        text_.append(" ").append(toText(value)).append("\n");
    }

    void histogram(const std::string& labels, const Histogram& histogram) {
        const auto counts = histogram.buckets();
        std::uint64_t below = 0;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            below += counts[i];
            const std::string bound = i < Histogram::bounds.size() ? toText(Histogram::bounds[i]) : "+Inf";
            std::string bucket = labels;
            series(bucket.append(",le=\"").append(bound).append("\""), below, "_bucket");
        }
        series(labels, histogram.seconds(), "_sum");
        series(labels, below, "_count");
    }

    template <class Number>
    void single(std::string_view name, std::string_view type, std::string_view help, Number value) {
        begin(name, type, help);
        series({}, value);
    }

    [[nodiscard]] std::string text() && { return std::move(text_); }

private:
    std::string text_;
    std::string_view name_;
};

std::string label(std::string_view key, std::string_view value) {
    return std::string(key) + "=\"" + std::string(value) + "\"";
}

std::uint64_t load(const std::atomic<std::uint64_t>& counter) { return counter.load(std::memory_order_relaxed); }

bool hasCounted(const Histogram& histogram) {
    return std::ranges::any_of(histogram.buckets(), [](std::uint64_t count) { return count > 0; });
}

/// 0 where the kernel does not tell.
std::uint64_t residentBytes() {
    std::ifstream file("/proc/self/statm");
    std::uint64_t all = 0;
    std::uint64_t resident = 0;
    if (!(file >> all >> resident)) return 0;
    return resident * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

}  // namespace

Metrics::Metrics() : started_(Date::now().secondsSince1970) {}

void Metrics::answered(Route route, unsigned status, std::uint64_t bytes, double seconds) {
    const std::size_t index = indexOf(route);
    const auto* const known = std::ranges::find(statuses, status);
    add(answers_[index][static_cast<std::size_t>(known - statuses.begin())]);
    add(sentBytes_, bytes);
    durations_[index].count(seconds);
}

std::string Metrics::prometheusText(const ServerState& state) const {
    PrometheusWriter writer;
    writer.begin("tavrin_build_info", "gauge", "The program's version; the value is always 1.");
    writer.series(label("version", TAVRIN_VERSION), 1);

    writer.begin("tavrin_http_requests_total", "counter", "Requests that were answered.");
    for (const Route route : enumerators<Route>)
        for (std::size_t i = 0; i <= statuses.size(); ++i)
            if (const std::uint64_t count = load(answers_[indexOf(route)][i]))
                writer.series(label("route", name(route)) + "," +
                                  label("status", i < statuses.size() ? toText(statuses[i]) : "other"),
                              count);
    writer.begin("tavrin_http_request_duration_seconds", "histogram", "From a request's head to its answer.");
    for (const Route route : enumerators<Route>)
        if (const Histogram& histogram = durations_[indexOf(route)]; hasCounted(histogram))
            writer.histogram(label("route", name(route)), histogram);
    writer.single("tavrin_http_sent_bytes_total", "counter", "Bytes of the bodies of answers.", load(sentBytes_));
    writer.single("tavrin_http_connections", "gauge", "Open connections.", state.connections);

    writer.single("tavrin_pictures_drawn_total", "counter", "Pictures that were drawn.", load(drawn_));
    writer.begin("tavrin_stage_duration_seconds", "histogram", "What drawing consists of.");
    for (const Stage stage : enumerators<Stage>)
        if (const Histogram& histogram = stages_[indexOf(stage)]; hasCounted(histogram))
            writer.histogram(label("stage", name(stage)), histogram);
    writer.single("tavrin_drawings_running", "gauge", "Requests that are being drawn.", state.drawing);
    writer.single("tavrin_queue_length", "gauge", "Requests that wait to be drawn.", state.queued);
    writer.single("tavrin_queue_capacity", "gauge", "Requests that may wait to be drawn.", state.capacity);
    writer.single("tavrin_budget_errors_total", "counter", "Documents that passed their budget.", load(budgetErrors_));

    writer.begin("tavrin_cache_lookups_total", "counter", "Pictures looked for among the finished ones.");
    writer.series(label("result", "hit"), load(hits_));
    writer.series(label("result", "miss"), load(misses_));
    writer.single("tavrin_cache_bytes", "gauge", "Bytes of the finished pictures that are kept.", state.cacheBytes);

    writer.begin("tavrin_signatures_rejected_total", "counter", "Requests whose signature is not right.");
    for (const SignatureVerdict verdict : enumerators<SignatureVerdict>)
        if (verdict != SignatureVerdict::right)
            writer.series(label("reason", name(verdict)), load(rejected_[indexOf(verdict)]));

    writer.single("process_start_time_seconds", "gauge", "When the program began, in seconds since 1970.", started_);
    writer.single("process_resident_memory_bytes", "gauge", "Memory that the program has.", residentBytes());
    return std::move(writer).text();
}

}  // namespace tavrin::cli
