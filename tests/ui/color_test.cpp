// SPDX-License-Identifier: MIT
#include "tavrin/platform/ui/color.h"

#include <cmath>
#include <cstdint>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

std::uint32_t hex(const RGBA& color) {
    const auto byte = [](double channel) { return static_cast<std::uint32_t>(std::lround(channel * 255)); };
    return byte(color.opacity) << 24 | byte(color.red) << 16 | byte(color.green) << 8 | byte(color.blue);
}

TEST(Color, OfTheSystemIsAsTheAppearanceHasIt) {
    const struct {
        const char* why;
        Color color;
        std::uint32_t light;
        std::uint32_t dark;
    } rows[] = {
        {"blue is lighter in the dark", Color::blue, 0xFF0088FF, 0xFF0091FF},
        {"gray is the same", Color::gray, 0xFF8E8E93, 0xFF8E8E93},
        {"and so is white", Color::white, 0xFFFFFFFF, 0xFFFFFFFF},
        {"the foreground is what the background is not", Color::primary, 0xFF000000, 0xFFFFFFFF},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(hex(row.color.resolved(Appearance::light)), row.light);
        EXPECT_EQ(hex(row.color.resolved(Appearance::dark)), row.dark);
    }
}

}  // namespace
}  // namespace tavrin
