// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/serve/histogram.h"
#include "cli/serve/route_table.h"
#include "cli/serve/signature.h"
#include "tavrin/platform/foundation/enumerators.h"

namespace tavrin::cli {

/// What drawing consists of.
enum class Stage : unsigned char {
    wait,    ///< in the queue
    decode,  ///< the document, where it is not kept
    bind,    ///< it to its model
    draw,    ///< laying out, painting and packing
};

/// What the server is doing when it is asked.
struct ServerState {
    std::uint64_t queued = 0;    ///< requests that wait to be drawn
    std::uint64_t capacity = 0;  ///< how many may
    std::uint64_t drawing = 0;   ///< requests that are being drawn
    std::uint64_t connections = 0;
    std::uint64_t cacheBytes = 0;  ///< of finished pictures
};

/// What the server has counted since it began. Any number of threads may count at once, without waiting for each other;
/// what is written meanwhile may lack the latest.
class Metrics {
public:
    Metrics();

    /// A request that has been answered, with the bytes of its answer's body and how long it took since its head came.
    void answered(Route route, unsigned status, std::uint64_t bytes, double seconds);
    void took(Stage stage, double seconds) { stages_[indexOf(stage)].count(seconds); }
    /// A picture that was drawn for this request, and did not come from the cache.
    void drew() { add(drawn_); }
    /// A picture that was looked for among the finished ones.
    void lookedUp(bool isFound) { add(isFound ? hits_ : misses_); }
    /// A document that passed its budget.
    void spentBudget() { add(budgetErrors_); }
    /// A request whose signature is not right.
    void rejected(SignatureVerdict verdict) { add(rejected_[indexOf(verdict)]); }

    /// All of it in Prometheus's text form (version 0.0.4). Series with labels are left out until they count something.
    [[nodiscard]] std::string prometheusText(const ServerState& state) const;
    static constexpr std::string_view contentType = "text/plain; version=0.0.4; charset=utf-8";

private:
    using Counter = std::atomic<std::uint64_t>;
    static constexpr std::array statuses{200U, 204U, 304U, 400U, 403U, 404U, 405U, 413U, 414U, 415U,
                                         422U, 429U, 431U, 499U, 500U, 501U, 503U, 504U, 505U};
    static constexpr std::size_t routes = enumeratorCount<Route>;

    static void add(Counter& counter, std::uint64_t more = 1) { counter.fetch_add(more, std::memory_order_relaxed); }

    double started_;
    std::array<std::array<Counter, statuses.size() + 1>, routes> answers_{};  // the last is of any other status
    std::array<Histogram, routes> durations_{};
    std::array<Histogram, enumeratorCount<Stage>> stages_{};
    std::array<Counter, enumeratorCount<SignatureVerdict>> rejected_{};
    Counter sentBytes_ = 0;
    Counter drawn_ = 0;
    Counter hits_ = 0;
    Counter misses_ = 0;
    Counter budgetErrors_ = 0;
};

}  // namespace tavrin::cli
