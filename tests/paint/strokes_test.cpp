// SPDX-License-Identifier: MIT
#include <cmath>

#include <gtest/gtest.h>

#include "tests/paint/drawn.h"

// Strokes of every width, by how far each pixel is from the outline.

namespace tavrin::paint {
namespace {

/// The distance of a point from the outline of a rectangle with circular corners around the origin; negative inside.
double distanceFrom(Size size, double radius, Point point) {
    const double x = std::abs(point.x) - size.width / 2 + radius;
    const double y = std::abs(point.y) - size.height / 2 + radius;
    return std::hypot(std::max(x, 0.0), std::max(y, 0.0)) + std::min(std::max(x, y), 0.0) - radius;
}

/// A shape whose outline is that of a rectangle with circular corners.
struct Outline {
    const char* why;
    Shape shape;
    Size size;
    double radius;
};
constexpr Size page{120, 110};

/// An outline in the middle of the page, stroked in half-transparent black.
PixelBuffer stroked(const Outline& outline, double width, double scale, bool gradient) {
    const RGBA half{0, 0, 0, 0.5};
    const Paint paint = gradient ? Paint{Gradient{{half, half}, {0, 0}, {9, 9}}} : Paint{half};
    const Point corner{(page.width - outline.size.width) / 2, (page.height - outline.size.height) / 2};
    return drawn(page, scale, [&](Canvas& canvas) {
        canvas.stroke(outline.shape, {corner, outline.size}, paint, {width});
    });
}

void expectCoverage(const PixelBuffer& picture, const Outline& outline, double width, double scale) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const Point point{(x + 0.5) / scale - page.width / 2, (y + 0.5) / scale - page.height / 2};
            const double inside = width / 2 - std::abs(distanceFrom(outline.size, outline.radius, point));
            const std::uint32_t alpha = picture.row(y)[x] >> 24;
            if (inside > 0.8 / scale) {
                ASSERT_NEAR(alpha, 0x80, 1) << x << ", " << y;
            } else if (inside < -0.8 / scale) {
                ASSERT_EQ(alpha, 0U) << x << ", " << y;
            }
        }
}

TEST(Strokes, CoverWhatLiesHalfTheirWidthFromTheOutline) {
    const Outline rows[] = {
        {"a circle", Circle{}, {20, 20}, 10},
        {"a capsule", Capsule{}, {40, 20}, 10},
        {"a standing one", Capsule{}, {16, 36}, 8},
        {"round corners", RoundedRectangle{8}, {40, 30}, 8},
        {"small round corners", RoundedRectangle{2}, {40, 30}, 2},
        {"round corners that meet", RoundedRectangle{99}, {30, 30}, 15},
    };
    for (const Outline& row : rows)
        for (const double width :
             {0.5, 1.0, 3.0, 8.0, 15.0, 16.0, 17.0, 19.0, 20.0, 21.0, 24.0, 29.0, 30.0, 31.0, 40.0, 60.0})
            for (const double scale : {1.0, 3.0})
                for (const bool gradient : {false, true}) {
                    SCOPED_TRACE(row.why + std::string(", ") + std::to_string(width) + " wide, at " +
                                 std::to_string(scale));
                    expectCoverage(stroked(row, width, scale, gradient), row, width, scale);
                }
}

TEST(Strokes, CloseOverContinuousCornersToo) {
    for (const double width : {30.0, 31.0, 90.0}) {
        Canvas canvas = Canvas::raster({140, 120}, 2);
        canvas.stroke(RoundedRectangle{12, RoundedCornerStyle::continuous}, {{50, 45}, {40, 30}}, RGBA{0, 0, 0, 1},
                      {width});
        const PixelBuffer picture = canvas.finishRaster();
        for (int y = 90; y < 150; ++y)
            for (int x = 100; x < 180; ++x) ASSERT_EQ(picture.row(y)[x], 0xFF000000) << x << ", " << y;
        EXPECT_EQ(picture.row(120)[static_cast<int>(100 - width) + 1], 0xFF000000);
        EXPECT_EQ(picture.row(120)[static_cast<int>(100 - width) - 2], 0U);
    }
}

}  // namespace
}  // namespace tavrin::paint
