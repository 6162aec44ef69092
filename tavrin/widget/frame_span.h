// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "tavrin/platform/foundation/time/date.h"

namespace tavrin {

/// Moments that follow each other at even distances.
struct FrameSpan {
    /// A span has at most so many moments: ten hours of seconds.
    static constexpr std::size_t maximumFrames = 36'000;

    Date first;
    /// One of the moments where the steps meet it.
    Date last;
    /// Seconds from one moment to the next.
    double step = 1;

    /// How many moments there are; at least one. Throws `TavrinError` of kind "Render" when `last` is before `first`,
    /// when the step is not a positive number, and for more than `maximumFrames`.
    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] Date moment(std::size_t index) const;
};

}  // namespace tavrin
