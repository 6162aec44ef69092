// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/canvas_state.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <utility>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/color_source.h"
#include "tavrin/platform/paint/shape_path.h"

namespace tavrin::paint {
namespace {

/// Cairo counts pixels up to 2^23; what lies further out than this is out of sight in any case.
constexpr double farPixels = 1e6;

/// What sums of the same lengths may differ by, in pixels, far below what can be seen.
constexpr double rounding = 1e-6;

/// The whole pixel nearest to an edge. Edges in the middle of a pixel go the same way, whichever sums they come from.
int wholePixel(double edge) {
    return static_cast<int>(std::clamp(std::floor(edge + 0.5 + rounding), -farPixels, farPixels));
}

/// Lets the calling thread read and write numbers with a decimal point until the end of the scope.
class DecimalPoint {
public:
    DecimalPoint() {
        static const locale_t plain = ::newlocale(LC_NUMERIC_MASK, "C", nullptr);
        if (plain) before_ = ::uselocale(plain);
    }
    DecimalPoint(const DecimalPoint&) = delete;
    DecimalPoint& operator=(const DecimalPoint&) = delete;
    ~DecimalPoint() {
        if (before_) ::uselocale(before_);
    }

private:
    locale_t before_ = nullptr;
};

}  // namespace

bool isFinite(const Rect& rect) {
    return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) && std::isfinite(rect.size.width) &&
           std::isfinite(rect.size.height) && std::isfinite(rect.origin.x + rect.size.width) &&
           std::isfinite(rect.origin.y + rect.size.height);
}

void Canvas::State::setPixels() {
    if (std::exchange(isUnset, false)) pixels.clear();
}

void Canvas::State::count(const PixelRect& touched) {
    constexpr std::uint64_t stepsOfCall = 100;
    constexpr std::uint64_t stepsInDocument = 300;
    constexpr std::size_t bytesInDocument = 2048;
    const std::uint64_t outlines = 1 + level().outlinedClips;
    if (!raster) return countInDocument(outlines * stepsInDocument, bytesInDocument);
    Meter& meter = Meter::ofThisThread();
    meter.step(outlines * stepsOfCall);
    meter.paint(outlines * intersection(touched, visible()).area());
}

void Canvas::State::countInDocument(std::uint64_t steps, std::size_t bytes) {
    if (document.failure) std::rethrow_exception(document.failure);
    Meter::ofThisThread().step(steps);
    documentBytes.grow(bytes);
}

void Canvas::State::needWhole(const PixelRect& touched) {
    if (surveys) widen(intersection(touched, level().clip));
}

void Canvas::State::needRows(const PixelRect& touched, const Pieces& pieces) {
    if (!surveys || pieces.outlined.empty()) return;
    PixelRect rows = touched;
    rows.y0 = std::ranges::min(pieces.outlined, {}, &PixelRect::y0).y0;
    rows.y1 = std::ranges::max(pieces.outlined, {}, &PixelRect::y1).y1;
    needWhole(rows);
}

void Canvas::State::needAll(const PixelRect& touched) {
    if (surveys && !intersection(touched, visible()).empty()) window = all;
}

void Canvas::State::widen(const PixelRect& area) {
    if (!intersection(area, window).empty()) window = united(window, area);
}

void Canvas::State::pushLevel() { levels.push_back({level().clip, level().outlinedClips}); }

void Canvas::State::popLevel() {
    if (!level().backdrops.empty()) {
        const PixelTarget target(cairo.get(), window);
        std::for_each(level().backdrops.rbegin(), level().backdrops.rend(),
                      [&](const Backdrop& backdrop) { backdrop.restore(target); });
    }
    levels.pop_back();
}

void Canvas::State::clip(const PixelRect& area) {
    const cairo_matrix_t before = matrix();
    cairo_new_path(cairo.get());
    cairo_identity_matrix(cairo.get());
    cairo_rectangle(cairo.get(), area.x0, area.y0, area.width(), area.height());
    cairo_clip(cairo.get());
    cairo_set_matrix(cairo.get(), &before);
    level().clip = intersection(level().clip, area);
}

void Canvas::State::hide() {
    cairo_new_path(cairo.get());
    cairo_clip(cairo.get());
    level().clip = {};
}

