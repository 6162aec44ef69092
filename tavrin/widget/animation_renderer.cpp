// SPDX-License-Identifier: MIT
#include "tavrin/widget/animation_renderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/timed_layout.h"
#include "tavrin/platform/paint/animation/animation_encoder.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/painter.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/paint/widget_painter.h"
#include "tavrin/widget/note_logger.h"

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

struct AnimationRenderer::State {
    State(AnyView view, RenderOptions drawn, NoteSink heard)
        : options(std::move(drawn)),
          notes(std::move(heard)),
          ownTexts(options.fonts ? std::make_unique<paint::TextPainter>(options.fonts) : nullptr),
          texts(ownTexts ? *ownTexts : paint::TextPainter::ofThisThread()),
          layout(std::move(view), options.size, environmentOf(options), texts.engine(), options.diagnostics) {}

    RenderOptions options;
    NoteSink notes;
    std::unique_ptr<paint::TextPainter> ownTexts;  // only with fonts of the host's own
    paint::TextPainter& texts;
    layout::TimedLayout layout;
    paint::StillPart still = {};  // of the layout with the number `stillLayout`
    std::size_t stillLayout = 0;
    std::shared_ptr<const PixelBuffer> last = nullptr;
    std::size_t drawingCount = 0;
    HeldBytes kept = {};  // those of `last` and `still`
    Cost cost = options.spent;
};

AnimationRenderer::AnimationRenderer(AnyView view, RenderOptions options, NoteSink notes)
    : state_(std::make_unique<State>(std::move(view), std::move(options), std::move(notes))) {}

AnimationRenderer::~AnimationRenderer() = default;

std::size_t AnimationRenderer::layoutCount() const { return state_->layout.layoutCount(); }

std::size_t AnimationRenderer::drawingCount() const { return state_->drawingCount; }

std::shared_ptr<const PixelBuffer> AnimationRenderer::pixels(Date moment) {
    State& s = *state_;
    std::optional<NoteLogger::Hearing> hearing;
    if (s.notes) hearing.emplace(s.notes);
    // Steps and pixels are those of each picture; bytes and seconds go on.
    s.cost.steps = s.options.spent.steps;
    s.cost.pixels = s.options.spent.pixels;
    Metering metering(s.options.budget, s.cost);
    metering.check();
    const bool mayDiffer = s.layout.moveTo(moment);
    if (s.last && !mayDiffer) return s.last;
    paint::Canvas canvas = paint::Canvas::raster(s.options.size, s.options.scale);
    const auto before = std::exchange(s.last, nullptr);  // no picture is kept if drawing throws
    if (std::exchange(s.stillLayout, s.layout.layoutCount()) != s.layout.layoutCount()) s.still = {};
    paint::paintWidget(s.layout.tree(), s.options.look(), canvas, s.texts, {.still = &s.still});
    PixelBuffer picture = canvas.finishRaster();
    ++s.drawingCount;
    s.kept = HeldBytes(picture.byteCount() * (s.still.pixels ? 2 : 1));
    s.last = before && *before == picture ? before : std::make_shared<const PixelBuffer>(std::move(picture));
    return s.last;
}

std::string AnimationRenderer::png(const PixelBuffer& pixels) {
    const Metering metering(state_->options.budget, state_->cost);
    return paint::encodePng(pixels, state_->options.compression);
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
    paint::AnimationEncoder encoder(animation.format, state_->options.compression);
    std::size_t frame = 0;
    draw(span, [&](const std::shared_ptr<const PixelBuffer>& picture) {
        const Metering metering(state_->options.budget, state_->cost);
        encoder.add(picture, beginOf(frame + 1, delay) - beginOf(frame, delay));
        ++frame;
        if (animation.progress) animation.progress(frame);
    });
    const Metering metering(state_->options.budget, state_->cost);
    return encoder.finish();
}

}  // namespace tavrin
