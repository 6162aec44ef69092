// SPDX-License-Identifier: MIT
#include "tavrin/widget/animation_renderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/paint/widget_painter.h"

namespace tavrin {
namespace {

constexpr double maximumFramesPerSecond = 100;

EnvironmentValues environmentOf(const RenderOptions& options) {
    EnvironmentValues environment = options.environment;
    environment.displayScale = options.scale;
    return environment;
}

void checkPixels(const PixelBuffer& picture, std::size_t count) {
    const std::int64_t pixels = std::int64_t{picture.width()} * picture.height();
    if (pixels * static_cast<std::int64_t>(count) > AnimationRenderer::maximumPixels)
        throw TavrinError("Render",
                          fmt::format("{} frames of {} x {} pixels: all frames may have at most {} pixels", count,
                                      picture.width(), picture.height(), AnimationRenderer::maximumPixels));
}

/// Seconds that each frame is shown.
double delayOf(const FrameSpan& span, const std::optional<double>& framesPerSecond) {
    if (!framesPerSecond) return std::max(span.step, 1 / maximumFramesPerSecond);
    if (!(*framesPerSecond > 0 && *framesPerSecond <= maximumFramesPerSecond))
        throw TavrinError("Render", fmt::format("{} frames a second: there must be more than 0 and at most {}",
                                                *framesPerSecond, maximumFramesPerSecond));
    return 1 / *framesPerSecond;
}

/// When a frame begins, in milliseconds.
std::uint64_t beginOf(std::size_t frame, double delay) {
    constexpr double longest = 1e15;
    return static_cast<std::uint64_t>(std::min(longest, std::round(1000 * delay * static_cast<double>(frame))));
}

}  // namespace

AnimationRenderer::AnimationRenderer(AnyView view, RenderOptions options)
    : options_(std::move(options)),
      ownTexts_(options_.fonts ? std::make_unique<paint::TextPainter>(options_.fonts) : nullptr),
      texts_(ownTexts_ ? *ownTexts_ : paint::TextPainter::ofThisThread()),
      layout_(std::move(view), options_.size, environmentOf(options_), texts_.engine(), options_.diagnostics) {}

AnimationRenderer::~AnimationRenderer() = default;

std::shared_ptr<const PixelBuffer> AnimationRenderer::pixels(Date moment) {
    const bool mayDiffer = layout_.moveTo(moment);
    if (last_ && !mayDiffer) return last_;
    paint::Canvas canvas = paint::Canvas::raster(options_.size, options_.scale);
    const auto before = std::exchange(last_, nullptr);  // no picture is kept if drawing throws
    if (std::exchange(stillLayout_, layout_.layoutCount()) != layout_.layoutCount()) still_ = {};
    paint::paintWidget(layout_.tree(), options_.look(), canvas, texts_, {.still = &still_});
    PixelBuffer picture = canvas.finishRaster();
    ++drawingCount_;
    last_ = before && *before == picture ? before : std::make_shared<const PixelBuffer>(std::move(picture));
    return last_;
}

void AnimationRenderer::draw(const FrameSpan& span,
                             const std::function<void(const std::shared_ptr<const PixelBuffer>&)>& take) {
    const std::size_t count = span.count();
    for (std::size_t frame = 0; frame < count; ++frame) {
        const std::shared_ptr<const PixelBuffer> picture = pixels(span.moment(frame));
        if (frame == 0) checkPixels(*picture, count);
        take(picture);
    }
}

std::string AnimationRenderer::encode(const FrameSpan& span, const AnimationOptions& animation) {
    const double delay = delayOf(span, animation.framesPerSecond);
    paint::AnimationEncoder encoder(animation.format, options_.compression);
    std::size_t frame = 0;
    draw(span, [&](const std::shared_ptr<const PixelBuffer>& picture) {
        encoder.add(picture, beginOf(frame + 1, delay) - beginOf(frame, delay));
        ++frame;
        if (animation.progress) animation.progress(frame);
    });
    return encoder.finish();
}

}  // namespace tavrin
