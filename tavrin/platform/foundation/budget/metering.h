// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/budget/render_budget.h"

namespace tavrin {

/// What a call has cost.
struct Cost {
    std::uint64_t steps = 0;
    std::uint64_t pixels = 0;
    std::int64_t bytes = 0;  ///< still held
    double seconds = 0;
};

/// While one lives, what its thread does draws on a budget. Several may live within each other; only the innermost
/// counts.
class Metering {
public:
    using Clock = std::chrono::steady_clock;

    /// Goes on from what `cost` says has been spent of the budget; it says, when this ends, what has been spent then.
    Metering(const RenderBudget& budget, Cost& cost);
    Metering(const Metering&) = delete;
    Metering& operator=(const Metering&) = delete;
    ~Metering();

    /// The calling thread's innermost; null where nothing is metered.
    [[nodiscard]] static Metering* ofThisThread();

    /// Looks at the budget, the clock and the token. Throws `TavrinError` of kind "Budget". What waits for something
    /// does so often; whoever steps, paints or holds does not need to.
    void check();
    /// When there is no time left.
    [[nodiscard]] const std::optional<Clock::time_point>& end() const { return end_; }
    [[nodiscard]] const std::optional<CancelToken>& token() const { return budget_.cancel; }
    /// What was given to draw on, and what has been spent of it: a thread that works for this one goes on from there.
    [[nodiscard]] const RenderBudget& budget() const { return budget_; }
    [[nodiscard]] Cost spent() const;
    /// What is left of the budget now, for another thread that works for this one; see `charge`.
    [[nodiscard]] RenderBudget rest() const;
    /// Counts what another thread's work has cost, but for its time.
    static void charge(const Cost& cost);

private:
    friend struct Meter;
    void lookAgainLater() const;

    RenderBudget budget_;
    Cost& cost_;
    Clock::time_point begin_ = Clock::now();
    std::optional<Clock::time_point> end_;
    Meter outer_;
    Metering* outerMetering_;
};

/// Looks at the budget of the calling thread, if it has one; see `Metering::check`.
inline void checkBudget() {
    if (Metering* const metering = Metering::ofThisThread()) metering->check();
}

}  // namespace tavrin