void Canvas::State::finish() {
    if (levels.size() != 1) throw TavrinError{"Render", "a saved state or a layer of the canvas was not ended"};
    popLevel();
    const DecimalPoint decimalPoint;  // Cairo reads the places of links in the user's locale
    cairo_surface_finish(surface.get());
    if (document.failure) std::rethrow_exception(document.failure);
    if (document.names) document.names->finish(document.text);
    for (const cairo_status_t status : {cairo_status(cairo.get()), cairo_surface_status(surface.get())})
        if (status != CAIRO_STATUS_SUCCESS) throw TavrinError{"Render", cairo_status_to_string(status)};
}

cairo_matrix_t Canvas::State::matrix() const {
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo.get(), &matrix);
    return matrix;
}

double Canvas::State::farPoints() const {
    const cairo_matrix_t m = matrix();
    return farPixels / std::max({std::abs(m.xx), std::abs(m.yx), std::abs(m.xy), std::abs(m.yy)});
}

std::optional<PixelRect> Canvas::State::wholePixels(const Rect& rect) const {
    const cairo_matrix_t m = matrix();
    if (!raster || m.xy != 0 || m.yx != 0 || !isFinite(rect)) return std::nullopt;
    const int x0 = wholePixel(rect.origin.x * m.xx + m.x0);
    const int y0 = wholePixel(rect.origin.y * m.yy + m.y0);
    const int x1 = wholePixel((rect.origin.x + rect.size.width) * m.xx + m.x0);
    const int y1 = wholePixel((rect.origin.y + rect.size.height) * m.yy + m.y0);
    return PixelRect{std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)};
}

Rect Canvas::State::points(const PixelRect& area) const {
    const cairo_matrix_t m = matrix();
    const double x0 = (area.x0 - m.x0) / m.xx;
    const double x1 = (area.x1 - m.x0) / m.xx;
    const double y0 = (area.y0 - m.y0) / m.yy;
    const double y1 = (area.y1 - m.y0) / m.yy;
    return {{std::min(x0, x1), std::min(y0, y1)}, {std::abs(x1 - x0), std::abs(y1 - y0)}};
}

std::optional<Rect> Canvas::State::placed(const Rect& rect) const {
    if (!isFinite(rect) || rect.size.width <= 0 || rect.size.height <= 0) return std::nullopt;
    if (const std::optional<PixelRect> area = wholePixels(rect)) {
        if (area->empty()) return std::nullopt;
        return points(*area);
    }
    const double bound = farPoints();
    const auto near = [&](double edge) { return std::clamp(edge, -bound, bound); };
    const double right = rect.origin.x + rect.size.width;
    const double bottom = rect.origin.y + rect.size.height;
    const Point origin{near(rect.origin.x), near(rect.origin.y)};
    if (origin == rect.origin && near(right) == right && near(bottom) == bottom) return rect;
    const Size size{near(right) - origin.x, near(bottom) - origin.y};
    if (size.width <= 0 || size.height <= 0) return std::nullopt;
    return Rect{origin, size};
}

PixelRect Canvas::State::pixelsOfExtent(const Rect& extent) const {
    constexpr int margin = 2;
    const PixelRect touched = touchedPixels(extent);
    return {touched.x0 - margin, touched.y0 - margin, touched.x1 + margin, touched.y1 + margin};
}

PixelRect Canvas::State::touchedPixels(const Rect& rect) const {
    const cairo_matrix_t m = matrix();
    const auto span = [](double start, double first, double second) {
        const double low = start + std::min(first, 0.0) + std::min(second, 0.0);
        const double high = start + std::max(first, 0.0) + std::max(second, 0.0);
        return std::pair{static_cast<int>(std::clamp(std::floor(low + rounding), -farPixels, farPixels)),
                         static_cast<int>(std::clamp(std::ceil(high - rounding), -farPixels, farPixels))};
    };
    const auto& [origin, size] = rect;
    const auto [x0, x1] = span(origin.x * m.xx + origin.y * m.xy + m.x0, size.width * m.xx, size.height * m.xy);
    const auto [y0, y1] = span(origin.x * m.yx + origin.y * m.yy + m.y0, size.width * m.yx, size.height * m.yy);
    return {x0, y0, x1, y1};
}

