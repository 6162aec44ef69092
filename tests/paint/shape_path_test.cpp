#include "tavrin/platform/paint/shape_path.h"

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include <cairo.h>
#include <gtest/gtest.h>

namespace tavrin::paint {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr auto continuous = RoundedCornerStyle::continuous;

using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

Context contextWith(const Shape& shape, const Rect& bounds) {
    cairo_surface_t* surface = cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr);
    Context context(cairo_create(surface), &cairo_destroy);
    cairo_surface_destroy(surface);
    appendOutline(context.get(), shape, bounds);
    return context;
}

/// Ends of the outline's lines and curves.
std::vector<Point> joints(const Shape& shape, const Rect& bounds) {
    const Context context = contextWith(shape, bounds);
    const std::unique_ptr<cairo_path_t, decltype(&cairo_path_destroy)> path(cairo_copy_path(context.get()),
                                                                            &cairo_path_destroy);
    std::vector<Point> points;
    for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
        const int length = path->data[i].header.length;
        if (length > 1) points.push_back({path->data[i + length - 1].point.x, path->data[i + length - 1].point.y});
    }
    return points;
}

bool passes(const Shape& shape, const Rect& bounds, Point point) {
    for (const Point& joint : joints(shape, bounds))
        if (std::hypot(joint.x - point.x, joint.y - point.y) < 0.01) return true;
    return false;
}

TEST(ShapePath, PassesTheKnownPoints) {
    const struct {
        const char* why;
        Shape shape;
        Rect bounds;
        Point point;
    } rows[] = {
        {"a circular corner leaves the edge at the radius", RoundedRectangle{10}, {{0, 0}, {100, 60}}, {90, 0}},
        {"and meets the diagonal", RoundedRectangle{10}, {{0, 0}, {100, 60}}, {97.071, 2.929}},
        {"a continuous corner leaves it earlier", RoundedRectangle{10, continuous}, {{0, 0}, {100, 60}}, {84.713, 0}},
        {"its first curve's end", RoundedRectangle{10, continuous}, {{0, 0}, {100, 60}}, {93.301, 0.655}},
        {"its line's end", RoundedRectangle{10, continuous}, {{0, 0}, {100, 60}}, {93.685, 0.749}},
        {"the next curve's end", RoundedRectangle{10, continuous}, {{0, 0}, {100, 60}}, {99.251, 6.315}},
        {"the other edge", RoundedRectangle{10, continuous}, {{0, 0}, {100, 60}}, {100, 15.287}},
        {"the opposite corner is turned by half",
         RoundedRectangle{10, continuous},
         {{0, 0}, {100, 60}},
         {6.315, 59.251}},
        {"the middle of a side too short", RoundedRectangle{10, continuous}, {{0, 0}, {100, 24}}, {100, 12}},
        {"while the long side has its point", RoundedRectangle{10, continuous}, {{0, 0}, {100, 24}}, {84.713, 0}},
        {"a radius limited to half the smaller side", RoundedRectangle{1e300}, {{0, 0}, {100, 60}}, {70, 0}},
        {"an infinite one too", RoundedRectangle{infinity}, {{0, 0}, {100, 60}}, {70, 0}},
        {"a negative radius is none", RoundedRectangle{-5}, {{0, 0}, {100, 60}}, {100, 0}},
        {"and so is NaN", RoundedRectangle{nan}, {{0, 0}, {100, 60}}, {100, 0}},
        {"a capsule", Capsule{}, {{0, 0}, {100, 60}}, {70, 0}},
        {"a continuous capsule", Capsule{continuous}, {{0, 0}, {100, 60}}, {54.14, 0}},
        {"a circle in the middle, its top", Circle{}, {{10, 10}, {100, 60}}, {60, 10}},
        {"and its right", Circle{}, {{10, 10}, {100, 60}}, {90, 40}},
        {"a rectangle's corner", Rectangle{}, {{1, 2}, {3, 4}}, {4, 6}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(passes(row.shape, row.bounds, row.point))
            << ::testing::PrintToString(joints(row.shape, row.bounds).size());
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
            EXPECT_TRUE(joints(shape, bounds).empty());
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
