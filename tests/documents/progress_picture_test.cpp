// SPDX-License-Identifier: MIT
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/documents/drawn.h"

// Rings and bars by the pixels at places that tell: red is done, green is left, white is neither.

namespace tavrin {
namespace {

constexpr std::uint32_t gray = 0xFF8E8E93;

const std::string redAndGreen = R"("color": {"value": "#FF0000"}, "background": {"value": "#00FF00"})";
const std::string knob = R"({"type": "rectangle", "modifiers": [{"type": "frame", "width": 4, "height": 4}]})";

std::string progress(const std::string& style, const std::string& value, const std::string& members) {
    return node("progressView", "\"style\": \"" + style + "\", \"value\": " + value + ", " + members);
}
std::string attached(const std::string& position) {
    return R"(, "attachment": {"position": ")" + position + R"(", "view": )" + knob + "}";
}

/// A pixel and what it must be.
struct Sample {
    double x;
    double y;
    std::uint32_t color;
};

void expectSamples(const PixelBuffer& picture, const Page& page, const std::vector<Sample>& samples) {
    for (const auto& [x, y, color] : samples)
        EXPECT_LE(distance(at(picture, page, x, y), color), 1)
            << "at " << x << ", " << y << " is " << std::hex << at(picture, page, x, y) << " instead of " << color;
}

/// The middle of a ring's line in a page of 60 points, by hours of a clock; the line is 8 points wide.
Sample onRing(double hour, std::uint32_t color) {
    const double angle = hour / 6 * std::numbers::pi;
    return {30 + 26 * std::sin(angle), 30 - 26 * std::cos(angle), color};
}

TEST(ProgressPicture, RingsFillClockwiseFromTwelve) {
    const struct {
        const char* why;
        const char* value;
        const char* members;
        std::vector<Sample> samples;
    } rows[] = {
        {"nothing done", "0", "", {onRing(0, green), onRing(0.1, green), onRing(6, green), onRing(11.9, green)}},
        {"a quarter",
         "0.25",
         R"(, "lineCap": "butt")",
         {onRing(0.2, red), onRing(1.5, red), onRing(2.8, red), onRing(3.2, green), onRing(9, green),
          onRing(11.8, green)}},
        {"with round ends",
         "0.25",
         "",
         {onRing(11.8, red), onRing(1.5, red), onRing(3.2, red), onRing(3.9, green), onRing(11.1, green)}},
        {"half",
         "0.5",
         R"(, "lineCap": "butt")",
         {onRing(3, red), onRing(5.8, red), onRing(6.2, green), onRing(9, green)}},
        {"all", "1", R"(, "lineCap": "butt")", {onRing(0, red), onRing(3, red), onRing(6, red), onRing(11.9, red)}},
        {"more than all", "1.75", "", {onRing(0, red), onRing(3, red), onRing(6, red), onRing(11.9, red)}},
        {"endlessly more", R"("inf")", "", {onRing(0, red), onRing(9, red)}},
        {"less than nothing", "-0.5", "", {onRing(0, green), onRing(9, green)}},
        {"no number", R"("nan")", "", {onRing(0, green), onRing(9, green)}},
        {"the other way around",
         "0.25",
         R"(, "lineCap": "butt", "flip": true)",
         {onRing(11.8, red), onRing(10.5, red), onRing(9.2, red), onRing(8.8, green), onRing(0.2, green)}},
        {"beside the line is nothing", "0.5", "", {{30, 30, white}, {1, 1, white}, {30, 10, white}, {59, 59, white}}},
    };
    for (const auto& row : rows)
        for (const double scale : scales) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            const Page page{{60, 60}, scale};
            const std::string ring = progress("circular", row.value, redAndGreen + R"(, "lineWidth": 8)" + row.members);
            expectSamples(drawn(ring, page), page, row.samples);
        }
}

TEST(ProgressPicture, LinesWiderThanTheirRoomMakePies) {
    const Page page{{60, 60}, 2};
    const auto pie = [&](const char* width) {
        return drawn(progress("circular", "0.25", redAndGreen + R"(, "lineCap": "butt", "lineWidth": )" + width), page);
    };
    for (const char* width : {"30", "40", "59"})
        expectSamples(pie(width), page,
                      {{40, 20, red}, {50, 28, red}, {20, 20, green}, {28, 40, green}, {40, 40, green}});
    for (const char* width : {"60", "1000", "0", "-5", R"("inf")", R"("nan")"})
        EXPECT_EQ(pie(width), drawn(node("spacer"), page)) << width << " leaves no room for a ring";
}

TEST(ProgressPicture, ColoursAreBlueOnGrayUnlessPlainOrGradients) {
    const Page page{{60, 60}, 2};
    const auto ring = [&](const std::string& members) {
        return drawn(progress("circular", "0.5", R"("lineWidth": 8)" + members), page);
    };
    expectSamples(ring(""), page, {onRing(3, systemBlue), onRing(9, gray)});
    const std::string faded = R"({"value": "#FF0000", "modifiers": [{"type": "opacity", "opacity": 0.5}]})";
    expectSamples(ring(R"(, "color": )" + faded + R"(, "background": )" + faded), page,
                  {onRing(3, systemBlue), onRing(9, gray)});
    // The gradient lies over the arc's bounds and is turned with it: what was at its leading edge is at the top.
    const PixelBuffer ramp =
        ring(R"(, "color": {"value": "#FF0000-#0000FF", "gradient": true, "start": "leading", "end": "trailing"})");
    const auto shade = [&](double hour) { return at(ramp, page, onRing(hour, 0).x, onRing(hour, 0).y); };
    EXPECT_GT(channel(shade(5.5), 16), 230) << "red below";
    EXPECT_GT(channel(shade(0.5), 0), 230) << "systemBlue above";
    EXPECT_LE(distance(shade(3), 0xFF8C53A2), 4) << "both halfway: " << std::hex << shade(3);
}

TEST(ProgressPicture, AttachmentsRideOnTheRing) {
    const struct {
        const char* value;
        const char* flip;
        double hour;
    } rows[] = {{"0", "false", 0},  {"0.25", "false", 3}, {"0.5", "false", 6},
                {"1", "false", 12}, {"0.25", "true", 9},  {"0.375", "true", 7.5}};
    const Page page{{60, 60}, 2};
    for (const auto& row : rows)
        for (const char* position : {"center", "top", "bottom"}) {
            SCOPED_TRACE(row.value + std::string(position));
            const PixelBuffer picture =
                drawn(progress("circular", row.value,
                               redAndGreen + R"(, "lineWidth": 8, "flip": )" + row.flip + attached(position)),
                      page);
            const Sample place = onRing(row.hour, black);
            expectSamples(picture, page, {place, {place.x - 1.5, place.y + 1.5, black}});
            EXPECT_NE(at(picture, page, place.x + 3, place.y), black) << "no larger than it is";
        }
}

TEST(ProgressPicture, AttachmentsOfALineWiderThanItsRoomAreOppositeToIt) {
    const Page page{{60, 60}, 2};
    const PixelBuffer picture =
        drawn(progress("circular", "0.25", redAndGreen + R"(, "lineWidth": 76)" + attached("center")), page);
    // Around the middle of what is as wide as the line.
    expectSamples(picture, page, {{30, 38, black}, {38, 38, white}});
}

// A bar 80 points wide and 8 high in the middle of a page of 80 x 40.
TEST(ProgressPicture, BarsFillFromTheLeadingEdge) {
    const struct {
        const char* why;
        const char* value;
        const char* members;
        std::vector<Sample> samples;
    } rows[] = {
        {"nothing done", "0", "", {{4, 20, green}, {40, 20, green}, {76, 20, green}, {40, 15, white}, {40, 25, white}}},
        {"half",
         "0.5",
         R"(, "lineCap": "butt")",
         {{0.5, 16.5, red}, {39, 20, red}, {41, 20, green}, {79.5, 23.5, green}}},
        {"with round ends", "0.5", "", {{0.5, 16.5, white}, {39.5, 16.5, green}, {35, 16.5, red}, {79.5, 16.5, white}}},
        {"a radius of its own",
         "0.5",
         R"(, "lineCap": "butt", "lineCornerRadius": 4)",
         {{0.5, 16.5, white}, {39.5, 16.5, green}, {37, 20, red}}},
        {"none", "0.5", R"(, "lineCornerRadius": 0)", {{0.5, 16.5, red}, {39.5, 16.5, red}}},
        {"all", "1", R"(, "lineCap": "butt")", {{0.5, 20, red}, {79.5, 20, red}}},
        {"more than all", "3", R"(, "lineCap": "butt")", {{0.5, 20, red}, {79.5, 20, red}}},
        {"no number", R"("nan")", R"(, "lineCap": "butt")", {{0.5, 20, green}, {79.5, 20, green}}},
        {"from the trailing edge",
         "0.25",
         R"(, "lineCap": "butt", "flip": true)",
         {{1, 20, green}, {59, 20, green}, {61, 20, red}, {79.5, 20, red}}},
    };
    for (const auto& row : rows)
        for (const double scale : {1.0, 2.0, 3.0}) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            const Page page{{80, 40}, scale};
            const std::string bar = progress("linear", row.value, redAndGreen + R"(, "lineWidth": 8)" + row.members);
            expectSamples(drawn(bar, page), page, row.samples);
        }
}

TEST(ProgressPicture, AFlippedBarIsTheMirroredOne) {
    const Page page{{80, 40}, 2};
    const auto bar = [&](const char* flip) {
        return drawn(
            progress(
                "linear", "0.4",
                R"("lineWidth": 8, "flip": )" + std::string(flip) +
                    R"(, "color": {"value": "#FF0000-#0000FF", "gradient": true, "start": "leading", "end": "trailing"})"),
            page);
    };
    const PixelBuffer plain = bar("false");
    const PixelBuffer flipped = bar("true");
    for (int y = 0; y < plain.height(); ++y)
        for (int x = 0; x < plain.width(); ++x)
            ASSERT_LE(distance(plain.row(y)[x], flipped.row(y)[plain.width() - 1 - x]), 8) << x << ", " << y;
}

TEST(ProgressPicture, AttachmentsLieOverAboveOrBelowABar) {
    const Page page{{80, 40}, 2};
    const auto bar = [&](const char* position) {
        return drawn(progress("linear", "1", redAndGreen + R"(, "lineWidth": 8)" + attached(position)), page);
    };
    expectSamples(bar("center"), page, {{40, 20, black}, {40, 16.5, red}, {40, 23.5, red}, {40, 15.5, white}});
    expectSamples(bar("top"), page, {{40, 16, black}, {40, 18.5, red}, {40, 25.5, red}, {40, 26.5, white}});
    expectSamples(bar("bottom"), page, {{40, 24, black}, {40, 21.5, red}, {40, 14.5, red}, {40, 13.5, white}});
}

}  // namespace
}  // namespace tavrin
