// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/shape_path.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include <cairo.h>
#include <gtest/gtest.h>

#include "tests/paint/colors.h"

namespace tavrin::paint {
namespace {

constexpr auto continuous = RoundedCornerStyle::continuous;

using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

Context contextWith(const Shape& shape, const Rect& bounds) {
    cairo_surface_t* surface = cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr);
    Context context(cairo_create(surface), &cairo_destroy);
    cairo_surface_destroy(surface);
    appendOutline(context.get(), shape, bounds);
    return context;
}

bool areNear(Point a, Point b) { return std::hypot(a.x - b.x, a.y - b.y) < 0.006; }

/// The outline's points with the curves' handles, in order; a line that leads nowhere counts as none.
std::vector<Point> pointsOf(const Shape& shape, const Rect& bounds) {
    const Context context = contextWith(shape, bounds);
    const std::unique_ptr<cairo_path_t, decltype(&cairo_path_destroy)> path(cairo_copy_path(context.get()),
                                                                            &cairo_path_destroy);
    std::vector<Point> points;
    for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
        if (path->data[i].header.type == CAIRO_PATH_CLOSE_PATH) break;
        for (int k = 1; k < path->data[i].header.length; ++k) {
            const Point point{path->data[i + k].point.x, path->data[i + k].point.y};
            const bool isLine = path->data[i].header.type == CAIRO_PATH_LINE_TO;
            if (!isLine || !areNear(points.back(), point)) points.push_back(point);
        }
    }
    return points;
}

