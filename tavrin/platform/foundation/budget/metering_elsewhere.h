// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "tavrin/platform/foundation/budget/metering.h"

namespace tavrin {

/// Lets other threads work for the call that the thread works for which makes this; where that is not metered, they are
/// not either. Each goes on from the steps, pixels and time that had been spent then; bytes they draw on together. The
/// thread that asks for what came of the work charges its own budget with what it cost.
class MeteringElsewhere {
public:
    /// What the work is to heed: the whole budget, or only the clock and the token where its cost is known and counted
    /// beforehand.
    enum class Heeds : unsigned char { everything, timeOnly };

    explicit MeteringElsewhere(Heeds heeds = Heeds::everything) {
        const Metering* const metering = Metering::ofThisThread();
        if (!metering) return;
        budget_ = metering->budget();
        spent_ = metering->spent();
        if (metering->end()) {
            const std::chrono::duration<double> left = *metering->end() - Metering::Clock::now();
            spent_.seconds = *budget_->seconds - left.count();
        }
        if (heeds == Heeds::everything) {
            shared_ = std::make_shared<SharedBytes>(metering->bytesLeft());
        } else {
            budget_->steps = budget_->pixels = budget_->bytes = UINT64_MAX;
        }
    }

    /// Does `work` on the calling thread, any one, and says what it has cost on top of what had been spent. None where
    /// it did not get the bytes it needed because of what others hold: what came of it must not count then, it might
    /// have got them alone.
    template <class Work>
    [[nodiscard]] std::optional<Cost> of(const Work& work) const {
        if (!budget_) {
            work();
            return Cost{};
        }
        Cost cost = spent_;
        bool wasShort = false;
        {
            const Metering metering(*budget_, cost, shared_);
            work();
            wasShort = metering.isShort();
        }
        if (wasShort) return std::nullopt;
        return Cost{cost.steps - spent_.steps, cost.pixels - spent_.pixels, cost.bytes - spent_.bytes,
                    cost.peakBytes - spent_.bytes};
    }

private:
    std::optional<RenderBudget> budget_;
    Cost spent_;
    std::shared_ptr<SharedBytes> shared_;
};

}  // namespace tavrin
