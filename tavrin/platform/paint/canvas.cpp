// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/canvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <fmt/format.h>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/canvas_state.h"
#include "tavrin/platform/paint/document_links.h"

namespace tavrin::paint {
namespace {

/// Transforms beyond these bounds show nothing that could be recognised.
constexpr double maxMagnification = 1e6;
constexpr double minDeterminant = 1e-12;
constexpr double maxTranslation = 4e6;

bool isDrawable(const cairo_matrix_t& m) {
    for (const double coefficient : {m.xx, m.yx, m.xy, m.yy})
        if (!(std::abs(coefficient) <= maxMagnification)) return false;
    return std::abs(m.xx * m.yy - m.xy * m.yx) >= minDeterminant && std::abs(m.x0) <= maxTranslation &&
           std::abs(m.y0) <= maxTranslation;
}

void checkPage(Size size) {
    for (const double side : {size.width, size.height})
        if (!(side > 0 && side <= PixelBuffer::maxSide))
            throw TavrinError{"Render",
                              fmt::format("a page of {} x {} points: each side must be more than 0 and at most {}",
                                          size.width, size.height, PixelBuffer::maxSide)};
}

}  // namespace

cairo_status_t Canvas::State::append(void* state, const unsigned char* bytes, unsigned int count) {
    auto& self = *static_cast<State*>(state);
    auto& [text, names, failure] = self.document;
    try {
        const std::size_t before = text.size();
        const std::string_view piece(reinterpret_cast<const char*>(bytes), count);
        if (names)
            names->append(piece, text);
        else
            text += piece;
        // Texts grow by doubling.
        self.documentBytes.grow(2 * (text.size() - before));
        checkBudget();
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        failure = std::current_exception();
        return CAIRO_STATUS_WRITE_ERROR;
    }
}

Canvas::Canvas(std::unique_ptr<State> state) : state_(std::move(state)) {
    state_->cairo.reset(cairo_create(state_->surface.get()));
    state_->levels.emplace_back();
}
Canvas::Canvas(Canvas&&) noexcept = default;
Canvas& Canvas::operator=(Canvas&&) noexcept = default;
Canvas::~Canvas() = default;

std::int64_t Canvas::pixelsOf(double points, double scale) {
    const double pixels = std::floor(points * scale + 0.5);
    if (!(pixels >= 1)) return 0;
    return static_cast<std::int64_t>(std::min(pixels, 1e9));
}

Canvas Canvas::raster(Size size, double scale) {
    PixelBuffer picture = PixelBuffer::unset(pixelsOf(size.width, scale), pixelsOf(size.height, scale));
    const PixelRect all{0, 0, picture.width(), picture.height()};
    return raster(std::move(picture), scale, all);
}

Canvas Canvas::raster(PixelBuffer picture, double scale, const PixelRect& window) {
    const PixelRect all{0, 0, picture.width(), picture.height()};
    const PixelRect area = intersection(window, all);
    if (area == all) {
        Canvas canvas = onPixels(std::move(picture), scale, all);
        canvas.state_->isUnset = true;
        return canvas;
    }
    for (int y = area.y0; y < area.y1; ++y) std::fill(picture.row(y) + area.x0, picture.row(y) + area.x1, 0);
    return onPixels(std::move(picture), scale, area);
}

Canvas Canvas::over(PixelBuffer picture, double scale) {
    const PixelRect all{0, 0, picture.width(), picture.height()};
    return onPixels(std::move(picture), scale, all);
}

Canvas Canvas::onPixels(PixelBuffer picture, double scale, const PixelRect& window) {
    auto state = std::make_unique<State>();
    state->pixels = std::move(picture);
    state->pixelBytes = HeldBytes(state->pixels.byteCount());
    const int width = state->pixels.width();
    const int height = state->pixels.height();
    Meter::ofThisThread().paint(window.area());
    state->surface.reset(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(state->pixels.row(0)),
                                                             CAIRO_FORMAT_ARGB32, width, height, width * 4));
    const PixelRect all{0, 0, width, height};
    Canvas canvas = onRaster(std::move(state), all, scale, window);
    if (window != all) {
        cairo_t* const cairo = canvas.state_->cairo.get();
        const cairo_matrix_t matrix = canvas.state_->matrix();
        cairo_identity_matrix(cairo);
        cairo_rectangle(cairo, window.x0, window.y0, window.width(), window.height());
        cairo_clip(cairo);
        cairo_set_matrix(cairo, &matrix);
    }
    return canvas;
}

Canvas Canvas::survey(const PixelRect& all, double scale, const PixelRect& window) {
    auto state = std::make_unique<State>();
    state->surveys = true;
    state->surface.reset(cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1));
    return onRaster(std::move(state), all, scale, intersection(window, all));
}

Canvas Canvas::onRaster(std::unique_ptr<State> state, const PixelRect& all, double scale, const PixelRect& window) {
    state->raster = true;
    state->scale = scale;
    state->all = all;
    state->window = window;
    Canvas canvas(std::move(state));
    canvas.state_->level().clip = all;
    canvas.transform({scale, 0, 0, scale, 0, 0});
    return canvas;
}

Canvas Canvas::svg(Size size) {
    checkPage(size);
    auto state = std::make_unique<State>();
    state->document.names.emplace();
    state->surface.reset(cairo_svg_surface_create_for_stream(&State::append, state.get(), size.width, size.height));
    // A browser shows a widget's point as a CSS pixel; what SVG calls a point is a third more.
    cairo_svg_surface_set_document_unit(state->surface.get(), CAIRO_SVG_UNIT_PX);
    Canvas canvas(std::move(state));
    canvas.state_->level().clip = {0, 0, 1, 1};
    return canvas;
}

