// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/text_painter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include <cairo.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/memory/lru_cache.h"
#include "tavrin/platform/paint/text/embedded_fonts.h"
#include "tavrin/platform/paint/text/emoji_pictures.h"
#include "tavrin/platform/paint/text/glyph_ink.h"
#include "tavrin/platform/paint/text/glyph_masks.h"
#include "tavrin/platform/paint/text/glyph_outlines.h"
#include "tavrin/platform/paint/text/line_raster.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/text/visual_line.h"

namespace tavrin::paint {
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

bool drawsAsMasks(const cairo_matrix_t& matrix, double size) {
    return isOnlyScaled(matrix) && size * matrix.xx <= largestMask;
}

int toPixel(double position) {
    constexpr double farAway = 1e6;
    return static_cast<int>(std::clamp(position, -farAway, farAway));
}

/// The picture with every pixel faded. (As a mask around a scaled picture, Cairo 1.16 writes SVG that shows a part of
/// it.)
EmojiPicture fadedCopy(cairo_surface_t* picture, double opacity) {
    EmojiPicture copy(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(picture),
                                                 cairo_image_surface_get_height(picture)));
    const Handle<cairo_t, cairo_destroy> cairo(cairo_create(copy.get()));
    cairo_set_source_surface(cairo.get(), picture, 0, 0);
    cairo_paint_with_alpha(cairo.get(), opacity);
    return copy;
}

enum class Method : unsigned char { masks, outlines, fonts };

/// What is drawn on, and how.
struct Target {
    cairo_t* cairo;
    Method method;
    cairo_matrix_t matrix;  ///< from points to pixels
    Rect clip;              ///< in points
    PixelRect pixelClip;    ///< for `Method::masks`
    RGBA color;
    DocumentTexts* document = nullptr;

    [[nodiscard]] Point toPixels(Point p) const {
        cairo_matrix_transform_point(&matrix, &p.x, &p.y);
        return p;
    }
    [[nodiscard]] bool isVisible(double left, double right) const {
        return right >= clip.origin.x && left <= clip.origin.x + clip.size.width;
    }
    /// Counts what drawing so many glyphs by Cairo costs, each as large as the text.
    void count(std::size_t glyphs, double size) const {
        constexpr std::uint64_t stepsOfGlyph = 50;
        constexpr std::size_t bytesOfGlyph = 256;  // in a font or as a reference
        constexpr std::size_t bytesOfOutline = 4096;
        Meter& meter = Meter::ofThisThread();
        meter.step(stepsOfGlyph * glyphs);
        if (document) return document->bytes.grow((method == Method::fonts ? bytesOfGlyph : bytesOfOutline) * glyphs);
        const double magnification = std::hypot(matrix.xx, matrix.yx) * std::hypot(matrix.xy, matrix.yy);
        const double area = std::min(size * size, clip.size.width * clip.size.height) * magnification;
        meter.paint(static_cast<std::uint64_t>(std::clamp(area, 0.0, 1e12)) * glyphs);
    }
};

Target targetOf(cairo_t* cairo, double size) {
    Target target{cairo, Method::fonts, {}, {}, {}, {}, nullptr};
    cairo_get_matrix(cairo, &target.matrix);
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_clip_extents(cairo, &left, &top, &right, &bottom);
    target.clip = {{left, top}, {right - left, bottom - top}};
    if (!isPicture(cairo_get_group_target(cairo))) return target;

    target.method = Method::outlines;
    if (!drawsAsMasks(target.matrix, size)) return target;
    target.method = Method::masks;
    const Point from = target.toPixels({left, top});
    const Point to = target.toPixels({right, bottom});
    target.pixelClip = {toPixel(std::floor(from.x + 1e-6)), toPixel(std::floor(from.y + 1e-6)),
                        toPixel(std::ceil(to.x - 1e-6)), toPixel(std::ceil(to.y - 1e-6))};
    return target;
}

}  // namespace

/// What it keeps, and the drawing itself.
class TextPainter::State {
public:
    explicit State(text::FontFaces& faces)
        : outlines_(faces),
          masks_(outlines_),
          raster_(masks_),
          fonts_(faces),
          pictures_(faces),
          ink_(outlines_, pictures_) {}