Canvas::State::Pieces Canvas::State::pieces(const Shape& shape, const Rect& bounds) const {
    const cairo_matrix_t m = matrix();
    const PixelRect box = touchedPixels(outlineBounds(shape, bounds));
    Pieces pieces;
    const auto add = [&](std::vector<PixelRect>& list, const PixelRect& area) {
        const PixelRect clipped = intersection(area, levels.back().clip);
        if (!intersection(clipped, window).empty()) list.push_back(clipped);
    };
    if (m.xy != 0 || m.yx != 0) {
        add(pieces.outlined, box);
        return pieces;
    }
    const Size extent = cornerExtent(shape, bounds);
    if (extent == Size{}) {
        add(pieces.full, box);
        return pieces;
    }
    // A pixel more, for an outline that lies between pixels; where corners meet they are all there is.
    const auto reach = [](double points, double perPoint, int side) {
        return std::min(static_cast<int>(std::ceil(points * std::abs(perPoint))) + 1, (side + 1) / 2);
    };
    const int left = box.x0 + reach(extent.width, m.xx, box.width());
    const int right = std::max(left, box.x1 - reach(extent.width, m.xx, box.width()));
    const int top = box.y0 + reach(extent.height, m.yy, box.height());
    const int bottom = std::max(top, box.y1 - reach(extent.height, m.yy, box.height()));
    add(pieces.full, {left, box.y0, right, top});
    add(pieces.full, {box.x0, top, box.x1, bottom});
    add(pieces.full, {left, bottom, right, box.y1});
    add(pieces.outlined, {box.x0, box.y0, left, top});
    add(pieces.outlined, {right, box.y0, box.x1, top});
    add(pieces.outlined, {box.x0, bottom, left, box.y1});
    add(pieces.outlined, {right, bottom, box.x1, box.y1});
    return pieces;
}

bool Canvas::State::setSource(const Paint& paint) {
    constexpr std::size_t bytesOfStop = 512;
    const std::size_t colors = paint::setSource(cairo.get(), paint, raster);
    if (!raster) countInDocument(colors, colors * bytesOfStop);
    if (isPDF()) countBlends();
    return colors > 0;
}

void Canvas::State::countBlends() {
    constexpr std::size_t comparedInStep = 8;
    cairo_pattern_t* const source = cairo_get_source(cairo.get());
    int stops = 0;
    if (cairo_pattern_get_color_stop_count(source, &stops) != CAIRO_STATUS_SUCCESS) return;  // not a gradient
    std::array<double, 4> last{};
    for (int stop = 0; stop < stops; ++stop) {
        double place = 0;
        auto& [red, green, blue, opacity] = last;
        const std::array<double, 4> before = last;
        cairo_pattern_get_color_stop_rgba(source, stop, &place, &red, &green, &blue, &opacity);
        if (stop > 0) blends.emplace(before, last);
        Meter::ofThisThread().step(blends.size() / comparedInStep);
    }
}

void Canvas::State::keepBackdrops(const Shape& shape, const Rect& bounds, bool antialiased) {
    if (surveys) return;
    const Pieces cut = pieces(shape, bounds);
    if (cut.outlined.empty()) return;
    // Clips within each other often have the same outline.
    const auto around =
        std::find_if(levels.rbegin() + 1, levels.rend(), [](const Level& outer) { return !outer.backdrops.empty(); });
    std::vector<Backdrop>& backdrops = level().backdrops;
    const PixelTarget target(cairo.get(), window);
    for (const PixelRect& area : cut.outlined) {
        if (intersection(area, target.bounds()).empty()) continue;
        const bool hasAlike = around != levels.rend() && backdrops.size() < around->backdrops.size();
        backdrops.emplace_back(target, coverage(area, shape, bounds, antialiased),
                               hasAlike ? &around->backdrops[backdrops.size()] : nullptr);
    }
}

Coverage Canvas::State::coverage(const PixelRect& area, const Shape& shape, const Rect& bounds,
                                 bool antialiased) const {
    const cairo_matrix_t toPixels = matrix();
    return Coverage(area, antialiased, [&](cairo_t* context) {
        cairo_set_matrix(context, &toPixels);
        appendOutline(context, shape, bounds);
        cairo_fill(context);
    });
}

}  // namespace tavrin::paint