Canvas Canvas::pdf(Size size) {
    checkPage(size);
    auto state = std::make_unique<State>();
    state->surface.reset(cairo_pdf_surface_create_for_stream(&State::append, state.get(), size.width, size.height));
    // Not the present: the same drawing is the same bytes.
    cairo_pdf_surface_set_metadata(state->surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "1970-01-01T00:00:00Z");
    Canvas canvas(std::move(state));
    canvas.state_->level().clip = {0, 0, 1, 1};
    return canvas;
}

double Canvas::scale() const { return state_->scale; }
bool Canvas::hidden() const { return state_->raster ? state_->visible().empty() : state_->level().clip.empty(); }

void Canvas::save() {
    cairo_save(state_->cairo.get());
    state_->pushLevel();
}

void Canvas::restore() {
    if (state_->levels.size() < 2) preconditionFailure("a canvas restores more often than it saves");
    state_->popLevel();
    cairo_restore(state_->cairo.get());
}

void Canvas::translate(double x, double y) { transform({1, 0, 0, 1, x, y}); }

void Canvas::transform(const AffineTransform& transform) {
    if (hidden()) return;
    const auto& [xx, yx, xy, yy, x0, y0] = transform;
    const cairo_matrix_t inner{xx, yx, xy, yy, x0, y0};
    const cairo_matrix_t outer = state_->matrix();
    cairo_matrix_t product;
    cairo_matrix_multiply(&product, &inner, &outer);
    if (isDrawable(product))
        cairo_set_matrix(state_->cairo.get(), &product);
    else
        state_->hide();
}

void Canvas::link(const Rect& area, const URL& destination) {
    if (state_->raster || !mayLeadTo(destination)) return;
    constexpr std::uint64_t steps = 300;
    constexpr std::size_t bytes = 2048;
    state_->countInDocument(steps, bytes + 4 * destination.string().size());
    if (state_->isSVG()) {
        state_->links += svgLink(area, destination);
        return;
    }
    cairo_t* const cairo = state_->cairo.get();
    cairo_save(cairo);
    cairo_identity_matrix(cairo);
    cairo_tag_begin(cairo, CAIRO_TAG_LINK, pdfLinkAttributes(area, destination).c_str());
    cairo_tag_end(cairo, CAIRO_TAG_LINK);
    cairo_restore(cairo);
}

void Canvas::limit(const Rect& extent) {
    if (!state_->raster || hidden() || !isFinite(extent)) return;
    const PixelRect touched = state_->pixelsOfExtent(extent);
    if (intersection(touched, state_->level().clip) != state_->level().clip) state_->clip(touched);
}

void Canvas::beginLayer() {
    state_->setPixels();
    if (state_->raster) {
        // How exactly Cairo reckons depends on where in memory a pixel lies: a layer must begin where it always does.
        state_->needWhole(state_->level().clip);
        const PixelRect area = state_->visible();
        state_->count(area);
        state_->pushLevel();
        state_->level().layer = HeldBytes(area.area() * sizeof(std::uint32_t));
    } else {
        state_->count(state_->level().clip);
        state_->pushLevel();
    }
    if (state_->surveys)
        cairo_save(state_->cairo.get());
    else
        cairo_push_group(state_->cairo.get());
}

void Canvas::endLayer(double opacity) {
    if (state_->levels.size() < 2) preconditionFailure("a canvas ends more layers than it begins");
    state_->popLevel();
    cairo_t* const cairo = state_->cairo.get();
    if (state_->surveys) return cairo_restore(cairo);
    cairo_pop_group_to_source(cairo);
    state_->count(state_->level().clip);
    if (opacity > 0) cairo_paint_with_alpha(cairo, std::min(opacity, 1.0));
    // Lets go of the layer. (Cairo 1.16 loses 472 bytes for each layer of an SVG, whatever is done here.)
    cairo_set_source_rgb(cairo, 0, 0, 0);
}

void Canvas::inStrips(std::int64_t pixels, const std::function<void()>& draw) {
    const PixelRect visible = state_->visible();
    if (!state_->raster || visible.empty() || pixels >= std::int64_t{visible.width()} * visible.height()) return draw();
    const int height = static_cast<int>(std::max<std::int64_t>(1, pixels / visible.width()));
    for (int top = visible.y0; top < visible.y1; top += height) {
        save();
        state_->clip({visible.x0, top, visible.x1, std::min(top + height, visible.y1)});
        draw();
        restore();
    }
}

bool Canvas::hasWindow() const { return state_->raster && state_->window != state_->all; }

bool Canvas::isOutOfWindow(const Rect& extent) const {
    if (!state_->raster || !isFinite(extent)) return false;
    return intersection(state_->pixelsOfExtent(extent), state_->window).empty();
}

const PixelRect& Canvas::window() const { return state_->window; }

PixelBuffer Canvas::copy() {
    state_->setPixels();
    cairo_surface_flush(state_->surface.get());
    return state_->pixels;
}

PixelBuffer Canvas::finishRaster() {
    state_->setPixels();
    state_->finish();
    return std::move(state_->pixels);
}

std::string Canvas::finishDocument() {
    const bool isSVG = state_->isSVG();
    state_->finish();
    std::string& document = state_->document.text;
    // Cairo writes no links into an SVG.
    const HeldBytes held(isSVG ? document.size() + state_->links.size() : 0);
    if (isSVG) document.insert(document.rfind("</svg>"), state_->links);
    return std::move(document);
}

}  // namespace tavrin::paint
