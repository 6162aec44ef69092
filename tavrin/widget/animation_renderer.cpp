// SPDX-License-Identifier: MIT
#include "tavrin/widget/animation_renderer.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/loaded_bodies.h"
#include "tavrin/platform/paint/animation/animation_encoder.h"
#include "tavrin/platform/paint/next_change.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/widget/note_logger.h"

namespace tavrin {
namespace {

constexpr double maximumFramesPerSecond = 100;

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
    State(AnyView drawn, RenderOptions how, NoteSink heard)
        : view(std::move(drawn)),
          options(std::move(how)),
          notes(std::move(heard)),
          texts(paint::TextPainter::ofThisThread(options.fonts)) {
        options.environment.displayScale = options.scale;
    }

    /// The tree at the present moment. What views wait for is waited for once, and what is doubtful is reported once.
    std::shared_ptr<const layout::LayoutTree> layOut() {
        if (loaded)
            loaded->repeat();
        else
            loaded = layout::LoadedBodies::under(view);
        return std::make_shared<const layout::LayoutTree>(layout::layOut(
            view, options.size, options.environment, texts->engine(), std::exchange(options.diagnostics, {}),
            layout::Recording::answers, &*loaded, last.tree().get()));
    }

    AnyView view;
    RenderOptions options;
    NoteSink notes;
    std::shared_ptr<paint::TextPainter> texts;
    std::optional<layout::LoadedBodies> loaded = std::nullopt;
    paint::LastPicture last;
    std::shared_ptr<const PixelBuffer> picture = nullptr;  // that of all moments from the options' one to `next`
    Date next = {};
    std::size_t layoutCount = 0;
    HeldBytes kept = {};  // those of `picture`
    Cost cost = options.spent;
};

AnimationRenderer::AnimationRenderer(AnyView view, RenderOptions options, NoteSink notes)
    : state_(std::make_unique<State>(std::move(view), std::move(options), std::move(notes))) {}

AnimationRenderer::~AnimationRenderer() = default;

std::size_t AnimationRenderer::layoutCount() const { return state_->layoutCount; }

const LastPicture::Work& AnimationRenderer::work() const { return state_->last.work(); }

std::shared_ptr<const PixelBuffer> AnimationRenderer::pixels(Date moment) {
    State& s = *state_;
    std::optional<NoteLogger::Hearing> hearing;
    if (s.notes) hearing.emplace(s.notes);
    // Steps and pixels are those of each picture; bytes and seconds go on.
    s.cost.steps = s.options.spent.steps;
    s.cost.pixels = s.options.spent.pixels;
    Metering metering(s.options.budget, s.cost);
    metering.check();
    Date& now = s.options.environment.date;
    if (s.picture && now.secondsSince1970 <= moment.secondsSince1970 &&
        moment.secondsSince1970 < s.next.secondsSince1970)
        return s.picture;
    const auto before = std::exchange(s.picture, nullptr);  // no picture is kept if drawing throws
    now = moment;
    std::shared_ptr<const PixelBuffer> picture = s.options.placing([&] {
        const std::shared_ptr<const layout::LayoutTree> tree = s.layOut();
        ++s.layoutCount;
        std::shared_ptr<const PixelBuffer> drawn = s.last.pixels(tree, s.options.look(), s.options.scale, s.texts);
        s.next = paint::nextChange(*tree, *s.texts);
        return drawn;
    });
    s.kept = {};
    s.kept = HeldBytes(picture->byteCount());
    return s.picture = std::move(picture);
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
