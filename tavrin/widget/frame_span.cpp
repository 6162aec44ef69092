// SPDX-License-Identifier: MIT
#include "tavrin/widget/frame_span.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {

std::size_t FrameSpan::count() const {
    constexpr double precision = 1e-6;  // of a date, in seconds
    const double seconds = last.secondsSince1970 - first.secondsSince1970;
    if (!(seconds >= 0) || !std::isfinite(seconds))
        throw TavrinError("Render", "a span of frames must not end before it begins");
    if (!(step > 0) || !std::isfinite(step))
        throw TavrinError("Render", "the step from frame to frame must be a positive number of seconds");
    const double frames = std::floor((seconds + precision) / step) + 1;
    if (frames > maximumFrames)
        throw TavrinError("Render", fmt::format("{} frames: there may be at most {}", frames, maximumFrames));
    return static_cast<std::size_t>(frames);
}

Date FrameSpan::moment(std::size_t index) const {
    const double seconds = first.secondsSince1970 + static_cast<double>(index) * step;
    return {std::min(seconds, last.secondsSince1970)};
}

}  // namespace tavrin
