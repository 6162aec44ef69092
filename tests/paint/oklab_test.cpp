// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/oklab.h"

#include <gtest/gtest.h>

#include "tests/paint/colors.h"

namespace tavrin::paint {
namespace {

RGBA faded(RGBA color, double opacity) {
    color.opacity = opacity;
    return color;
}

TEST(Oklab, MixesColours) {
    const struct {
        const char* why;
        RGBA from;
        RGBA to;
        double share;
        double expected[4];  // 0…255, the opacity 0…1
    } rows[] = {
        {"the start is itself", {0.2, 0.4, 0.6, 0.8}, white, 0, {51, 102, 153, 0.8}},
        {"the end is itself", white, {0.2, 0.4, 0.6, 0.8}, 1, {51, 102, 153, 0.8}},
        {"half the lightness is an eighth of the light", black, white, 0.5, {99.1, 99.1, 99.1, 1}},
        {"gray stays gray", {0.3, 0.3, 0.3, 1}, {0.7, 0.7, 0.7, 1}, 0.5, {125.6, 125.6, 125.6, 1}},
        {"red to blue", {1, 56 / 255.0, 60 / 255.0, 1}, {0, 136 / 255.0, 1, 1}, 0.5, {171.5, 121, 168, 1}},
        {"over the edge of what a screen shows", yellow, blue, 0.5, {107.8, 171.5, 199, 1}},
        {"out of what it shows: cut", red, green, 0.5, {208.2, 168.4, 0.5, 1}},
        {"premultiplied: half as opaque counts half", red, faded(blue, 0.5), 0.5, {178.8, 79.1, 128, 0.75}},
        {"nothing does not count", red, faded(blue, 0), 0.5, {255, 0, 0, 0.5}},
        {"nor where it is reached", red, faded(blue, 0), 1, {255, 0, 0, 0}},
        {"nor where it is left", faded(blue, 0), red, 0, {255, 0, 0, 0}},
        {"between nothing and nothing is nothing", faded(blue, 0), faded(red, 0), 0.5, {0, 0, 255, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const RGBA mix = mixed(oklabOf(row.from), oklabOf(row.to), row.share);
        EXPECT_NEAR(mix.red * 255, row.expected[0], 0.1);
        EXPECT_NEAR(mix.green * 255, row.expected[1], 0.1);
        EXPECT_NEAR(mix.blue * 255, row.expected[2], 0.1);
        EXPECT_NEAR(mix.opacity, row.expected[3], 1e-9);
    }
}

}  // namespace
}  // namespace tavrin::paint
