// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/text_painter.h"

#include <algorithm>
#include <cmath>

#include "tavrin/platform/text/font_metrics.h"

namespace tavrin::text {
namespace {

/// Larger glyphs are not worth keeping as masks.
constexpr double largestMask = 256;  // pixels for each em

/// What glyphs may reach beyond their line, in line heights.
constexpr double overshoot = 2;

bool isPicture(cairo_surface_t* surface) {
    if (cairo_surface_get_type(surface) != CAIRO_SURFACE_TYPE_IMAGE) return false;
    double x = 1;
    double y = 1;
    cairo_surface_get_device_scale(surface, &x, &y);
    return x == 1 && y == 1;
}

bool isOnlyScaled(const cairo_matrix_t& m) {
    constexpr double tolerance = 1e-9;
    return m.xx > 0 && std::abs(m.xy) <= tolerance * m.xx && std::abs(m.yx) <= tolerance * m.xx &&
           std::abs(m.yy - m.xx) <= tolerance * m.xx;
}

int toPixel(double position) {
    constexpr double farAway = 1e6;
    return static_cast<int>(std::clamp(position, -farAway, farAway));
}

/// The picture with every pixel faded. (As a mask around a scaled picture, Cairo 1.16 writes SVG that shows a part of
/// it.)
Picture fadedCopy(cairo_surface_t* picture, double opacity) {
    Picture copy(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(picture),
                                            cairo_image_surface_get_height(picture)));
    const Handle<cairo_t, cairo_destroy> cairo(cairo_create(copy.get()));
    cairo_set_source_surface(cairo.get(), picture, 0, 0);
    cairo_paint_with_alpha(cairo.get(), opacity);
    return copy;
}

}  // namespace

struct TextPainter::Target {
    cairo_t* cairo;
    Method method;
    cairo_matrix_t matrix;  ///< from points to pixels
    Rect clip;              ///< in points
    PixelBox pixelClip;     ///< for `Method::masks`
    RGBA color;

    [[nodiscard]] Point toPixels(Point p) const {
        cairo_matrix_transform_point(&matrix, &p.x, &p.y);
        return p;
    }
    [[nodiscard]] bool isVisible(double left, double right) const {
        return right >= clip.origin.x && left <= clip.origin.x + clip.size.width;
    }
};

TextPainter::Target TextPainter::targetOf(cairo_t* cairo, double size) {
    Target target{cairo, Method::fonts, {}, {}, {}, {}};
    cairo_get_matrix(cairo, &target.matrix);
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_clip_extents(cairo, &left, &top, &right, &bottom);
    target.clip = {{left, top}, {right - left, bottom - top}};
    if (!isPicture(cairo_get_group_target(cairo))) return target;

    target.method = Method::outlines;
    if (!isOnlyScaled(target.matrix) || size * target.matrix.xx > largestMask) return target;
    target.method = Method::masks;
    const Point from = target.toPixels({left, top});
    const Point to = target.toPixels({right, bottom});
    target.pixelClip = {toPixel(std::floor(from.x + 1e-6)), toPixel(std::floor(from.y + 1e-6)),
                        toPixel(std::ceil(to.x - 1e-6)), toPixel(std::ceil(to.y - 1e-6))};
    return target;
}

void TextPainter::draw(cairo_t* cairo, const ShapedText& text, const BrokenText& broken, Point origin, double width,
                       RGBA color) {
    if (text.size == 0 || !std::isfinite(origin.x) || !std::isfinite(origin.y) || !(color.opacity > 0)) return;
    if (cairo_status(cairo) != CAIRO_STATUS_SUCCESS) return;
    cairo_save(cairo);
    Target target = targetOf(cairo, text.size);
    target.color = color;
    // Where letters overlap, glyphs of embedded fonts would be darker: fade the text as a whole. (In SVG by outlines,
    // since Cairo 1.16 loses the memory of faded groups there.)
    const bool isFaded = target.method == Method::fonts && color.opacity < 1;
    if (isFaded && cairo_surface_get_type(cairo_get_target(cairo)) == CAIRO_SURFACE_TYPE_SVG)
        target.method = Method::outlines;
    const bool isFadedAsAWhole = isFaded && target.method == Method::fonts;
    if (isFadedAsAWhole) {
        cairo_push_group(cairo);
        target.color.opacity = 1;
    }
    cairo_set_source_rgba(cairo, color.red, color.green, color.blue, target.color.opacity);
    if (target.method == Method::masks) cairo_identity_matrix(cairo);

    // Only the lines that may reach into the clip.
    const auto count = static_cast<double>(broken.lines.size());
    const double first = (target.clip.origin.y - origin.y) / text.linePitch() - overshoot - 1;
    const double last = first + target.clip.size.height / text.linePitch() + 2 * overshoot + 2;
    const auto begin = static_cast<std::size_t>(std::clamp(first, 0.0, count));
    const auto end = static_cast<std::size_t>(std::clamp(std::ceil(last), 0.0, count));
    for (std::size_t i = begin; i < end; ++i) {
        const Line& line = broken.lines[i];
        const bool isTrailing = text.paragraphs[line.paragraph].level % 2 != 0 && std::isfinite(width);
        const double x = origin.x + (isTrailing ? width - line.width : 0);
        const double y = origin.y + broken.firstBaseline + static_cast<double>(i) * text.linePitch();
        placePieces(text, line, pieces_);
        drawLine(target, text, {x, y});
    }
    if (isFadedAsAWhole) {
        cairo_pop_group_to_source(cairo);
        cairo_paint_with_alpha(cairo, color.opacity);
    }
    cairo_restore(cairo);
}

