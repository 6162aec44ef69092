// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/budget/render_budget.h"
#include "tavrin/platform/foundation/budget/shared_bytes.h"

namespace tavrin {

/// What a call has cost.
struct Cost {
    std::uint64_t steps = 0;
    std::uint64_t pixels = 0;
    std::int64_t bytes = 0;      ///< still held
    std::int64_t peakBytes = 0;  ///< the most that was held at once, rounded up by at most 64 KiB
    double seconds = 0;
};

/// While one lives, what its thread does draws on a budget. Several may live within each other: only the innermost
/// counts, but none lasts longer than those around it may.
class Metering {
public:
    using Clock = std::chrono::steady_clock;

    /// Goes on from what `cost` says has been spent of the budget; it says, when this ends, what has been spent then.
    Metering(const RenderBudget& budget, Cost& cost) : Metering(budget, cost, nullptr) {}
    /// The same; what is held on top of `cost` is drawn on `shared`, where there is one, instead of the budget's bytes.
    /// Its peak is known exactly.
    Metering(const RenderBudget& budget, Cost& cost, std::shared_ptr<SharedBytes> shared);
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
    /// What was given to draw on, and what has been spent of it.
    [[nodiscard]] const RenderBudget& budget() const { return budget_; }
    [[nodiscard]] Cost spent() const;
    /// How many more bytes may be held; of shared ones, those that have been taken already.
    [[nodiscard]] std::size_t bytesLeft() const;
    /// What bytes are drawn on together with other threads; null where this has its own.
    [[nodiscard]] const std::shared_ptr<SharedBytes>& shared() const { return shared_; }
    /// Whether shared bytes were refused.
    [[nodiscard]] bool isShort() const { return isShort_; }
    /// Makes shared bytes that were taken for what this thread is going to hold its own, if they are of the same ones.
    void takeOver(TakenBytes& taken);
    /// Counts what another thread's work has cost, but for its time, as if it were done now on this one.
    static void charge(const Cost& cost);

private:
    friend struct Meter;
    [[nodiscard]] std::int64_t allowedBytes() const;
    /// Whether what the thread holds is allowed; takes shared bytes for it.
    bool coversBytes();
    /// When to look at the bytes again, after they have come to what they are.
    [[nodiscard]] std::int64_t nextBytes() const;
    void lookAgainLater() const;

    RenderBudget budget_;
    Cost& cost_;
    Clock::time_point begin_ = Clock::now();
    std::optional<Clock::time_point> end_;
    std::shared_ptr<SharedBytes> shared_;
    std::int64_t taken_ = 0;  ///< of the shared bytes
    bool isShort_ = false;
    Meter outer_;
    Metering* outerMetering_;
};

/// Looks at the budget of the calling thread, if it has one; see `Metering::check`.
inline void checkBudget() {
    if (Metering* const metering = Metering::ofThisThread()) metering->check();
}

}  // namespace tavrin