    void draw(cairo_t* cairo, const text::TextBlock::Lines& lines, Point origin, double width, RGBA color,
              DocumentTexts* document);
    [[nodiscard]] GlyphInk& ink() { return ink_; }

private:
    void drawLine(const Target& target, const text::ShapedText& text, Point pen);
    void drawPiece(const Target& target, double size, const text::Piece& piece, Point pen);
    void drawPictures(const Target& target, double size, const text::Piece& piece, Point pen);
    void drawPicture(const Target& target, double size, text::FontId font, std::uint32_t glyph, Point pen);
    /// The glyph's picture as the font has it, faded; null when it has none.
    EmojiPicture unscaledPicture(const Target& target, text::FontId font, std::uint32_t glyph);
    void fillOutlines(const Target& target, double size, const text::Piece& piece, Point pen);

    GlyphOutlines outlines_;
    GlyphMasks masks_;
    LineRaster raster_;
    EmbeddedFonts fonts_;
    EmojiPictures pictures_;
    GlyphInk ink_;
    std::vector<text::Piece> pieces_;
};

TextPainter::TextPainter(text::TextEngine& engine) : engine_(engine) {}

TextPainter::TextPainter(std::shared_ptr<const text::FontLibrary> library)
    : ownEngine_(std::make_unique<text::TextEngine>(std::move(library))), engine_(*ownEngine_) {}

TextPainter::~TextPainter() = default;

TextPainter& TextPainter::ofThisThread() {
    thread_local TextPainter painter(text::TextEngine::ofThisThread());  // which is made first, and so outlives it
    return painter;
}

std::shared_ptr<TextPainter> TextPainter::ofThisThread(const std::shared_ptr<const text::FontLibrary>& library) {
    // The thread's own, which nobody has to keep.
    if (!library) return {std::shared_ptr<void>(), &ofThisThread()};
    constexpr std::size_t maximumKept = 4;
    using Library = std::shared_ptr<const text::FontLibrary>;
    thread_local LRUCache<Library, std::shared_ptr<TextPainter>> painters(maximumKept);
    if (const auto* const known = painters.find(library)) return *known;
    auto painter = std::make_shared<TextPainter>(library);
    painters.insert(library, painter);
    return painter;
}

TextPainter::State& TextPainter::state() {
    if (!state_) state_ = std::make_unique<State>(engine_.faces());
    return *state_;
}

Rect TextPainter::ink(const text::TextBlock& block, double width) {
    if (!block.lines()) return {};
    return state().ink().ofText(*block.lines(), width).box;
}

bool TextPainter::drawsAnyPart(const text::TextBlock& block, const cairo_matrix_t& matrix) {
    if (!block.lines()) return true;
    if (!drawsAsMasks(matrix, block.lines()->text->size)) return false;
    constexpr double leastOvershoot = overshoot;  // a line is at least as high as its text is large
    return state().ink().ofText(*block.lines(), 0).reach < leastOvershoot;
}

void TextPainter::draw(cairo_t* cairo, const text::TextBlock& block, Point origin, double width, RGBA color,
                       DocumentTexts* document) {
    if (!block.lines()) return;
    state().draw(cairo, *block.lines(), origin, width, color, document);
}

void TextPainter::State::draw(cairo_t* cairo, const text::TextBlock::Lines& lines, Point origin, double width,
                              RGBA color, DocumentTexts* document) {
    const text::ShapedText& text = *lines.text;
    const text::BrokenText& broken = *lines.broken;
    if (text.size == 0 || !std::isfinite(origin.x) || !std::isfinite(origin.y) || !(color.opacity > 0)) return;
    if (cairo_status(cairo) != CAIRO_STATUS_SUCCESS) return;
    cairo_save(cairo);
    Target target = targetOf(cairo, text.size);
    target.color = color;
    target.document = document;
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
        const text::Line& line = broken.lines[i];
        const double x = origin.x + text::leftEdge(text, line, width);
        const double y = origin.y + broken.firstBaseline + static_cast<double>(i) * text.linePitch();
        constexpr std::size_t unitsInStep = 4;
        Meter::ofThisThread().step(1 + (line.unitEnd - line.unitBegin) / unitsInStep);
        text::placePieces(text, line, pieces_);
        drawLine(target, text, {x, y});
    }
    if (isFadedAsAWhole) {
        cairo_pop_group_to_source(cairo);
        cairo_paint_with_alpha(cairo, color.opacity);
    }
    cairo_restore(cairo);
}

