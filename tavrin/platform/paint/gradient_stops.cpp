// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/gradient_stops.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/paint/oklab.h"

namespace tavrin::paint {
namespace {

/// Of lines between stops: finer than a widget's pixels, and few enough for Cairo, whose time goes with their square.
constexpr std::size_t maximumPieces = 1024;

/// A share of a line at which a channel that rises steeply out of black is as far from it as anywhere.
constexpr double nearEnd = 1.0 / 12;

bool areApart(const RGBA& first, const RGBA& second, double tolerance) {
    const auto apart = [&](double a, double b) { return std::abs(a * first.opacity - b * second.opacity) > tolerance; };
    return apart(first.red, second.red) || apart(first.green, second.green) || apart(first.blue, second.blue);
}

RGBA straightMix(const RGBA& from, const RGBA& to, double share) {
    return {std::lerp(from.red, to.red, share), std::lerp(from.green, to.green, share),
            std::lerp(from.blue, to.blue, share), std::lerp(from.opacity, to.opacity, share)};
}

/// What lies between two neighbouring colours.
class Segment {
public:
    Segment(const RGBA& from, const RGBA& to, double place, double length, double tolerance)
        : from_(from),
          to_(to),
          first_(oklabOf(from)),
          last_(oklabOf(to)),
          place_(place),
          length_(length),
          tolerance_(tolerance) {}

    /// Appends the stops that are not yet there, with no more than so many lines between them.
    void appendStops(std::vector<GradientStop>& stops, std::size_t pieces) const {
        const GradientStop first{0, from_.opacity > 0 ? from_ : at(0)};
        const GradientStop last{1, to_.opacity > 0 ? to_ : at(1)};
        if (stops.empty() || stops.back().color != first.color) append(stops, first);
        divide(stops, first, {0.5, at(0.5)}, last, pieces);
    }

private:
    [[nodiscard]] RGBA at(double share) const { return mixed(first_, last_, share); }

    void append(std::vector<GradientStop>& stops, const GradientStop& stop) const {
        stops.push_back({place_ + stop.place * length_, stop.color});
    }

    /// Appends the stops after `from` up to `to`, whose places are shares of the segment:
    /// 1. Where the colours a quarter, half and three quarters of the way, and close to the ends, where channels that
    ///    come out of black rise steeply, are as near to the line from end to end as they must be, the line will do.
    /// 2. Else either half is treated alike; the quarters are their middles.
    void divide(std::vector<GradientStop>& stops, const GradientStop& from, const GradientStop& middle,
                const GradientStop& to, std::size_t pieces) const {
        if (pieces < 2) return append(stops, to);
        const auto stopAt = [&](double share) {
            const double place = std::lerp(from.place, to.place, share);
            return GradientStop{place, at(place)};
        };
        const auto isNear = [&](const GradientStop& stop, double share) {
            return !areApart(stop.color, straightMix(from.color, to.color, share), tolerance_);
        };
        const GradientStop quarter = stopAt(0.25);
        const GradientStop threeQuarters = stopAt(0.75);
        if (isNear(quarter, 0.25) && isNear(middle, 0.5) && isNear(threeQuarters, 0.75) &&
            isNear(stopAt(nearEnd), nearEnd) && isNear(stopAt(1 - nearEnd), 1 - nearEnd))
            return append(stops, to);
        divide(stops, from, quarter, middle, pieces / 2);
        divide(stops, middle, threeQuarters, to, pieces / 2);
    }

    RGBA from_;
    RGBA to_;
    Oklab first_;
    Oklab last_;
    double place_;
    double length_;
    double tolerance_;
};

}  // namespace

std::vector<GradientStop> gradientStops(const std::vector<RGBA>& colors, double tolerance) {
    const std::size_t segments = std::min(colors.size() - 1, maximumPieces);
    const auto color = [&](std::size_t i) -> const RGBA& { return colors[i * (colors.size() - 1) / segments]; };
    const double length = 1 / static_cast<double>(segments);
    std::vector<GradientStop> stops;
    constexpr std::uint64_t stepsOfStop = 10;
    for (std::size_t i = 0; i < segments; ++i) {
        const std::size_t before = stops.size();
        Segment(color(i), color(i + 1), static_cast<double>(i) * length, length, tolerance)
            .appendStops(stops, maximumPieces / segments);
        Meter::ofThisThread().step(stepsOfStop * (stops.size() - before));
    }
    stops.back().place = 1;
    return stops;
}

}  // namespace tavrin::paint
