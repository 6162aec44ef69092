// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tavrin/platform/foundation/affine_transform.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/pixels/bitmap.h"
#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/foundation/pixels/rgba.h"
#include "tavrin/platform/paint/gradient.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin::text {
class TextBlock;
}

namespace tavrin::paint {

class TextPainter;

/// How an outline is stroked. A width that is not positive and finite draws nothing.
struct Pen {
    double width = 1;
    LineCap cap = LineCap::butt;
    LineJoin join = LineJoin::miter;
    double miterLimit = 10;
};

/// One surface to draw on, in points, y downwards: a raster picture, an SVG or a PDF document.
///
/// On a raster, while the transform only scales and moves, the edges of every rectangle and of every shape's bounds are
/// rounded to whole pixels: neighbours neither gap nor overlap at any scale. Numbers that are not finite, empty bounds
/// and collapsed transforms draw nothing; far coordinates are cut off out of sight. One thread at a time.
class Canvas {
public:
    /// A side in whole pixels, or an impossible number of them: 0, or too many.
    [[nodiscard]] static std::int64_t pixelsOf(double points, double scale);
    /// A transparent picture of `size` points at `scale` pixels a point, rounded to whole pixels. Throws `TavrinError`
    /// of kind "Render" when it would have no pixels or more than `PixelBuffer` allows.
    static Canvas raster(Size size, double scale);
    /// The same to go on with a picture that was drawn in that size and scale: what lies in `window` is cleared, and
    /// only there is anything drawn, each pixel as on the whole picture where a survey has found the window.
    static Canvas raster(PixelBuffer picture, double scale, const PixelRect& window);
    /// The same to draw over all of it.
    static Canvas over(PixelBuffer picture, double scale);
    /// Draws nothing, but finds out how large a window has to be. Cairo does not draw quite the same pixels where it
    /// draws only a part: where an outline is cut between columns or among its curves, and anywhere in turned pictures,
    /// gradients and clips, and in layers. What would be cut so makes the window larger, and what was drawn before that
    /// may then be cut: it is found once nothing makes it larger any more. `all` are the pixels of the picture.
    static Canvas survey(const PixelRect& all, double scale, const PixelRect& window);
    /// A document of one page of `size` points. Throws `TavrinError` of kind "Render" unless both sides are positive
    /// and at most `PixelBuffer::maxSide`.
    static Canvas svg(Size size);
    static Canvas pdf(Size size);

    Canvas(Canvas&&) noexcept;
    Canvas& operator=(Canvas&&) noexcept;
    ~Canvas();

    /// Pixels a point before any transform; 1 on a document.
    [[nodiscard]] double scale() const;
    /// Whether nothing drawn now can be seen: the clip is empty or the transform collapsed.
    [[nodiscard]] bool hidden() const;

    /// Keeps the transform and the clip until the matching `restore`.
    void save();
    void restore();
    void translate(double x, double y);
    /// Applies `transform` to what is drawn from now on, before the present transform.
    void transform(const AffineTransform& transform);

    /// Cuts what is drawn from now on until the enclosing `restore` or `endLayer`.
    void clip(const Rect& rect, bool antialiased = true);
    void clip(const Shape& shape, const Rect& bounds, bool antialiased = true);

    void fill(const Rect& rect, const Paint& paint);
    /// Fills the outline that `shape` has in `bounds`.
    void fill(const Shape& shape, const Rect& bounds, const Paint& paint);
    /// Draws the outline with a pen centred on it.
    void stroke(const Shape& shape, const Rect& bounds, const Paint& paint, const Pen& pen);
    /// A frame of `width` points along the inside of `rect`; all of it when there is no room for a hole. On a raster it
    /// is at least one pixel wide.
    void border(const Rect& rect, RGBA color, double width);

    /// Draws a text that the painter's engine has broken, its top leading corner at that of `frame`, which is moved to
    /// whole pixels as `fill` moves it; aligned within the frame's width. What does not fit in the frame is drawn too.
    void draw(const text::TextBlock& text, const Rect& frame, RGBA color, TextPainter& painter);
    /// Draws a picture stretched to `rect` with `opacity` (clamped to 0…1; NaN draws nothing). Where it is to be
    /// smaller than its pixels, they are averaged; a picture that is drawn once more in the same size is not scaled
    /// again. A document embeds it once, with no more pixels than it needs.
    void draw(const std::shared_ptr<const Bitmap>& picture, const Rect& rect, double opacity);
    /// Makes an area of a document lead to an address; a raster has no links, and a document none to what would run
    /// (`javascript:` and its like). `area` is in points of the page, whatever the transform; of areas that overlap the
    /// last lies on top.
    void link(const Rect& area, const URL& destination);

    /// Nothing will be drawn outside of `extent` until the enclosing `restore` or `endLayer`: layers of a raster need
    /// not be larger.
    void limit(const Rect& extent);
    /// What is drawn up to the matching `endLayer` is composed apart, then drawn with `opacity` (clamped to 0…1; NaN
    /// draws nothing). A layer is as large as the clip and `limit` leave it. Saves within a layer are
    /// restored within it.
    void beginLayer();
    void endLayer(double opacity);

    /// Calls `draw` for one strip of what is visible after another, from top to bottom; each is as high as it may be
    /// with `pixels` in it, at least one row, and `draw` is clipped to it. Once where all of it fits, and on a
    /// document.
    void inStrips(std::int64_t pixels, const std::function<void()>& draw);

    /// Whether only a part of a raster is drawn on.
    [[nodiscard]] bool hasWindow() const;
    /// Whether nothing within an extent is seen, whatever is drawn there: it lies outside of the window.
    [[nodiscard]] bool isOutOfWindow(const Rect& extent) const;
    /// The part of a raster that is drawn on; of a survey, what it has grown to.
    [[nodiscard]] const PixelRect& window() const;

    /// A copy of the picture as it is now. Only on a raster.
    [[nodiscard]] PixelBuffer copy();
    /// Ends drawing and hands over the picture; the canvas must not be used again. Throws `TavrinError` of kind
    /// "Render" with Cairo's message when anything failed. Only on a raster.
    [[nodiscard]] PixelBuffer finishRaster();
    /// The same for a document's bytes. Only on an SVG or PDF.
    [[nodiscard]] std::string finishDocument();

private:
    struct State;
    explicit Canvas(std::unique_ptr<State> state);
    static Canvas onPixels(PixelBuffer picture, double scale, const PixelRect& window);
    static Canvas onRaster(std::unique_ptr<State> state, const PixelRect& all, double scale, const PixelRect& window);

    std::unique_ptr<State> state_;
};

}  // namespace tavrin::paint
