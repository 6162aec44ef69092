// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <cairo.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/pixel_target.h"
#include "tavrin/platform/paint/svg_names.h"
#include "tavrin/platform/paint/text/emoji_pictures.h"

// What the parts of `Canvas` share; nobody else includes this.

namespace tavrin::paint {

struct CairoDeleter {
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};

/// Whether a rectangle's edges are numbers that can be reckoned with.
[[nodiscard]] bool isFinite(const Rect& rect);

struct Canvas::State {
    /// What `save` keeps beside Cairo's own state.
    struct Level {
        /// A raster's pixels that the clip leaves, window or not; only empty or not on a document.
        PixelRect clip;
        /// So many outlines clip beside that rectangle; Cairo alone knows them.
        std::uint64_t outlinedClips = 0;
        /// Outlines to cut along when the level ends: within it only their bounds clip.
        std::vector<Backdrop> backdrops = {};
        /// The pixels of the layer that the level is.
        HeldBytes layer = {};
    };

    bool raster = false;
    double scale = 1;
    PixelBuffer pixels;
    /// Nothing has been drawn, and the pixels are not even transparent yet: most widgets begin by painting all of them.
    bool isUnset = false;
    HeldBytes pixelBytes;
    /// What Cairo has written of a document. What must not leave through Cairo is thrown by the next call.
    struct Written {
        std::string text;
        std::optional<SVGNames> names = std::nullopt;  ///< of an SVG
        std::exception_ptr failure = nullptr;
    };
    Written document;
    /// What a document takes in memory until it is finished: what is written, and what Cairo keeps to write.
    HeldBytes documentBytes;
    /// The pairs of neighbouring stops, red, green, blue and opacity each, in the gradients of a PDF.
    std::set<std::pair<std::array<double, 4>, std::array<double, 4>>> blends;
    std::string links;  ///< elements to stand at the end of an SVG
    std::unique_ptr<cairo_surface_t, CairoDeleter> surface;
    std::unique_ptr<cairo_t, CairoDeleter> cairo;
    std::vector<Level> levels;
    PixelRect all;     ///< a raster's pixels
    PixelRect window;  ///< those that may be drawn on
    bool surveys = false;
    DocumentTexts texts;  ///< of a document
    /// A document's pictures, by their bitmaps: what is drawn again is not embedded again.
    std::map<std::uint64_t, std::unique_ptr<cairo_surface_t, CairoDeleter>> embedded;

    /// What a shape covers of a raster, within the clip: areas that are all inside, and areas with its outline in them.
    struct Pieces {
        std::vector<PixelRect> full;
        std::vector<PixelRect> outlined;
    };
    [[nodiscard]] bool isSVG() const { return cairo_surface_get_type(surface.get()) == CAIRO_SURFACE_TYPE_SVG; }
    [[nodiscard]] bool isPDF() const { return cairo_surface_get_type(surface.get()) == CAIRO_SURFACE_TYPE_PDF; }
    [[nodiscard]] Level& level() { return levels.back(); }
    /// Where Cairo writes a document to.
    static cairo_status_t append(void* state, const unsigned char* bytes, unsigned int count);
    /// Makes the pixels of a raster transparent if nothing has been drawn; before anything that reads or draws some.
    void setPixels();
    /// Counts what Cairo is to draw on pixels of a raster, under the outlines that clip it, or once more in a document.
    void count(const PixelRect& touched);
    /// Counts what is to stand in a document: steps and bytes.
    void countInDocument(std::uint64_t steps, std::size_t bytes);
    /// What of the clip's pixels may be drawn on.
    [[nodiscard]] PixelRect visible() const { return intersection(levels.back().clip, window); }
    /// Takes note, in a survey, that Cairo will draw something that touches these pixels, and is not to cut it: how
    /// exactly it reckons depends on all edges in a row, and in those above.
    void needWhole(const PixelRect& touched);
    /// The same for a shape in one colour: it is enough to have all of the rows with an outline in them.
    void needRows(const PixelRect& touched, const Pieces& pieces);
    /// The same for a clip along an outline: beside another clip, even a whole one that cuts nothing, Cairo clips a
    /// little otherwise.
    void needAll(const PixelRect& touched);
    /// Makes a survey's window so large that it has an area of which it has a part.
    void widen(const PixelRect& area);
    /// Counts what Cairo compares before it writes the gradient that is its source into a PDF: each pair of
    /// neighbouring stops with all that it has written, until it finds it.
    void countBlends();
    void pushLevel();
    void popLevel();
    /// Clips a raster to whole pixels until the level ends.
    void clip(const PixelRect& area);
    /// Nothing is drawn any more until the level ends.
    void hide();
    void finish();

    /// From points to pixels.
    [[nodiscard]] cairo_matrix_t matrix() const;
    /// So many points reach out of sight under the present transform, and Cairo can still count them.
    [[nodiscard]] double farPoints() const;
    /// The whole pixels nearest to a rectangle, on a raster that is only scaled and moved; far edges are brought near.
    [[nodiscard]] std::optional<PixelRect> wholePixels(const Rect& rect) const;
    /// The points that whole pixels cover.
    [[nodiscard]] Rect points(const PixelRect& pixels) const;
    /// `rect` moved to whole pixels if it can be, and in any case within what Cairo can count; nothing for an empty
    /// rectangle or one with a number that is not finite.
    [[nodiscard]] std::optional<Rect> placed(const Rect& rect) const;
    /// The pixels on which what lies in an extent may be drawn, its edges rounded to whole pixels.
    [[nodiscard]] PixelRect pixelsOfExtent(const Rect& extent) const;
    /// The pixels that `rect` touches.
    [[nodiscard]] PixelRect touchedPixels(const Rect& rect) const;

    /// `bounds` as `placed` returns them.
    [[nodiscard]] Pieces pieces(const Shape& shape, const Rect& bounds) const;
    /// Draws a picture into whole pixels, a rectangle on a raster that is only scaled and moved.
    void drawAligned(const std::shared_ptr<const Bitmap>& picture, const PixelRect& frame, double opacity);
    void drawTurned(const std::shared_ptr<const Bitmap>& picture, const Rect& rect, double opacity);
    void embed(const std::shared_ptr<const Bitmap>& picture, const Rect& rect);

    /// Makes the paint Cairo's source; false when it draws nothing.
    [[nodiscard]] bool setSource(const Paint& paint);
    /// Keeps what a clip's outline on a raster will have to bring back.
    void keepBackdrops(const Shape& shape, const Rect& bounds, bool antialiased);
    [[nodiscard]] Coverage coverage(const PixelRect& area, const Shape& shape, const Rect& bounds,
                                    bool antialiased) const;
};

}  // namespace tavrin::paint