void TextPainter::State::drawLine(const Target& target, const text::ShapedText& text, Point pen) {
    if (target.method == Method::masks) raster_.begin(target.pixelClip);
    for (const auto& piece : pieces_)
        if (!piece.emoji) drawPiece(target, text.size, piece, {pen.x + piece.x, pen.y});
    if (target.method == Method::masks) raster_.paint(target.cairo);
    for (const auto& piece : pieces_)
        if (piece.emoji) drawPictures(target, text.size, piece, {pen.x + piece.x, pen.y});
}

void TextPainter::State::drawPiece(const Target& target, double size, const text::Piece& piece, Point pen) {
    switch (target.method) {
        case Method::masks: raster_.add(piece, size * target.matrix.xx, target.matrix.xx, target.toPixels(pen)); break;
        case Method::outlines: fillOutlines(target, size, piece, pen); break;
        case Method::fonts:
            target.count(piece.glyphs.size(), size);
            fonts_.show(target.cairo, size, piece, pen);
            break;
    }
}

void TextPainter::State::fillOutlines(const Target& target, double size, const text::Piece& piece, Point pen) {
    FontOutlines& font = outlines_.ofFont(piece.font);
    const double reach = 4 * size;
    constexpr std::size_t mostOfPath = 1024;
    std::size_t count = 0;
    cairo_new_path(target.cairo);
    for (const auto& glyph : piece.glyphs) {
        const Point at{pen.x + static_cast<double>(glyph.x), pen.y + static_cast<double>(glyph.y)};
        pen.x += static_cast<double>(glyph.advance);
        if (!target.isVisible(at.x - reach, at.x + reach)) continue;
        target.count(1, size);
        // So many are never joined, and one path would take long.
        if (++count % mostOfPath == 0) {
            cairo_fill(target.cairo);
            cairo_new_path(target.cairo);
        }
        addOutline(target.cairo, font, glyph.id, size, at);
    }
    cairo_fill(target.cairo);
}

void TextPainter::State::drawPictures(const Target& target, double size, const text::Piece& piece, Point pen) {
    for (const auto& glyph : piece.glyphs) {
        const Point at{pen.x + static_cast<double>(glyph.x), pen.y + static_cast<double>(glyph.y)};
        pen.x += static_cast<double>(glyph.advance);
        if (target.isVisible(at.x - 2 * size, at.x + 2 * size)) drawPicture(target, size, piece.font, glyph.id, at);
    }
}

EmojiPicture TextPainter::State::unscaledPicture(const Target& target, text::FontId font, std::uint32_t glyph) {
    const double opacity = std::min(1.0, target.color.opacity);
    EmojiPicture* embedded = nullptr;
    if (target.document) {
        embedded = &target.document->emoji[{this, font, glyph, opacity}];
        if (*embedded) return EmojiPicture(cairo_surface_reference(embedded->get()));
    }
    cairo_surface_t* const original = pictures_.original(font, glyph);
    if (original == nullptr) return nullptr;
    if (target.document) countEmbedded(pixelCount(original), target.document->bytes);
    Meter::ofThisThread().paint(pixelCount(original));
    EmojiPicture picture = opacity < 1 ? fadedCopy(original, opacity) : EmojiPicture(cairo_surface_reference(original));
    if (embedded) embedded->reset(cairo_surface_reference(picture.get()));
    return picture;
}

void TextPainter::State::drawPicture(const Target& target, double size, text::FontId font, std::uint32_t glyph,
                                     Point pen) {
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
            target.count(1, size);
            const Point pixel = target.toPixels(corner);
            cairo_set_source_surface(cairo, picture, std::floor(pixel.x + 0.5), std::floor(pixel.y + 0.5));
            cairo_paint_with_alpha(cairo, std::min(1.0, target.color.opacity));
        }
    } else if (const EmojiPicture picture = unscaledPicture(target, font, glyph)) {
        target.count(1, size);
        cairo_translate(cairo, corner.x, corner.y);
        cairo_scale(cairo, box.width * size / cairo_image_surface_get_width(picture.get()),
                    box.height * size / cairo_image_surface_get_height(picture.get()));
        cairo_set_source_surface(cairo, picture.get(), 0, 0);
        cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_GOOD);
        cairo_paint(cairo);
    }
    cairo_restore(cairo);
}

}  // namespace tavrin::paint
