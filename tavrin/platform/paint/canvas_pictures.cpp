// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "tavrin/platform/foundation/pixels/scaled_bitmaps.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/canvas_state.h"
#include "tavrin/platform/paint/text/emoji_pictures.h"

namespace tavrin::paint {
namespace {

using Picture = std::shared_ptr<const Bitmap>;
using Surface = std::unique_ptr<cairo_surface_t, CairoDeleter>;

/// The longest side that Cairo samples from; it counts parts of pixels in what 16 bits leave of 32.
constexpr int maximumSourceSide = 16'384;

/// The most pixels for each point that a document needs: as many as the sharpest screens have.
constexpr double documentDensity = 3;

/// A surface whose pixels are the bitmap's; it keeps the bitmap.
Surface surfaceOf(Picture picture) {
    const cairo_format_t format = picture->isOpaque() ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32;
    // Cairo only reads a source.
    auto* pixels = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(picture->row(0)));
    Surface surface(cairo_image_surface_create_for_data(pixels, format, picture->width(), picture->height(),
                                                        picture->width() * static_cast<int>(sizeof(std::uint32_t))));
    static const cairo_user_data_key_t owner{};
    auto kept = std::make_unique<Picture>(std::move(picture));
    const auto release = [](void* held) { delete static_cast<Picture*>(held); };
    if (cairo_surface_set_user_data(surface.get(), &owner, kept.get(), release) == CAIRO_STATUS_SUCCESS)
        static_cast<void>(kept.release());
    return surface;
}

/// How many pixels the sides of a rectangle have.
Size extent(const cairo_matrix_t& matrix, Size size) {
    return {std::hypot(matrix.xx, matrix.yx) * size.width, std::hypot(matrix.xy, matrix.yy) * size.height};
}

/// A side of the picture that is drawn: not larger than the picture itself, and no more than Cairo takes.
int sideFor(double pixels, int own) {
    const int most = std::min(own, maximumSourceSide);
    return static_cast<int>(std::clamp(std::floor(pixels + 0.5), 1.0, static_cast<double>(most)));
}

/// Makes `surface`, stretched to `rect`, what is painted next; the user space is the surface's from then on.
void setStretched(cairo_t* cairo, cairo_surface_t* surface, const Rect& rect) {
    cairo_translate(cairo, rect.origin.x, rect.origin.y);
    cairo_scale(cairo, rect.size.width / cairo_image_surface_get_width(surface),
                rect.size.height / cairo_image_surface_get_height(surface));
    cairo_set_source_surface(cairo, surface, 0, 0);
}

/// Lets go of the picture.
void clearSource(cairo_t* cairo) { cairo_set_source_rgb(cairo, 0, 0, 0); }

}  // namespace

void Canvas::draw(const std::shared_ptr<const Bitmap>& picture, const Rect& rect, double opacity) {
    if (hidden() || !(opacity > 0)) return;
    const std::optional<Rect> box = state_->placed(rect);
    if (!box) return;
    state_->setPixels();
    const cairo_matrix_t matrix = state_->matrix();
    if (!state_->raster) {
        // Faded as a layer: Cairo 1.16 writes SVG that shows only a part of a picture that is scaled and faded.
        const bool fades = opacity < 1;
        if (fades) beginLayer();
        state_->embed(picture, *box);
        cairo_set_matrix(state_->cairo.get(), &matrix);
        if (fades) endLayer(opacity);
    } else if (state_->surveys) {
        if (!state_->wholePixels(*box)) state_->needWhole(state_->touchedPixels(*box));
    } else {
        if (const std::optional<PixelRect> frame = state_->wholePixels(*box))
            state_->drawAligned(picture, *frame, opacity);
        else
            state_->drawTurned(picture, *box, opacity);
        cairo_set_matrix(state_->cairo.get(), &matrix);
        clearSource(state_->cairo.get());
    }
}

void Canvas::State::drawAligned(const Picture& picture, const PixelRect& frame, double opacity) {
    const PixelRect area = intersection(frame, visible());
    if (area.empty()) return;
    const cairo_matrix_t m = matrix();
    const bool mirrorsX = m.xx < 0;
    const bool mirrorsY = m.yy < 0;
    const PixelRect part{
        mirrorsX ? frame.x1 - area.x1 : area.x0 - frame.x0, mirrorsY ? frame.y1 - area.y1 : area.y0 - frame.y0,
        mirrorsX ? frame.x1 - area.x0 : area.x1 - frame.x0, mirrorsY ? frame.y1 - area.y0 : area.y1 - frame.y0};
    count(area);
    const Surface source = surfaceOf(ScaledBitmaps::shared().scaled(picture, frame.width(), frame.height(), part));
    cairo_t* context = cairo.get();
    cairo_identity_matrix(context);
    cairo_translate(context, mirrorsX ? area.x1 : area.x0, mirrorsY ? area.y1 : area.y0);
    cairo_scale(context, mirrorsX ? -1 : 1, mirrorsY ? -1 : 1);
    cairo_set_source_surface(context, source.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
    cairo_paint_with_alpha(context, std::min(opacity, 1.0));
}

void Canvas::State::drawTurned(const Picture& picture, const Rect& rect, double opacity) {
    if (intersection(touchedPixels(rect), visible()).empty()) return;
    count(touchedPixels(rect));
    const Size shown = extent(matrix(), rect.size);
    const Surface source = surfaceOf(ScaledBitmaps::shared().scaled(picture, sideFor(shown.width, picture->width()),
                                                                    sideFor(shown.height, picture->height())));
    cairo_t* context = cairo.get();
    cairo_save(context);
    cairo_new_path(context);
    cairo_rectangle(context, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    cairo_clip(context);
    setStretched(context, source.get(), rect);
    // The edges are the clip's: beyond them the outermost pixels go on, so that nothing darkens there.
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_BILINEAR);
    cairo_paint_with_alpha(context, std::min(opacity, 1.0));
    cairo_restore(context);
}

void Canvas::State::embed(const Picture& picture, const Rect& rect) {
    // Halved as often as it can be: pictures that are drawn in about the same size share one.
    const Size shown = extent(matrix(), rect.size);
    int width = picture->width();
    int height = picture->height();
    const auto isTooLarge = [&] {
        const int halfWidth = width / 2;
        const int halfHeight = height / 2;
        const bool halfIsEnough =
            halfWidth >= documentDensity * shown.width && halfHeight >= documentDensity * shown.height;
        return halfIsEnough || std::max(width, height) > maximumSourceSide;
    };
    while (isTooLarge()) {
        width = std::max(1, width / 2);
        height = std::max(1, height / 2);
    }
    count({});
    const Picture reduced = ScaledBitmaps::shared().scaled(picture, width, height);
    Surface& source = embedded[reduced->identity()];
    if (!source) {
        countEmbedded(reduced->byteCount() / sizeof(std::uint32_t), documentBytes);
        source = surfaceOf(reduced);
    }
    setStretched(cairo.get(), source.get(), rect);
    cairo_paint(cairo.get());
    clearSource(cairo.get());
}

}  // namespace tavrin::paint
