// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/pixels/rgba.h"
#include "tavrin/platform/text/text_engine.h"

typedef struct _cairo cairo_t;
typedef struct _cairo_matrix cairo_matrix_t;

namespace tavrin::paint {

struct DocumentTexts;

/// Draws the texts of one engine on Cairo: on pictures from its own glyph masks, which stand on quarters of pixels;
/// turned, stretched and very large texts as outlines; in documents as glyphs of embedded fonts. It keeps masks and
/// emoji from picture to picture. Not thread-safe, as the engine.
class TextPainter {
public:
    /// The engine must outlive it.
    explicit TextPainter(text::TextEngine& engine);
    /// With an engine of its own over a library.
    explicit TextPainter(std::shared_ptr<const text::FontLibrary> library);
    ~TextPainter();
    TextPainter(const TextPainter&) = delete;
    TextPainter& operator=(const TextPainter&) = delete;

    /// The calling thread's, over the thread's engine, made on first use.
    static TextPainter& ofThisThread();

    /// The calling thread's over a library; null is the system library. The last four are kept, with the fonts that
    /// they have open.
    static std::shared_ptr<TextPainter> ofThisThread(const std::shared_ptr<const text::FontLibrary>& library);

    [[nodiscard]] text::TextEngine& engine() const { return engine_; }

    /// Draws a block with its top leading corner at `origin`, aligned within `width` points (leading in left-to-right,
    /// trailing in right-to-left paragraphs). `cairo`'s user space is points.
    /// `document` is that which is drawn on; none is a raster.
    void draw(cairo_t* cairo, const text::TextBlock& block, Point origin, double width, RGBA color,
              DocumentTexts* document = nullptr);

    /// What a block drawn at a point covers, however little, in points from there; empty where it draws nothing.
    [[nodiscard]] Rect ink(const text::TextBlock& block, double width);
    /// Whether on a raster under such a matrix any part of a block is drawn as in the whole: pixel by pixel, as masks,
    /// and not by Cairo, and by glyphs that are not looked for too near to where they stand.
    [[nodiscard]] bool drawsAnyPart(const text::TextBlock& block, const cairo_matrix_t& matrix);

private:
    class State;

    [[nodiscard]] State& state();

    std::unique_ptr<text::TextEngine> ownEngine_;
    text::TextEngine& engine_;
    std::unique_ptr<State> state_;  // made when something is drawn
};

}  // namespace tavrin::paint
