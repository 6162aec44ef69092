// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tavrin/platform/explain/explanation.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/layout/tap_targets.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/widget/document.h"
#include "tavrin/widget/image_renderer.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin {

/// A widget in its room, which answers what it looks like and why. It is laid out when the first answer needs that, and
/// once. Not thread-safe; several threads use a widget each.
class Widget {
public:
    /// See `ImageRenderer` for each of these; so do they throw.
    [[nodiscard]] const layout::LayoutTree& layoutTree();
    [[nodiscard]] std::string layoutText();
    void writeLayout(const TextSink& sink);
    [[nodiscard]] std::vector<TapTarget> targets();
    [[nodiscard]] std::string targetsText();
    /// The next moment at which the pixels change; absent where they never do. Exact for timers that are not cut
    /// off; the widget's own moment where a clock's hand turns or a body may read the date; never late.
    [[nodiscard]] std::optional<Date> validUntil();
    [[nodiscard]] PixelBuffer pixels();
    [[nodiscard]] std::shared_ptr<const PixelBuffer> pixels(LastPicture& last);
    [[nodiscard]] PixelBuffer pixelsWithoutTexts();
    [[nodiscard]] std::string encode(PictureFormat format = PictureFormat::png);
    [[nodiscard]] std::string encode(PictureFormat format, LastPicture& last);
    /// The last answer's pixels as a PNG; costs what it would have cost to write them at once.
    [[nodiscard]] std::string png(const PixelBuffer& pixels, PngCompression compression) const;

    /// How large its picture is: in pixels, or in points where it is not made of them.
    [[nodiscard]] Size pictureSize(PictureFormat format) const;

    /// Why each view has its size and place. Only with `WidgetTrace::reasons`; see `explainLayout`.
    [[nodiscard]] Explanation explanation();

    [[nodiscard]] const BoundDocument& document() const { return document_; }
    [[nodiscard]] const WidgetOptions& options() const { return options_; }
    /// What the last answer has cost, all that led to it included.
    [[nodiscard]] const Cost& cost() const { return renderer_.cost(); }
    /// What shapes its texts.
    [[nodiscard]] text::TextEngine& textEngine() { return renderer_.textEngine(); }

private:
    friend class BoundDocument;
    Widget(BoundDocument document, WidgetOptions options);

    BoundDocument document_;
    WidgetOptions options_;
    ImageRenderer renderer_;
};

}  // namespace tavrin