void TextPainter::drawLine(const Target& target, const ShapedText& text, Point pen) {
    if (target.method == Method::masks) raster_.begin(target.pixelClip);
    for (const auto& piece : pieces_)
        if (!piece.emoji) drawPiece(target, text.size, piece, {pen.x + piece.x, pen.y});
    if (target.method == Method::masks) raster_.paint(target.cairo);
    for (const auto& piece : pieces_)
        if (piece.emoji) drawPictures(target, text.size, piece, {pen.x + piece.x, pen.y});
}

void TextPainter::drawPiece(const Target& target, double size, const Piece& piece, Point pen) {
    switch (target.method) {
        case Method::masks: raster_.add(piece, size * target.matrix.xx, target.matrix.xx, target.toPixels(pen)); break;
        case Method::outlines: fillOutlines(target, size, piece, pen); break;
        case Method::fonts: outlineFonts_.show(target.cairo, size, piece, pen); break;
    }
}

void TextPainter::fillOutlines(const Target& target, double size, const Piece& piece, Point pen) {
    FontFace& face = faces_.face(piece.font);
    const double reach = 4 * size;
    cairo_new_path(target.cairo);
    for (const auto& glyph : piece.glyphs) {
        const Point at{pen.x + static_cast<double>(glyph.x), pen.y + static_cast<double>(glyph.y)};
        pen.x += static_cast<double>(glyph.advance);
        if (target.isVisible(at.x - reach, at.x + reach)) addOutline(target.cairo, face, glyph.id, size, at);
    }
    cairo_fill(target.cairo);
}

void TextPainter::drawPictures(const Target& target, double size, const Piece& piece, Point pen) {
    for (const auto& glyph : piece.glyphs) {
        const Point at{pen.x + static_cast<double>(glyph.x), pen.y + static_cast<double>(glyph.y)};
        pen.x += static_cast<double>(glyph.advance);
        if (target.isVisible(at.x - 2 * size, at.x + 2 * size)) drawPicture(target, size, piece.font, glyph.id, at);
    }
}

void TextPainter::drawPicture(const Target& target, double size, FontId font, std::uint32_t glyph, Point pen) {
    const PictureBox box = pictures_.box(font, glyph);
    if (!(box.width > 0) || !(box.height > 0)) return;
    const Point corner{pen.x + box.x * size, pen.y + box.y * size};
    cairo_t* cairo = target.cairo;
    cairo_save(cairo);
    if (target.method == Method::masks) {
        // On whole pixels, so that the picture stays as sharp as it was scaled.
        const double scale = target.matrix.xx * size;
        const int width = std::max(1, static_cast<int>(std::lround(box.width * scale)));
        const int height = std::max(1, static_cast<int>(std::lround(box.height * scale)));
        if (cairo_surface_t* picture = pictures_.scaled(font, glyph, width, height)) {
            const Point pixel = target.toPixels(corner);
            cairo_set_source_surface(cairo, picture, std::floor(pixel.x + 0.5), std::floor(pixel.y + 0.5));
            cairo_paint_with_alpha(cairo, std::min(1.0, target.color.opacity));
        }
    } else if (cairo_surface_t* picture = pictures_.original(font, glyph)) {
        cairo_translate(cairo, corner.x, corner.y);
        cairo_scale(cairo, box.width * size / cairo_image_surface_get_width(picture),
                    box.height * size / cairo_image_surface_get_height(picture));
        const Picture faded = target.color.opacity < 1 ? fadedCopy(picture, target.color.opacity) : nullptr;
        cairo_set_source_surface(cairo, faded ? faded.get() : picture, 0, 0);
        cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_GOOD);
        cairo_paint(cairo);
    }
    cairo_restore(cairo);
}

}  // namespace tavrin::text