TEST(ShapePath, BeginsWithTheKnownPoints) {
    const struct {
        const char* why;
        Shape shape;
        Rect bounds;
        std::vector<Point> points;
    } rows[] = {
        {"a circle in the middle: a curve for each quarter",
         Circle{},
         {{10, 10}, {100, 60}},
         {{90, 40}, {90, 56.569}, {76.569, 70}, {60, 70}, {43.431, 70}, {30, 56.569}, {30, 40}}},
        {"a circular corner is one curve, too",
         RoundedRectangle{10},
         {{0, 0}, {100, 60}},
         {{100, 30}, {100, 50}, {100, 55.523}, {95.523, 60}, {90, 60}, {10, 60}}},
        {"a capsule", Capsule{}, {{0, 0}, {100, 60}}, {{100, 30}, {100, 46.569}, {86.569, 60}, {70, 60}}},
        {"a continuous corner is three, mirrored on its diagonal",
         RoundedRectangle{10, continuous},
         {{0, 0}, {100, 60}},
         {{100, 30},
          {100, 44.713},
          {100, 49.115},
          {100, 51.316},
          {99.251, 53.685},
          {98.309, 56.272},
          {96.272, 58.309},
          {93.685, 59.251},
          {91.316, 60},
          {89.115, 60},
          {84.713, 60},
          {15.287, 60}}},
        {"beside a side too short it leaves at the side's middle, and only there",
         RoundedRectangle{10, continuous},
         {{0, 0}, {100, 24}},
         {{100, 12},
          {100, 13.914},
          {100, 15.617},
          {99.251, 17.685},
          {98.309, 20.272},
          {96.272, 22.309},
          {93.685, 23.251},
          {91.316, 24},
          {89.115, 24},
          {84.713, 24},
          {15.287, 24}}},
        {"a lying continuous capsule",
         Capsule{continuous},
         {{0, 0}, {100, 60}},
         {{100, 30},
          {100, 31.2},
          {100, 35.4},
          {97.753, 41.055},
          {94.928, 48.815},
          {88.815, 54.928},
          {81.055, 57.753},
          {73.948, 60},
          {67.345, 60},
          {54.14, 60}}},
        {"a standing one",
         Capsule{continuous},
         {{0, 0}, {60, 100}},
         {{60, 50},
          {60, 54.14},
          {60, 67.345},
          {60, 73.948},
          {57.753, 81.055},
          {54.928, 88.815},
          {48.815, 94.928},
          {41.055, 97.753},
          {35.4, 100},
          {31.2, 100},
          {30, 100},
          {28.8, 100}}},
        {"a square that is all corners",
         RoundedRectangle{30, continuous},
         {{5, 0}, {20, 20}},
         {{25, 10},
          {25, 10.4},
          {25, 11.8},
          {24.251, 13.685},
          {23.309, 16.272},
          {21.272, 18.309},
          {18.685, 19.251},
          {16.8, 20},
          {15.4, 20},
          {15, 20},
          {14.6, 20}}},
        {"a radius limited to half the smaller side",
         RoundedRectangle{1e300},
         {{0, 0}, {100, 60}},
         {{100, 30}, {100, 46.569}, {86.569, 60}, {70, 60}, {30, 60}}},
        {"an infinite one too",
         RoundedRectangle{infinity},
         {{0, 0}, {100, 60}},
         {{100, 30}, {100, 46.569}, {86.569, 60}, {70, 60}, {30, 60}}},
        {"a negative radius is none", RoundedRectangle{-5}, {{1, 2}, {3, 4}}, {{1, 2}, {4, 2}, {4, 6}, {1, 6}}},
        {"and so is NaN", RoundedRectangle{nan, continuous}, {{1, 2}, {3, 4}}, {{1, 2}, {4, 2}, {4, 6}, {1, 6}}},
        {"a rectangle", Rectangle{}, {{1, 2}, {3, 4}}, {{1, 2}, {4, 2}, {4, 6}, {1, 6}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::vector<Point> points = pointsOf(row.shape, row.bounds);
        ASSERT_GE(points.size(), row.points.size());
        for (std::size_t i = 0; i < row.points.size(); ++i)
            EXPECT_TRUE(areNear(points[i], row.points[i])) << i << ": " << points[i].x << ", " << points[i].y;
    }
}

TEST(ShapePath, IsTheSameInEveryCorner) {
    const Rect bounds{{3, 4}, {100, 60}};
    for (const auto style : {RoundedCornerStyle::circular, continuous})
        for (const double radius : {7.0, 25.0, 30.0}) {
            const std::vector<Point> points = pointsOf(RoundedRectangle{radius, style}, bounds);
            for (const Point& point : points)
                for (const Point& mirrored : {Point{106 - point.x, point.y}, Point{point.x, 68 - point.y}})
                    EXPECT_TRUE(std::any_of(points.begin(), points.end(),
                                            [&](Point other) { return areNear(other, mirrored); }) ||
                                areNear(point, {103, 34}))
                        << radius << ": " << point.x << ", " << point.y;
        }
}

TEST(ShapePath, StaysWithinItsBounds) {
    for (const double radius : {0.5, 7.0, 20.0, 30.0})
        for (const auto style : {RoundedCornerStyle::circular, continuous})
            for (const Size size : {Size{60, 60}, Size{61, 100}, Size{200, 75}}) {
                const Context context = contextWith(RoundedRectangle{radius, style}, {{3, 4}, size});
                double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
                cairo_path_extents(context.get(), &x0, &y0, &x1, &y1);
                EXPECT_NEAR(x0, 3, 0.01);
                EXPECT_NEAR(y0, 4, 0.01);
                EXPECT_NEAR(x1, 3 + size.width, 0.01);
                EXPECT_NEAR(y1, 4 + size.height, 0.01);
            }
}

TEST(ShapePath, AppendsNothingForBoundsWithoutArea) {
    for (const Rect& bounds : {Rect{{0, 0}, {0, 5}}, Rect{{0, 0}, {5, -1}}, Rect{{nan, 0}, {5, 5}},
                               Rect{{0, 0}, {infinity, 5}}, Rect{{1e308, 0}, {1.5e308, 5}}, Rect{{0, 0}, {5, nan}}})
        for (const Shape& shape : {Shape{Circle{}}, Shape{Rectangle{}}, Shape{Capsule{}}, Shape{RoundedRectangle{3}}}) {
            EXPECT_TRUE(pointsOf(shape, bounds).empty());
            EXPECT_EQ(cornerExtent(shape, bounds), Size{});
        }
}

TEST(ShapePath, TellsHowFarCornersReach) {
    const Rect bounds{{0, 0}, {100, 60}};
    EXPECT_EQ(cornerExtent(Rectangle{}, bounds), (Size{0, 0}));
    EXPECT_EQ(cornerExtent(RoundedRectangle{10}, bounds), (Size{10, 10}));
    EXPECT_EQ(cornerExtent(RoundedRectangle{25, continuous}, bounds), (Size{1.528665 * 25, 30}));
    EXPECT_EQ(cornerExtent(Circle{}, bounds), (Size{30, 30}));
    EXPECT_EQ(outlineBounds(Circle{}, bounds), (Rect{{20, 0}, {60, 60}}));
}

}  // namespace
}  // namespace tavrin::paint
