// SPDX-License-Identifier: MIT
#include "tavrin/widget/image_renderer.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/layout/layout_printer.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/next_change.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/paint/widget_painter.h"

namespace tavrin {

ImageRenderer::ImageRenderer(AnyView view, RenderOptions options)
    : view_(std::move(view)), options_(std::move(options)), texts_(paint::TextPainter::ofThisThread(options_.fonts)) {
    options_.environment.displayScale = options_.scale;
}

ImageRenderer::ImageRenderer(ImageRenderer&&) noexcept = default;
ImageRenderer& ImageRenderer::operator=(ImageRenderer&&) noexcept = default;
ImageRenderer::~ImageRenderer() = default;

text::TextEngine& ImageRenderer::textEngine() { return texts_->engine(); }

const layout::LayoutTree& ImageRenderer::layoutTree() {
    if (layout_ == nullptr) {
        Cost cost = options_.spent;  // which stays as it is if layout fails
        {
            const Metering metering(options_.budget, cost);
            layout_ = options_.placing([&] {
                return std::make_shared<const layout::LayoutTree>(
                    layout::layOut(view_, options_.size, options_.environment, textEngine(), options_.diagnostics,
                                   options_.recording));
            });
        }
        options_.spent = cost;
    }
    cost_ = options_.spent;
    return *layout_;
}

void ImageRenderer::layOutLike(const LastPicture& last) {
    const std::shared_ptr<const layout::LayoutTree> before = last.tree();
    if (layout_ || !before || before->nodes().empty() || options_.recording != layout::Recording::none) return;
    if (last.texts() != texts_ || before->wasDoubted() || view_.box().loads) return;
    const EnvironmentValues& environment = before->environment();
    const EnvironmentValues& now = options_.environment;
    const bool isSameRoom = before->widget() == options_.size && environment.displayScale == now.displayScale &&
                            environment.appearance == now.appearance && environment.date == now.date &&
                            environment.timeZone == now.timeZone && environment.font == now.font &&
                            environment.lineLimit == now.lineLimit &&
                            environment.foregroundColor == now.foregroundColor && environment.custom.empty() &&
                            now.custom.empty();
    if (isSameRoom && before->nodes().front().view->isLike(view_)) layout_ = before;
}

template <class Work>
auto ImageRenderer::answer(Work work) {
    const layout::LayoutTree& tree = layoutTree();  // where the cost begins
    const Metering metering(options_.budget, cost_);
    // A tree that was taken from the last picture shows the same, but other views, which another document made.
    if (&tree.node(0).view->box() != &view_.box()) return work(tree);
    return options_.placing([&] { return work(tree); });
}

std::string ImageRenderer::layoutText() { return answer(layout::layoutTreeText); }

void ImageRenderer::writeLayout(const TextSink& sink) {
    answer([&](const layout::LayoutTree& tree) { layout::writeLayoutTree(tree, sink); });
}

std::vector<TapTarget> ImageRenderer::targetsIn(const layout::LayoutTree& tree) const {
    std::vector<TapTarget> targets;
    if (options_.widgetURL) targets.push_back({TapTarget::Kind::widget, *options_.widgetURL, {{}, tree.widget()}});
    if (options_.linksCanBeTapped) std::ranges::copy(layout::tapTargets(tree), std::back_inserter(targets));
    return targets;
}

std::vector<TapTarget> ImageRenderer::targets() {
    return answer([this](const layout::LayoutTree& tree) { return targetsIn(tree); });
}

std::string ImageRenderer::targetsText() {
    JSONWriter writer(JSONWriter::Style::pretty);
    writer.beginObject().key("targets").beginArray();
    for (const auto& [kind, destination, frame] : targets()) {
        writer.beginObject().key("kind").value(name(kind)).key("destination").value(destination.string());
        writer.key("frame").beginArray().value(frame.origin.x).value(frame.origin.y);
        writer.value(frame.size.width).value(frame.size.height).endArray().endObject();
    }
    writer.endArray().endObject();
    return std::move(writer).text();
}

Explanation ImageRenderer::explanation(const explain::OriginOf& originOf) {
    return answer([&](const layout::LayoutTree& tree) { return explainLayout(tree, originOf); });
}

std::optional<Date> ImageRenderer::validUntil() {
    const Date next = answer([this](const layout::LayoutTree& tree) { return paint::nextChange(tree, *texts_); });
    return std::isfinite(next.secondsSince1970) ? std::optional(next) : std::nullopt;
}

PixelBuffer ImageRenderer::pixels() { return drawPixels(true); }

std::shared_ptr<const PixelBuffer> ImageRenderer::pixels(LastPicture& last) {
    const auto before = last.tree();  // given back when nothing is counted any more
    layOutLike(last);
    return answer(
        [&](const layout::LayoutTree&) { return last.pixels(layout_, options_.look(), options_.scale, texts_); });
}

PixelBuffer ImageRenderer::pixelsWithoutTexts() { return drawPixels(false); }

PixelBuffer ImageRenderer::drawPixels(bool drawsTexts) {
    return answer([&](const layout::LayoutTree& tree) {
        paint::Canvas canvas = paint::Canvas::raster(options_.size, options_.scale);
        paint::paintWidget(tree, options_.look(), canvas, *texts_, {.drawsTexts = drawsTexts});
        return canvas.finishRaster();
    });
}

std::string ImageRenderer::encode(PictureFormat format) {
    return answer([&](const layout::LayoutTree& tree) {
        paint::Canvas canvas = format == PictureFormat::png   ? paint::Canvas::raster(options_.size, options_.scale)
                               : format == PictureFormat::svg ? paint::Canvas::svg(options_.size)
                                                              : paint::Canvas::pdf(options_.size);
        paint::paintWidget(tree, options_.look(), canvas, *texts_);
        if (format == PictureFormat::png) return paint::encodePng(canvas.finishRaster(), options_.compression);
        for (const TapTarget& target : targetsIn(tree)) canvas.link(target.frame, target.destination);
        return canvas.finishDocument();
    });
}

std::string ImageRenderer::encode(PictureFormat format, LastPicture& last) {
    if (format != PictureFormat::png) return encode(format);
    const auto before = last.tree();
    layOutLike(last);
    return answer([&](const layout::LayoutTree&) {
        return last.png(layout_, options_.look(), options_.scale, texts_, options_.compression);
    });
}

}  // namespace tavrin
