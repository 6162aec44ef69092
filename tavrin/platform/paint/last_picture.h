// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/paint/widget_look.h"

namespace tavrin::paint {

class TextPainter;

/// What is kept of the picture that was drawn last, so that the next one costs what differs. The two trees are compared
/// view by view; the areas that may differ are painted again, over and under what overlaps them, and as a fast PNG only
/// the bands of rows with those are compressed again. Of what lies under a view that changes every time and takes all
/// of the picture to be painted, a clock's hand, the pixels are kept. The pixels and bytes are those of a picture drawn
/// from scratch, whatever came before.
///
/// What is not drawn again costs nothing: a picture may pass a budget after another that it would not pass from
/// scratch. A view that is equal to the last one's is not laid out again, and so the bodies of its composed views are
/// not asked.
///
/// Pictures of other sizes, scales, looks and fonts may follow each other; they are drawn from scratch. Where drawing
/// throws, nothing is kept. The painter of texts is kept, too. One thread at a time, and the same one for as long as
/// something is kept.
class LastPicture {
public:
    /// What takes more than `maximumBytes` is not kept.
    explicit LastPicture(std::size_t maximumBytes = std::size_t{256} << 20);
    ~LastPicture();
    LastPicture(LastPicture&&) noexcept;
    LastPicture& operator=(LastPicture&&) noexcept;

    /// A laid-out widget at `scale` pixels a point. The same object as the last picture where all pixels are known to
    /// be the same; who keeps one keeps it from being drawn over, and the next is a copy. Throws what `Canvas::raster`
    /// does.
    [[nodiscard]] std::shared_ptr<const PixelBuffer> pixels(std::shared_ptr<const layout::LayoutTree> tree,
                                                            const WidgetLook& look, double scale,
                                                            const std::shared_ptr<TextPainter>& texts);
    /// The same as a PNG, as `encodePng` writes it.
    [[nodiscard]] std::string png(std::shared_ptr<const layout::LayoutTree> tree, const WidgetLook& look, double scale,
                                  const std::shared_ptr<TextPainter>& texts, PngCompression compression);

    /// The tree that was drawn last, if any. Who keeps it while the next is drawn decides when its memory is given
    /// back.
    [[nodiscard]] std::shared_ptr<const layout::LayoutTree> tree() const;
    /// What drew its texts.
    [[nodiscard]] std::shared_ptr<TextPainter> texts() const;
    /// Gives back what is kept.
    void forget();
    /// The bytes that are kept.
    [[nodiscard]] std::size_t byteCount() const;

    /// How many pixels have been painted, each once for each picture in which it was, and rows looked at for
    /// fast PNGs.
    struct Work {
        std::uint64_t pixels = 0;
        std::uint64_t rows = 0;
    };
    [[nodiscard]] const Work& work() const { return work_; }

private:
    struct Kept;

    void draw(std::shared_ptr<const layout::LayoutTree> tree, const WidgetLook& look, double scale,
              const std::shared_ptr<TextPainter>& texts);
    [[nodiscard]] std::string encode(PngCompression compression);
    void forgetTooMuch();

    std::size_t maximumBytes_;
    std::unique_ptr<Kept> kept_;
    Work work_;
};

}  // namespace tavrin::paint
