// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/pixel_source.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include <cairo.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/memory/lru_cache.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/paint/color_source.h"
#include "tavrin/platform/paint/gradient_stops.h"

namespace tavrin::paint {
namespace {

/// Enough steps between two colours that none of their 256 levels is skipped or misplaced by a visible part.
constexpr std::size_t stepsPerSegment = 1024;
constexpr std::size_t maxSteps = 32 * stepsPerSegment;

/// Along a row, places in the ramp are counted in whole numbers of 2^-24; on a row that starts further away than
/// `farPlace`, and in steps up to `steepest`, no pixel reaches the ramp.
constexpr int fixedBits = 24;
constexpr double fixedOne = 1 << fixedBits;
constexpr double farPlace = 1e10;
constexpr double steepest = 4e4;
/// A slanted gradient's rows are one long row, shifted. It is computed for so many parts of a pixel, which is exact
/// enough up to so many steps of the ramp in a pixel.
constexpr std::size_t phases = 4;
constexpr double steepestSlide = 4;
/// Beyond, sums are no longer sure to be numbers.
constexpr double farthest = 1e100;

using Ramp = std::vector<std::uint32_t>;

struct ColorsHash {
    std::size_t operator()(const std::vector<RGBA>& colors) const {
        std::size_t hash = 0;
        for (const RGBA& color : colors)
            for (const double channel : {color.red, color.green, color.blue, color.opacity})
                hash = (hash ^ std::hash<double>{}(channel)) * 0x9E3779B97F4A7C15U;
        return hash;
    }
};

Ramp makeRamp(const std::vector<RGBA>& colors, std::size_t steps) {
    Ramp ramp(steps);
    const auto size = static_cast<double>(ramp.size());
    const std::vector<GradientStop> stops = gradientStops(colors, rasterTolerance);
    std::size_t i = 0;
    for (std::size_t next = 1; next < stops.size(); ++next) {
        const auto& [place, color] = stops[next - 1];
        const RGBA& to = stops[next].color;
        const double length = stops[next].place - place;
        // Steps whose middles lie before the next stop.
        const std::size_t end = std::min(static_cast<std::size_t>(stops[next].place * size + 0.5), ramp.size());
        for (; i < end; ++i) {
            const double share = ((static_cast<double>(i) + 0.5) / size - place) / length;
            const auto channel = [&](double a, double b) { return a + share * (b - a); };
            ramp[i] = pixelOf({channel(color.red, to.red), channel(color.green, to.green), channel(color.blue, to.blue),
                               channel(color.opacity, to.opacity)});
        }
    }
    // What lies before and after has the end colours themselves.
    ramp.front() = pixelOf(colors.front());
    ramp.back() = pixelOf(colors.back());
    return ramp;
}

/// The steps between two colours or more. Pictures that follow each other have the same ones, so the latest are kept;
/// they cost the same whatever was drawn before.
std::shared_ptr<const Ramp> rampOf(const std::vector<RGBA>& colors) {
    struct Kept {
        std::shared_ptr<const Ramp> ramp;
        std::uint64_t steps;
    };
    constexpr std::size_t maximumKept = std::size_t{1} << 20;  // bytes, of each thread
    thread_local LRUCache<std::vector<RGBA>, Kept, ColorsHash> ramps(maximumKept);
    Meter& meter = Meter::ofThisThread();
    const std::size_t size = std::min((colors.size() - 1) * stepsPerSegment, maxSteps);
    meter.paint(size);
    if (const Kept* const known = ramps.find(colors)) {
        meter.step(known->steps);
        return known->ramp;
    }
    const std::uint64_t before = meter.steps;
    auto ramp = std::make_shared<const Ramp>(makeRamp(colors, size));
    ramps.insert(colors, {ramp, meter.steps - before}, size * sizeof(std::uint32_t) + colors.size() * sizeof(RGBA));
    return ramp;
}

}  // namespace

std::optional<PixelSource> PixelSource::make(const Paint& paint, const cairo_matrix_t& matrix) {
    PixelSource source;
    if (const auto* color = std::get_if<RGBA>(&paint)) {
        const std::optional<RGBA> usable = clamped(*color);
        if (!usable || usable->opacity == 0) return std::nullopt;
        source.color_ = pixelOf(*usable);
    } else {
        const auto& gradient = std::get<Gradient>(paint);
        const std::vector<RGBA> colors = clampedColors(gradient);
        if (colors.empty()) return std::nullopt;
        if (colors.size() == 1) {
            source.color_ = pixelOf(colors.front());
        } else {
            source.ramp_ = rampOf(colors);
            cairo_matrix_t toPoints = matrix;
            if (cairo_matrix_invert(&toPoints) != CAIRO_STATUS_SUCCESS) return std::nullopt;
            const double dx = gradient.end.x - gradient.start.x;
            const double dy = gradient.end.y - gradient.start.y;
            const double unit = static_cast<double>(source.ramp_->size()) / (dx * dx + dy * dy);
            const auto along = [&](double x, double y) { return (x * dx + y * dy) * unit; };
            double x = 0.5;
            double y = 0.5;
            cairo_matrix_transform_point(&toPoints, &x, &y);
            source.origin_ = along(x - gradient.start.x, y - gradient.start.y);
            source.perColumn_ = along(toPoints.xx, toPoints.yx);
            source.perRow_ = along(toPoints.xy, toPoints.yy);
            for (const double value : {source.origin_, source.perColumn_, source.perRow_})
                if (!(std::abs(value) < farthest)) return std::nullopt;
        }
    }
    source.opaque_ = allOpaque(source.ramp().data(), source.ramp().size());
    return source;
}

std::optional<std::uint32_t> PixelSource::solid() const {
    if (ramp_) return std::nullopt;
    return color_;
}

void PixelSource::writeRun(double start, std::size_t count, std::uint32_t* out) const {
    const std::uint32_t* const colors = ramp().data();
    const auto last = static_cast<std::int64_t>(ramp().size()) - 1;
    const auto at = [&](double place) {
        return colors[static_cast<std::int64_t>(std::clamp(place, 0.0, static_cast<double>(last)))];
    };
    if (perColumn_ == 0) {
        std::fill_n(out, count, at(start));
    } else if (std::abs(perColumn_) > steepest) {
        for (std::size_t i = 0; i < count; ++i) out[i] = at(start + perColumn_ * static_cast<double>(i));
    } else {
        auto place = static_cast<std::int64_t>(std::clamp(start, -farPlace, farPlace) * fixedOne);
        const auto step = static_cast<std::int64_t>(perColumn_ * fixedOne);
        for (std::size_t i = 0; i < count; ++i, place += step)
            out[i] = colors[std::clamp<std::int64_t>(place >> fixedBits, 0, last)];
    }
}

SourceRows::SourceRows(const PixelSource& source, const PixelRect& area)
    : source_(source), area_(area), width_(static_cast<std::size_t>(area.width())) {
    if (source.perRow_ == 0) {
        method_ = Method::sameRow;
        pixels_.resize(width_);
        source.writeRun(source.origin_ + source.perColumn_ * area.x0, width_, pixels_.data());
    } else {
        prepareSlide();
        if (method_ == Method::compute) pixels_.resize(width_);
    }
}

void SourceRows::prepareSlide() {
    if (source_.perColumn_ == 0 || std::abs(source_.perColumn_) > steepestSlide) return;
    shift_ = source_.perRow_ / source_.perColumn_;
    const double range = std::abs(shift_) * (area_.height() - 1);
    const double pixels = static_cast<double>(width_) * area_.height();
    if (!(phases * (range + static_cast<double>(width_)) < pixels / 4)) return;

    method_ = Method::slide;
    leastShift_ = std::min(shift_ * area_.y0, shift_ * (area_.y1 - 1));
    length_ = static_cast<std::size_t>(range) + 2 + width_;
    pixels_.resize(phases * length_);
    for (std::size_t phase = 0; phase < phases; ++phase) {
        const double column = area_.x0 + leastShift_ + static_cast<double>(phase) / phases;
        source_.writeRun(source_.origin_ + source_.perColumn_ * column, length_, pixels_.data() + phase * length_);
    }
}

const std::uint32_t* SourceRows::row(int y) {
    if (method_ == Method::compute)
        source_.writeRun(source_.origin_ + source_.perColumn_ * area_.x0 + source_.perRow_ * y, width_, pixels_.data());
    if (method_ != Method::slide) return pixels_.data();
    const auto place = static_cast<std::size_t>((shift_ * y - leastShift_) * phases + 0.5);
    return pixels_.data() + place % phases * length_ + place / phases;
}

}  // namespace tavrin::paint
