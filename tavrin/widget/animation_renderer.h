// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/paint/animation/animation_format.h"
#include "tavrin/platform/paint/last_picture.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/ui/any_view.h"
#include "tavrin/widget/frame_span.h"
#include "tavrin/widget/render_options.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin {

using paint::LastPicture;
using paint::PixelBuffer;

/// How an animation is written.
struct AnimationOptions {
    AnimationFormat format = AnimationFormat::webp;
    /// How fast it plays, from just above 0 to 100; absent: as time passes, each frame for the span's step.
    std::optional<double> framesPerSecond = std::nullopt;
    /// Hears after each moment how many have been drawn.
    std::function<void(std::size_t done)> progress = {};
};

/// Draws one view at one moment after another: timers go on, clock hands turn. While nothing changes nothing is done;
/// then only what differs is drawn (see `LastPicture`). Not thread-safe, and to be used by the thread that made it;
/// compressing takes threads of its own.
///
///     tavrin::AnimationRenderer renderer(view, {.size = {158, 158}});
///     std::string webp = renderer.encode({.first = now, .last = {now.secondsSince1970 + 60}}, {});
class AnimationRenderer {
public:
    /// All frames of one animation have at most so many pixels.
    static constexpr std::int64_t maximumPixels = 20'000'000'000;

    /// The moment in `options` counts for nothing. `notes` hears what the view logs while it is laid out, where it
    /// comes from a `BoundDocument`.
    AnimationRenderer(AnyView view, RenderOptions options, NoteSink notes = {});
    ~AnimationRenderer();
    AnimationRenderer(const AnimationRenderer&) = delete;
    AnimationRenderer& operator=(const AnimationRenderer&) = delete;

    /// The picture at a moment, pixel by pixel that of an `ImageRenderer`: the same object as the one before when it
    /// shows the same. Throws `TavrinError` of kind "Render" for a size or scale that makes none, and what
    /// `layout::layOut` does.
    [[nodiscard]] std::shared_ptr<const PixelBuffer> pixels(Date moment);

    /// The last picture as a PNG, compressed as `RenderOptions` say; costs what it would have cost to write it at once.
    [[nodiscard]] std::string png(const PixelBuffer& pixels);

    /// Draws each moment of a span and hands the pictures over in their order. Throws, before it hands over the first,
    /// what `FrameSpan::count` does, and `TavrinError` of kind "Render" for more than `maximumPixels`; passes on what
    /// `take` throws.
    void draw(const FrameSpan& span, const std::function<void(const std::shared_ptr<const PixelBuffer>&)>& take);

    /// Draws a span as an animation, PNGs compressed as `RenderOptions` say and WebPs likewise: with less or more care.
    /// A picture that stays is one longer frame. Throws what `draw` does, and `TavrinError` of kind "Render" for what
    /// the format cannot hold.
    [[nodiscard]] std::string encode(const FrameSpan& span, const AnimationOptions& animation);

    /// How many times the view was laid out, and what was drawn.
    [[nodiscard]] std::size_t layoutCount() const;
    [[nodiscard]] const LastPicture::Work& work() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tavrin
