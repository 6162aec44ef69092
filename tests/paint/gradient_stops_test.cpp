// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/gradient_stops.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tavrin/platform/paint/oklab.h"
#include "tests/paint/colors.h"

namespace tavrin::paint {
namespace {

/// How far what a viewer interpolates is from the gradient at a place, in levels of 255.
double apart(const std::vector<GradientStop>& stops, const std::vector<RGBA>& colors, double place) {
    const auto after =
        std::find_if(stops.begin() + 1, stops.end() - 1, [&](const GradientStop& stop) { return stop.place > place; });
    const auto& [start, from] = after[-1];
    const auto& [end, to] = after[0];
    const double share = (place - start) / (end - start);
    const double along = place * static_cast<double>(colors.size() - 1);
    const std::size_t i = std::min(static_cast<std::size_t>(along), colors.size() - 2);
    const RGBA expected = mixed(oklabOf(colors[i]), oklabOf(colors[i + 1]), along - static_cast<double>(i));
    const double opacity = std::lerp(from.opacity, to.opacity, share);
    double worst = std::abs(opacity - expected.opacity);
    for (const auto channel : {&RGBA::red, &RGBA::green, &RGBA::blue})
        worst = std::max(worst, std::abs(std::lerp(from.*channel, to.*channel, share) * opacity -
                                         expected.*channel * expected.opacity));
    return worst * 255;
}

TEST(GradientStops, AreAsManyAsAreNeeded) {
    const struct {
        const char* why;
        std::vector<RGBA> colors;
        std::size_t atMost;
    } rows[] = {
        {"a colour and itself", {red, red}, 2},
        {"two that are near each other", {{0.5, 0.5, 0.5, 1}, {0.6, 0.6, 0.6, 1}}, 2},
        {"fading to nothing", {red, clear}, 2},
        {"and back in another colour", {red, clear, blue}, 4},
        {"black to white", {{0, 0, 0, 1}, {1, 1, 1, 1}}, 12},
        {"far around", {red, green}, 40},
        {"out of what screens show", {red, green, blue}, 80},
        {"two opacities", {red, {0, 0, 1, 0.1}}, 30},
        {"black that glows a little", {{0, 0, 0, 1}, {0, 0, 0.1, 1}}, 10},
        {"from green to a sea", {green, {0, 0.2, 0.9, 1}}, 40},
        {"from nothing", {clear, green, {1, 1, 0, 0.5}}, 40},
    };
    for (const auto& row : rows)
        for (const double tolerance : {0.25, 1.0}) {
            SCOPED_TRACE(row.why + (" within " + std::to_string(tolerance)));
            const std::vector<GradientStop> stops = gradientStops(row.colors, tolerance / 255);
            // They are four times as near with twice as many.
            EXPECT_LE(stops.size(), tolerance < 1 ? 2 * row.atMost : row.atMost);
            EXPECT_EQ(stops.front().place, 0);
            EXPECT_EQ(stops.back().place, 1);
            EXPECT_TRUE(std::is_sorted(stops.begin(), stops.end(),
                                       [](const auto& a, const auto& b) { return a.place < b.place; }));
            for (int i = 0; i <= 2000; ++i) ASSERT_LE(apart(stops, row.colors, i / 2000.0), 2 * tolerance) << i;
        }
}

TEST(GradientStops, AreBoundedForManyColours) {
    for (const std::size_t count : {100U, 700U, 1025U, 5000U, 100'000U}) {
        std::vector<RGBA> colors;
        for (std::size_t i = 0; i < count; ++i) colors.push_back(i % 2 == 0 ? red : green);
        colors.back() = blue;
        const std::vector<GradientStop> stops = gradientStops(colors, 0.5 / 255);
        EXPECT_GE(stops.size(), std::min<std::size_t>(count, 1025));
        EXPECT_LE(stops.size(), 1025U);
        EXPECT_EQ(stops.front().color, red);
        EXPECT_EQ(stops.back().color, blue);
    }
}

}  // namespace
}  // namespace tavrin::paint
