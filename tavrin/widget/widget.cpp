// SPDX-License-Identifier: MIT
#include "tavrin/widget/widget.h"

#include <utility>

#include "tavrin/dsl/view_origins.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/widget/note_logger.h"

namespace tavrin {

using Hearing = NoteLogger::Hearing;

Widget::Widget(BoundDocument document, WidgetOptions options)
    : document_(std::move(document)),
      options_(std::move(options)),
      renderer_(document_.view_, document_.renderOptions(options_)) {}

const layout::LayoutTree& Widget::layoutTree() {
    const Hearing hearing(options_.notes);
    return renderer_.layoutTree();
}

std::string Widget::layoutText() {
    const Hearing hearing(options_.notes);
    return renderer_.layoutText();
}

void Widget::writeLayout(const TextSink& sink) {
    const Hearing hearing(options_.notes);
    renderer_.writeLayout(sink);
}

std::vector<TapTarget> Widget::targets() {
    const Hearing hearing(options_.notes);
    return renderer_.targets();
}

std::string Widget::targetsText() {
    const Hearing hearing(options_.notes);
    return renderer_.targetsText();
}

std::optional<Date> Widget::validUntil() {
    const Hearing hearing(options_.notes);
    return renderer_.validUntil();
}

PixelBuffer Widget::pixels() {
    const Hearing hearing(options_.notes);
    return renderer_.pixels();
}

std::shared_ptr<const PixelBuffer> Widget::pixels(LastPicture& last) {
    const Hearing hearing(options_.notes);
    return renderer_.pixels(last);
}

PixelBuffer Widget::pixelsWithoutTexts() {
    const Hearing hearing(options_.notes);
    return renderer_.pixelsWithoutTexts();
}

std::string Widget::encode(PictureFormat format) {
    const Hearing hearing(options_.notes);
    return renderer_.encode(format);
}

std::string Widget::encode(PictureFormat format, LastPicture& last) {
    const Hearing hearing(options_.notes);
    return renderer_.encode(format, last);
}

std::string Widget::png(const PixelBuffer& pixels, PngCompression compression) const {
    Cost cost = renderer_.cost();
    const Metering metering(options_.budget, cost);
    return paint::encodePng(pixels, compression);
}

Size Widget::pictureSize(PictureFormat format) const {
    const Size size = options_.room.size;
    if (format == PictureFormat::svg || format == PictureFormat::pdf) return size;
    const auto pixels = [this](double points) {
        return static_cast<double>(paint::Canvas::pixelsOf(points, options_.scale));
    };
    return {pixels(size.width), pixels(size.height)};
}

Explanation Widget::explanation() {
    const Hearing hearing(options_.notes);
    const ViewOrigins* const origins = document_.origins().get();
    return renderer_.explanation([origins](const AnyView& view) { return origins ? origins->find(view) : nullptr; });
}

}  // namespace tavrin
