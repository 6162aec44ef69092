// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/effects.h"

#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

constexpr double pi = std::numbers::pi;
constexpr Rect frame{{10, 20}, {40, 10}};

void expectNear(Point a, Point b) {
    EXPECT_NEAR(a.x, b.x, 1e-9);
    EXPECT_NEAR(a.y, b.y, 1e-9);
}

TEST(Effects, MovePointsOfTheFrame) {
    const struct {
        const char* why;
        Effect effect;
        Point corner;  ///< where the top leading corner, (10, 20), comes
        Point other;   ///< and the bottom trailing one, (50, 30)
    } rows[] = {
        {"moved", effectOf(Offset{.x = 3, .y = -4}, frame, {}), {13, 16}, {53, 26}},
        {"as it is", effectOf(ScaleEffect{}, frame, {}), {10, 20}, {50, 30}},
        {"twice as wide", effectOf(ScaleEffect{.x = 2}, frame, {}), {-10, 20}, {70, 30}},
        {"from a corner",
         effectOf(ScaleEffect{.x = 2, .y = 3, .anchor = UnitPoint::topLeading}, frame, {}),
         {10, 20},
         {90, 50}},
        {"mirrored", effectOf(ScaleEffect{.x = -1}, frame, {}), {50, 20}, {10, 30}},
        {"a quarter turn", effectOf(RotationEffect{.angle = pi / 2}, frame, {}), {35, 5}, {25, 45}},
        {"around the trailing end",
         effectOf(RotationEffect{.angle = pi / 2, .anchor = UnitPoint::trailing}, frame, {}),
         {55, -15},
         {45, 25}},
        {"upside down", effectOf(RotationEffect{.angle = -pi}, frame, {}), {50, 30}, {10, 20}},
        {"many turns", effectOf(RotationEffect{.angle = 2000 * pi}, frame, {}), {10, 20}, {50, 30}},
        {"mirrored in space",
         effectOf(Rotation3DEffect{.angle = pi, .axis = {0, 1, 0}}, frame, {}),
         {50, 20},
         {10, 30}},
        {"about the horizontal axis",
         effectOf(Rotation3DEffect{.angle = pi, .axis = {7, 0, 0}}, frame, {}),
         {10, 30},
         {50, 20}},
        {"about the viewer's", effectOf(Rotation3DEffect{.angle = pi / 2}, frame, {}), {35, 5}, {25, 45}},
        {"half seen", effectOf(Rotation3DEffect{.angle = pi / 3, .axis = {0, 1, 0}}, frame, {}), {20, 20}, {40, 30}},
        {"not turned", effectOf(Rotation3DEffect{.angle = 0, .axis = {0, 1, 0}}, frame, {}), {10, 20}, {50, 30}},
        {"about no axis", effectOf(Rotation3DEffect{.angle = 1, .axis = {0, 0, 0}}, frame, {}), {10, 20}, {50, 30}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ASSERT_TRUE(row.effect.has_value());
        expectNear(*row.effect * frame.origin, row.corner);
        expectNear(*row.effect * Point{50, 30}, row.other);
    }
}

TEST(Effects, RightAnglesAreExact) {
    for (const double turns : {0.25, 0.5, 1.0, 100.0, -0.75}) {
        const Effect effect = effectOf(RotationEffect{.angle = 2 * pi * turns}, frame, {});
        ASSERT_TRUE(effect.has_value());
        EXPECT_TRUE((effect->xx == 0 && effect->yy == 0) || (effect->xy == 0 && effect->yx == 0)) << turns;
    }
}

TEST(Effects, WhatIsNoPictureIsNotDrawn) {
    const Rect endless{{0, 0}, {infinity, 10}};
    const struct {
        const char* why;
        Effect effect;
    } rows[] = {
        {"an endless way", effectOf(Offset{.x = infinity}, frame, {})},
        {"no number", effectOf(Offset{.y = nan}, frame, {})},
        {"no size", effectOf(ScaleEffect{.x = 0}, frame, {})},
        {"no height", effectOf(ScaleEffect{.y = 0}, frame, {})},
        {"an endless size", effectOf(ScaleEffect{.x = -infinity}, frame, {})},
        {"no scale", effectOf(ScaleEffect{.x = nan}, frame, {})},
        {"an endless turn", effectOf(RotationEffect{.angle = infinity}, frame, {})},
        {"no angle", effectOf(RotationEffect{.angle = nan}, frame, {})},
        {"around what is nowhere", effectOf(RotationEffect{.angle = 1}, endless, {})},
        {"no angle in space", effectOf(Rotation3DEffect{.angle = nan, .axis = {0, 1, 0}}, frame, {})},
        {"seen from the edge", effectOf(Rotation3DEffect{.angle = pi / 2, .axis = {0, 1, 0}}, frame, {})},
        {"no axis", effectOf(Rotation3DEffect{.angle = 1, .axis = {nan, 1, 0}}, frame, {})},
    };
    for (const auto& row : rows) EXPECT_FALSE(row.effect.has_value()) << row.why;
}

TEST(Effects, ClockHandsShowTheTimeOfTheirZone) {
    constexpr auto day = ClockHandPeriod::custom(86'400);
    constexpr ClockHandPeriod hour{.hand = ClockHandPeriod::Hand::hour};
    constexpr ClockHandPeriod minute{.hand = ClockHandPeriod::Hand::minute};
    constexpr ClockHandPeriod second{.hand = ClockHandPeriod::Hand::second};
    const struct {
        const char* why;
        ClockHandPeriod period;
        const char* zone;
        const char* moment;
        double turns;
    } rows[] = {
        {"three o'clock", hour, "UTC", "2026-11-21T15:00:00Z", 3.0 / 12},
        {"half past", minute, "UTC", "2026-11-21T15:30:00Z", 0.5},
        {"fifteen seconds", second, "UTC", "2026-11-21T15:30:15Z", 0.25},
        {"between two seconds", second, "UTC", "2026-11-21T15:30:15.5Z", 15.5 / 60},
        {"an hour ahead", hour, "Europe/Madrid", "2026-11-21T02:00:00Z", 3.0 / 12},
        {"half an hour apart", minute, "Asia/Kolkata", "2026-11-21T02:00:00Z", 0.5},
        {"behind", hour, "America/New_York", "2026-11-21T08:00:00Z", 3.0 / 12},
        {"before the clocks go forward", day, "Europe/Madrid", "2026-03-29T00:59:59Z", (2 * 3600 - 1) / 86'400.0},
        {"after", day, "Europe/Madrid", "2026-03-29T01:00:00Z", 3.0 / 24},
        {"before they go back", day, "Europe/Madrid", "2026-10-25T00:59:59Z", (3 * 3600 - 1) / 86'400.0},
        {"after", day, "Europe/Madrid", "2026-10-25T01:00:00Z", 2.0 / 24},
        {"a zone of the southern summer", hour, "Australia/Sydney", "2026-01-01T00:00:00Z", 11.0 / 12},
        {"backwards", ClockHandPeriod::custom(-60), "UTC", "2026-11-21T15:30:15Z", -0.25},
        {"before 1970", second, "UTC", "1969-12-31T23:59:45Z", -0.25},
        {"no period", ClockHandPeriod::custom(0), "UTC", "2026-11-21T15:30:15Z", 0},
        {"an endless one", ClockHandPeriod::custom(infinity), "UTC", "2026-11-21T15:30:15Z", 0},
        {"no number", ClockHandPeriod::custom(nan), "UTC", "2026-11-21T15:30:15Z", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const double angle =
            clockHandAngle(row.period, TimeZone::named(row.zone).value(), Date::parseRFC3339(row.moment).value());
        EXPECT_NEAR(angle, row.turns * 2 * pi, 1e-6);
    }
    EXPECT_EQ(clockHandAngle(second, {}, Date{nan}), 0) << "no moment";
}

}  // namespace
}  // namespace tavrin::layout
