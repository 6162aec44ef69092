// SPDX-License-Identifier: MIT
#include "tavrin/widget/image_renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/layout_printer.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/jpeg_encoder.h"
#include "tavrin/platform/paint/next_change.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/paint/webp_encoder.h"
#include "tavrin/platform/paint/widget_painter.h"

namespace tavrin {
namespace {

bool isMadeOfPixels(PictureFormat format) { return format != PictureFormat::svg && format != PictureFormat::pdf; }

std::optional<int> checkedQuality(std::optional<int> quality) {
    if (quality && (*quality < 1 || *quality > 100))
        throw TavrinError("Render", fmt::format("a picture of quality {}: it must be 1 to 100", *quality));
    return quality;
}

std::string fileOf(const PixelBuffer& pixels, PictureFormat format, const RenderOptions& options) {
    if (format == PictureFormat::png) return paint::encodePng(pixels, options.compression);
    const std::optional<int> quality = checkedQuality(options.quality);
    if (format == PictureFormat::jpeg) return paint::encodeJpeg(pixels, quality.value_or(paint::usualJpegQuality));
    return paint::encodeWebp(pixels, options.compression, quality);
}

}  // namespace

ImageRenderer::ImageRenderer(AnyView view, RenderOptions options)
    : view_(std::move(view)), options_(std::move(options)), texts_(paint::TextPainter::ofThisThread(options_.fonts)) {
    options_.environment.displayScale = options_.scale;
    before_ = options_.spent;
}

ImageRenderer::ImageRenderer(ImageRenderer&&) noexcept = default;
ImageRenderer& ImageRenderer::operator=(ImageRenderer&&) noexcept = default;
ImageRenderer::~ImageRenderer() = default;

text::TextEngine& ImageRenderer::textEngine() { return texts_->engine(); }

const layout::LayoutTree& ImageRenderer::layoutTree() {
    if (layout_ == nullptr) layOut(options_.recording, nullptr);
    cost_ = options_.spent;
    return *layout_;
}

void ImageRenderer::layOut(layout::Recording recording, const layout::LayoutTree* before) {
    Cost cost = options_.spent;  // which stays as it is if layout fails
    layout::Diagnostics notes;
    if (options_.diagnostics) notes = [this](std::string_view note) { say(note); };
    {
        const Metering metering(options_.budget, cost);
        layout_ = options_.placing([&] {
            return std::make_shared<const layout::LayoutTree>(layout::layOut(
                view_, options_.size, options_.environment, textEngine(), notes, recording, nullptr, before));
        });
    }
    options_.spent = cost;
}

void ImageRenderer::say(std::string_view note) {
    const auto known = isDrawnAnew_ ? std::ranges::find(said_, note) : said_.end();
    if (known != said_.end()) {
        said_.erase(known);
        return;
    }
    if (!isDrawnAnew_) said_.emplace_back(note);
    options_.diagnostics(note);
}

void ImageRenderer::layOutAfter(const LastPicture& last) {
    if (layout_ || options_.recording != layout::Recording::none) return;
    const std::shared_ptr<const layout::LayoutTree> before = last.texts() == texts_ ? last.tree() : nullptr;
    const bool isSame = before && !before->nodes().empty() && !before->wasDoubted() && !view_.box().loads &&
                        before->widget() == options_.size && before->environment().isLike(options_.environment) &&
                        before->nodes().front().view->isLike(view_);
    if (isSame)
        layout_ = before;
    else
        layOut(layout::Recording::answers, before.get());
}

template <class Work>
auto ImageRenderer::answer(Work work) {
    const layout::LayoutTree& tree = layoutTree();  // where the cost begins
    const Metering metering(options_.budget, cost_);
    // A tree that was taken from the last picture shows the same, but other views, which another document made.
    if (&tree.node(0).view->box() != &view_.box()) return work(tree);
    return options_.placing([&] { return work(tree); });
}

// 1. What was drawn from scratch last cost so much; what came to it since, so much more. A picture that is drawn from
//    the last one would not cost more than both together, and what this one took, from scratch.
// 2. Where that passes the budget nobody knows whether it would; then, and where the budget ended this, it is drawn
//    from scratch. So the same picture passes the same budgets whatever came before.
template <class Draw, class DrawAnew>
auto ImageRenderer::answerAfter(LastPicture& last, Draw draw, DrawAnew drawAnew) {
    const auto before = last.tree();  // given back when nothing is counted any more
    const auto begin = std::chrono::steady_clock::now();
    try {
        layOutAfter(last);
        auto drawn = answer([&](const layout::LayoutTree&) { return draw(); });
        Cost& most = last.costFromScratch;
        if (!before) most = {};
        most.steps += cost_.steps - before_.steps;
        most.pixels += cost_.pixels - before_.pixels;
        most.peakBytes += cost_.peakBytes - before_.bytes;
        const RenderBudget& budget = options_.budget;
        if (before_.steps + most.steps <= budget.steps && before_.pixels + most.pixels <= budget.pixels &&
            static_cast<std::uint64_t>(before_.bytes + most.peakBytes) <= budget.bytes)
            return drawn;
    } catch (const TavrinError& error) {
        if (error.kind != "Budget") throw;
    }
    last.forget();
    layout_ = nullptr;
    options_.spent = before_;
    options_.spent.seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    isDrawnAnew_ = true;
    return drawAnew();
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
    return answerAfter(
        last, [&] { return last.pixels(layout_, options_.look(), options_.scale, texts_); },
        [&] { return std::make_shared<const PixelBuffer>(drawPixels(true)); });
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
        paint::Canvas canvas = format == PictureFormat::svg   ? paint::Canvas::svg(options_.size)
                               : format == PictureFormat::pdf ? paint::Canvas::pdf(options_.size)
                                                              : paint::Canvas::raster(options_.size, options_.scale);
        paint::paintWidget(tree, options_.look(), canvas, *texts_);
        if (isMadeOfPixels(format)) return fileOf(canvas.finishRaster(), format, options_);
        for (const TapTarget& target : targetsIn(tree)) canvas.link(target.frame, target.destination);
        return canvas.finishDocument();
    });
}

std::string ImageRenderer::encode(PictureFormat format, LastPicture& last) {
    if (!isMadeOfPixels(format)) return encode(format);
    const auto drawn = [&] {
        if (format == PictureFormat::png)
            return last.png(layout_, options_.look(), options_.scale, texts_, options_.compression);
        return fileOf(*last.pixels(layout_, options_.look(), options_.scale, texts_), format, options_);
    };
    return answerAfter(last, drawn, [&] { return encode(format); });
}

}  // namespace tavrin
