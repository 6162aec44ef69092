// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/platform/explain/explanation.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/tap_targets.h"
#include "tavrin/platform/paint/last_picture.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/ui/any_view.h"
#include "tavrin/widget/render_options.h"

namespace tavrin::paint {
class TextPainter;
}

namespace tavrin {

using paint::LastPicture;
using paint::PixelBuffer;

/// What a rendered picture is written as.
enum class PictureFormat : unsigned char {
    png,
    svg,
    pdf,
    webp,  ///< without loss, unless there is a quality
    jpeg,  ///< over white
};

/// Lays out one view and draws it, on the thread that makes it: texts are shaped and drawn with what each thread keeps.
/// What costs more than `RenderOptions::budget` throws `TavrinError` of kind "Budget".
///
///     tavrin::ImageRenderer renderer(view, {.size = {338, 158}, .scale = 3});
///     std::string png = renderer.encode(tavrin::PictureFormat::png);
class ImageRenderer {
public:
    ImageRenderer(AnyView view, RenderOptions options);
    ImageRenderer(ImageRenderer&&) noexcept;
    ImageRenderer& operator=(ImageRenderer&&) noexcept;
    ~ImageRenderer();

    /// The laid-out tree, computed on first use and kept. Throws what `layout::layOut` does.
    [[nodiscard]] const layout::LayoutTree& layoutTree();
    /// The laid-out tree as JSON: every view with its frame in points.
    [[nodiscard]] std::string layoutText();
    void writeLayout(const TextSink& sink);
    /// Where the widget can be tapped: the whole widget first, if it leads anywhere, then, where they can be tapped,
    /// the links and marked views in the order in which they are drawn. The last one that contains a point is the one
    /// that is tapped there.
    [[nodiscard]] std::vector<TapTarget> targets();
    /// The same as JSON: `{"targets": [{"kind": …, "destination": …, "frame": [x, y, width, height]}, …]}`.
    [[nodiscard]] std::string targetsText();
    /// Why each view has its size and place. Only with `Recording::placements`; see `explainLayout`.
    [[nodiscard]] Explanation explanation(const explain::OriginOf& originOf = {});
    /// The next moment at which the pixels change; absent where they never do. Exact for timers of which all
    /// that changes is seen, early for those that are cut off. Where a clock's hand turns or a body may read the date,
    /// which may change all the time, it is the widget's own moment. Never late.
    [[nodiscard]] std::optional<Date> validUntil();
    /// Draws the picture. Throws `TavrinError` of kind "Render" for a size or scale that makes none.
    [[nodiscard]] PixelBuffer pixels();
    /// The same, drawn from what differs from the last picture; see `LastPicture`. It passes the budgets that it would
    /// pass from scratch, and no others.
    [[nodiscard]] std::shared_ptr<const PixelBuffer> pixels(LastPicture& last);
    /// The same picture without its texts: what they stand on.
    [[nodiscard]] PixelBuffer pixelsWithoutTexts();
    /// Draws the picture and writes it. SVG and PDF are drawn by the same walk, with text as glyphs, and lead where
    /// `targets` do; not to addresses that a viewer would run (`javascript:`, `vbscript:`, `data:`). A WebP has at most
    /// 16,383 pixels a side; a larger one throws `TavrinError` of kind "Render", and so does a quality that is none.
    [[nodiscard]] std::string encode(PictureFormat format);
    /// The same bytes; what is made of pixels is drawn from what differs from the last picture, and a PNG is also
    /// compressed so. See `LastPicture`.
    [[nodiscard]] std::string encode(PictureFormat format, LastPicture& last);

    /// What the last answer has cost, all that led to it included.
    [[nodiscard]] const Cost& cost() const { return cost_; }
    /// What shapes its texts.
    [[nodiscard]] text::TextEngine& textEngine();

private:
    void layOut(layout::Recording recording, const layout::LayoutTree* before);
    /// Hands on what layout has to say; what is drawn anew does not say it again.
    void say(std::string_view note);
    /// Lays out from the tree that was drawn last; takes that where laying out would only make an equal one, and has
    /// nothing to report.
    void layOutAfter(const LastPicture& last);
    /// Does what an answer takes, on the budget, once the tree is laid out.
    template <class Work>
    auto answer(Work work);
    /// Draws by `draw` from the last picture; but by `drawAnew` where a budget might have ended that.
    template <class Draw, class DrawAnew>
    auto answerAfter(LastPicture& last, Draw draw, DrawAnew drawAnew);
    [[nodiscard]] std::vector<TapTarget> targetsIn(const layout::LayoutTree& tree) const;
    [[nodiscard]] PixelBuffer drawPixels(bool drawsTexts);

    AnyView view_;
    RenderOptions options_;  // which say what has been spent, the layout included
    Cost before_;            // what led to it
    Cost cost_;
    std::shared_ptr<paint::TextPainter> texts_;
    std::shared_ptr<const layout::LayoutTree> layout_;
    std::vector<std::string> said_;
    bool isDrawnAnew_ = false;
};

}  // namespace tavrin
