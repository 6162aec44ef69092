// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/canvas_state.h"
#include "tavrin/platform/paint/color_source.h"
#include "tavrin/platform/paint/shape_path.h"
#include "tavrin/platform/paint/text/text_painter.h"

namespace tavrin::paint {
namespace {

void appendRect(cairo_t* cairo, const Rect& rect) {
    cairo_rectangle(cairo, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

Rect inset(const Rect& rect, double by) {
    return {{rect.origin.x + by, rect.origin.y + by}, {rect.size.width - 2 * by, rect.size.height - 2 * by}};
}

cairo_line_cap_t cairoCap(LineCap cap) { return cap == LineCap::round ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT; }

void setPen(cairo_t* cairo, const Pen& pen, double width) {
    cairo_set_line_width(cairo, width);
    cairo_set_line_cap(cairo, cairoCap(pen.cap));
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_MITER);
    cairo_set_miter_limit(cairo, std::isnan(pen.miterLimit) ? 10 : std::clamp(pen.miterLimit, 1.0, 1e3));
}

}  // namespace

void Canvas::clip(const Rect& rect, bool antialiased) { clip(Rectangle{}, rect, antialiased); }

void Canvas::clip(const Shape& shape, const Rect& bounds, bool antialiased) {
    if (hidden()) return;
    const std::optional<Rect> box = state_->placed(bounds);
    if (!box) return state_->hide();
    state_->setPixels();

    cairo_t* const cairo = state_->cairo.get();
    State::Level& level = state_->level();
    const PixelRect touched = state_->touchedPixels(outlineBounds(shape, *box));
    // Cairo takes time with the square of the outlines that clip within each other.
    constexpr std::uint64_t mostOutlinedClips = 8;
    if (state_->wholePixels(*box) || (state_->raster && level.outlinedClips == mostOutlinedClips)) {
        // Only the bounds clip; what is drawn past the outline within them is taken back in the end.
        state_->keepBackdrops(shape, *box, antialiased);
        state_->clip(touched);
    } else {
        state_->needAll(touched);
        if (state_->surveys) return;
        cairo_new_path(cairo);
        cairo_set_antialias(cairo, antialiased ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
        appendOutline(cairo, shape, *box);
        cairo_clip(cairo);
        cairo_set_antialias(cairo, CAIRO_ANTIALIAS_DEFAULT);
        ++level.outlinedClips;
        if (state_->raster) level.clip = intersection(level.clip, touched);
    }
}

void Canvas::fill(const Rect& rect, const Paint& paint) { fill(Rectangle{}, rect, paint); }

void Canvas::fill(const Shape& shape, const Rect& bounds, const Paint& paint) {
    if (hidden()) return;
    const std::optional<Rect> box = state_->placed(bounds);
    if (!box) return;
    cairo_t* const cairo = state_->cairo.get();
    // Cairo is quick with outlines in one colour; rectangles and gradients are quicker done by ourselves.
    const bool direct = state_->raster && state_->level().outlinedClips == 0;
    const bool gradient = std::holds_alternative<Gradient>(paint);
    const State::Pieces pieces = direct ? state_->pieces(shape, *box) : State::Pieces{};
    if (state_->surveys) {
        const PixelRect touched = state_->touchedPixels(*box);
        if (!direct) return state_->needWhole(touched);
        if (!gradient) state_->needRows(touched, pieces);
        return;
    }
    if (direct && (gradient || pieces.outlined.empty())) {
        const std::optional<PixelSource> source = PixelSource::make(paint, state_->matrix());
        if (!source) return;
        const PixelRect all{0, 0, state_->pixels.width(), state_->pixels.height()};
        if (source->isOpaque() && !pieces.full.empty() && pieces.full.front() == all) state_->isUnset = false;
        state_->setPixels();
        const PixelTarget target(cairo, state_->window);
        for (const PixelRect& area : pieces.full) target.fill(area, *source);
        for (const PixelRect& area : pieces.outlined) target.fill(state_->coverage(area, shape, *box, true), *source);
    } else {
        state_->setPixels();
        const PixelRect touched = state_->touchedPixels(*box);
        state_->count(touched);
        if (!state_->setSource(paint)) return;
        cairo_new_path(cairo);
        appendOutline(cairo, shape, *box);
        cairo_fill(cairo);
    }
}

void Canvas::stroke(const Shape& shape, const Rect& bounds, const Paint& paint, const Pen& pen) {
    if (hidden() || !(pen.width > 0) || !std::isfinite(pen.width)) return;
    const std::optional<Rect> box = state_->placed(bounds);
    if (!box) return;
    state_->setPixels();
    cairo_t* const cairo = state_->cairo.get();
    const double width = std::min(pen.width, state_->farPoints());
    const Rect outline = outlineBounds(shape, *box);
    const Rect outside = inset(outline, -width / 2);
    // Cairo leaves holes in strokes that meet in the middle: those are all that their outer edge surrounds, and a part
    // of one reaches from there to the middle.
    const bool meets = width >= std::min(outline.size.width, outline.size.height);
    const auto draw = [&](cairo_t* context) {
        if (meets && std::holds_alternative<TrimmedShape>(shape)) {
            const double reach = std::min(outside.size.width, outside.size.height) / 2;
            setPen(context, pen, reach);
            appendOutline(context, shape, inset(outside, reach / 2));
            cairo_stroke(context);
        } else if (meets) {
            appendOutline(context, grown(shape, *box, width / 2), outside);
            cairo_fill(context);
        } else {
            setPen(context, pen, width);
            appendOutline(context, shape, *box);
            cairo_stroke(context);
        }
    };
    const PixelRect touched = state_->touchedPixels(outside);
    const bool gradient = std::holds_alternative<Gradient>(paint);
    const bool direct = state_->raster && state_->level().outlinedClips == 0 && gradient;
    if (!direct) state_->needWhole(touched);
    if (state_->surveys) return;
    state_->count(touched);
    if (direct) {
        const cairo_matrix_t matrix = state_->matrix();
        const PixelRect area = intersection(touched, state_->level().clip);
        const std::optional<PixelSource> source = PixelSource::make(paint, matrix);
        if (!source || area.empty()) return;
        const Coverage coverage(area, true, [&](cairo_t* context) {
            cairo_set_matrix(context, &matrix);
            draw(context);
        });
        PixelTarget(cairo, state_->window).fill(coverage, *source);
    } else if (gradient && state_->isPDF()) {
        // Some viewers leave out what of a gradient's stroke lies past the bounds of the outline; a mask they draw.
        cairo_push_group_with_content(cairo, CAIRO_CONTENT_ALPHA);
        draw(cairo);
        const std::unique_ptr<cairo_pattern_t, CairoDeleter> mask(cairo_pop_group(cairo));
        if (state_->setSource(paint)) cairo_mask(cairo, mask.get());
    } else if (state_->setSource(paint)) {
        cairo_new_path(cairo);
        draw(cairo);
    }
}

void Canvas::border(const Rect& rect, RGBA color, double width) {
    if (hidden() || !(width > 0)) return;
    const std::optional<Rect> outer = state_->placed(rect);
    if (!outer) return;
    state_->setPixels();
    if (2 * width >= std::min(outer->size.width, outer->size.height)) return fill(*outer, color);

    Rect inner = inset(*outer, width);
    if (const std::optional<PixelRect> frame = state_->wholePixels(*outer)) {
        const cairo_matrix_t matrix = state_->matrix();
        const auto thickness = [&](double scale) {
            return std::max(1, static_cast<int>(std::lround(width * std::abs(scale))));
        };
        const int x = thickness(matrix.xx);
        const int y = thickness(matrix.yy);
        const PixelRect hole{frame->x0 + x, frame->y0 + y, frame->x1 - x, frame->y1 - y};
        if (hole.empty()) return fill(*outer, color);
        inner = state_->points(hole);
        const double right = outer->origin.x + outer->size.width;
        const double bottom = outer->origin.y + outer->size.height;
        const double innerRight = inner.origin.x + inner.size.width;
        const double innerBottom = inner.origin.y + inner.size.height;
        fill(Rect{outer->origin, {outer->size.width, inner.origin.y - outer->origin.y}}, color);
        fill(Rect{{outer->origin.x, innerBottom}, {outer->size.width, bottom - innerBottom}}, color);
        fill(Rect{{outer->origin.x, inner.origin.y}, {inner.origin.x - outer->origin.x, inner.size.height}}, color);
        fill(Rect{{innerRight, inner.origin.y}, {right - innerRight, inner.size.height}}, color);
    } else if (state_->surveys) {
        state_->needWhole(state_->touchedPixels(*outer));
    } else if (state_->setSource(color)) {
        cairo_t* const cairo = state_->cairo.get();
        state_->count(state_->touchedPixels(*outer));
        cairo_new_path(cairo);
        appendRect(cairo, *outer);
        appendRect(cairo, inner);
        cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_EVEN_ODD);
        cairo_fill(cairo);
        cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_WINDING);
    }
}

void Canvas::draw(const text::TextBlock& text, const Rect& frame, RGBA color, TextPainter& painter) {
    if (hidden() || !isFinite(frame)) return;
    state_->setPixels();
    const std::optional<PixelRect> area = state_->wholePixels(frame);
    const Point corner = area ? state_->points(*area).origin : frame.origin;
    if (state_->surveys) {
        if (painter.drawsAnyPart(text, state_->matrix())) return;
        // With its lines, which are looked for by where they stand.
        const Rect lines{corner, {frame.size.width, text.size().height}};
        const auto& [origin, size] = painter.ink(text, frame.size.width);
        const Rect inked{{corner.x + origin.x, corner.y + origin.y}, size};
        for (const Rect& part : {lines, inked})
            state_->needWhole(isFinite(part) ? state_->pixelsOfExtent(part) : state_->all);
        return;
    }
    if (!state_->raster) state_->count({});
    painter.draw(state_->cairo.get(), text, corner, frame.size.width, color, state_->raster ? nullptr : &state_->texts);
}

}  // namespace tavrin::paint
