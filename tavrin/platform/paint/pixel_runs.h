// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "tavrin/platform/paint/row_differences.h"

namespace tavrin::paint {

/// A pixel's difference to the one above, byte by byte without carries, and the run of others that follows it.
struct PixelRun {
    std::uint32_t difference = 0;
    std::uint16_t pixels = 0;
    bool repeats = false;  ///< whether the run repeats the difference; else its pixels are those above
    bool startsRow = false;
};

/// Writes the runs that a row is made of, at most one for each of its pixels, and returns their end. What is as above
/// for fewer than `shortest` pixels, which may be 1 or 2, is no run of the pixel before.
inline PixelRun* writeRuns(const RowDifferences& row, std::size_t shortest, PixelRun* out) {
    const std::uint32_t* const places = row.places();
    const std::uint32_t* const differences = row.differences();
    PixelRun* const begin = out;
    for (std::size_t i = 0; i < row.count();) {
        const std::size_t first = i++;
        std::uint32_t same = places[i] - places[first] - 1;
        *out++ = {.difference = differences[first], .pixels = static_cast<std::uint16_t>(same)};
        const bool again = (same == 0) & (differences[i] == differences[first]);
        if (!again && (same == 0 || same >= shortest)) continue;
        while (places[i] == places[i - 1] + 1 && differences[i] == differences[first]) ++i;
        out[-1].pixels = static_cast<std::uint16_t>(i - first - 1);
        out[-1].repeats = again;
        same = places[i] - places[i - 1] - 1;
        if (same > 0) *out++ = {.pixels = static_cast<std::uint16_t>(same - 1)};
    }
    begin->startsRow = true;
    return out;
}

}  // namespace tavrin::paint
