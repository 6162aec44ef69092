// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

#include <cairo.h>
#include <gtest/gtest.h>

#include "tavrin/platform/paint/shape_path.h"
#include "tests/paint/colors.h"

namespace tavrin::paint {
namespace {

constexpr Rect bounds{{10, 20}, {40, 20}};

/// The outline as a chain of short lines; empty when nothing is appended.
std::vector<Point> chain(const Shape& shape) {
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr), &cairo_surface_destroy);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo(cairo_create(surface.get()), &cairo_destroy);
    cairo_set_tolerance(cairo.get(), 0.001);
    appendOutline(cairo.get(), shape, bounds);
    const std::unique_ptr<cairo_path_t, decltype(&cairo_path_destroy)> path(cairo_copy_path_flat(cairo.get()),
                                                                            &cairo_path_destroy);
    std::vector<Point> points;
    for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
        if (path->data[i].header.type == CAIRO_PATH_CLOSE_PATH) {
            points.push_back(points.front());
            break;
        }
        points.push_back({path->data[i + 1].point.x, path->data[i + 1].point.y});
    }
    return points;
}

double lengthOf(const std::vector<Point>& points) {
    double length = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        length += std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
    return length;
}

TEST(TrimmedPath, RunsBetweenTwoFractions) {
    const struct {
        const char* why;
        ClosedShape shape;
        double from;
        double to;
        Point begin;
        Point end;
        double share;
    } rows[] = {
        {"a circle begins at its trailing point", Circle{}, 0, 0.25, {40, 30}, {30, 40}, 0.25},
        {"and runs clockwise", Circle{}, 0.5, 0.75, {20, 30}, {30, 20}, 0.25},
        {"an eighth", Circle{}, 0, 0.125, {40, 30}, {30 + 10 * std::sqrt(0.5), 30 + 10 * std::sqrt(0.5)}, 0.125},
        {"all of it", Circle{}, 0, 1, {40, 30}, {40, 30}, 1},
        {"no more than all", Circle{}, -3, 7, {40, 30}, {40, 30}, 1},
        {"nearly all", Circle{}, 0, 0.999, {40, 30}, {39.9998, 29.937}, 0.999},
        {"a rectangle begins at its corner", Rectangle{}, 0, 0.5, {10, 20}, {50, 40}, 0.5},
        {"within an edge", Rectangle{}, 1.0 / 12, 0.25, {20, 20}, {40, 20}, 1.0 / 6},
        {"round corners begin at the trailing side's middle", RoundedRectangle{5}, 0.5, 1, {10, 30}, {50, 30}, 0.5},
        {"and count with their length", RoundedRectangle{10}, 0, 0.25, {50, 30}, {30, 40}, 0.25},
        {"a capsule", Capsule{}, 0.5, 1, {10, 30}, {50, 30}, 0.5},
        {"a continuous one", Capsule{RoundedCornerStyle::continuous}, 0.25, 0.5, {30, 40}, {10, 30}, 0.25},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::vector<Point> whole =
            chain(std::visit([](const auto& closed) -> Shape { return closed; }, row.shape));
        const std::vector<Point> part = chain(TrimmedShape{row.shape, row.from, row.to});
        ASSERT_GE(part.size(), 2U);
        EXPECT_NEAR(part.front().x, row.begin.x, 0.02);
        EXPECT_NEAR(part.front().y, row.begin.y, 0.02);
        EXPECT_NEAR(part.back().x, row.end.x, 0.02);
        EXPECT_NEAR(part.back().y, row.end.y, 0.02);
        EXPECT_NEAR(lengthOf(part), row.share * lengthOf(whole), 0.02);
    }
}

TEST(TrimmedPath, IsEmptyWhereNothingIsLeft) {
    const double rows[][2] = {{0, 0}, {0.5, 0.5}, {0.7, 0.3}, {1, 2}, {-1, 0}, {nan, 1}, {0, nan}};
    for (const auto& [from, to] : rows) EXPECT_TRUE(chain(TrimmedShape{Circle{}, from, to}).empty()) << from << to;
}

}  // namespace
}  // namespace tavrin::paint
