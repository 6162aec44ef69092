// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/animation/animation_encoder.h"

#include <algorithm>
#include <thread>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/foundation/budget/metering_elsewhere.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/foundation/threads/parallel_loop.h"
#include "tavrin/platform/paint/animation/apng_file.h"
#include "tavrin/platform/paint/animation/webp_file.h"
#include "tavrin/platform/paint/webp_encoder.h"

namespace tavrin::paint {
namespace {

/// So many patches for each thread are collected and then compressed at once.
constexpr std::size_t patchesPerThread = 4;
/// Their pixels are collected only so far.
constexpr std::int64_t maximumWaitingPixels = 32'000'000;

std::size_t threadCount() { return std::max(1U, std::thread::hardware_concurrency()); }

std::int64_t pixelCount(const FramePatch& patch) { return std::int64_t{patch.area.width()} * patch.area.height(); }

/// How many times as long as painting a pixel compressing one takes, roughly.
std::uint64_t compressingWeight(AnimationFormat format, PngCompression compression) {
    if (format == AnimationFormat::webp) return webpWeight(compression);
    switch (compression) {
        case PngCompression::fast: return 1;
        case PngCompression::balanced: return 3;
        case PngCompression::small: return 8;
    }
    return 1;
}

}  // namespace

void AnimationEncoder::add(const std::shared_ptr<const PixelBuffer>& picture, std::uint64_t milliseconds) {
    if (!last_ && format_ == AnimationFormat::webp) checkWebpSize(*picture);
    if (picture != last_) addPatch(*picture);
    frames_.back().milliseconds += milliseconds;
    last_ = picture;
}

void AnimationEncoder::addPatch(const PixelBuffer& picture) {
    if (last_ && (picture.width() != last_->width() || picture.height() != last_->height()))
        throw TavrinError("Render", "the frames of an animation must have one size");
    FramePatch patch = last_ ? FramePatch{} : wholePatch(picture);
    if (last_) {
        PixelRect area = changedArea(*last_, picture);
        if (area.empty()) return;
        if (format_ == AnimationFormat::webp) {
            area.x0 -= area.x0 % 2;
            area.y0 -= area.y0 % 2;
        }
        patch = patchOf(*last_, picture, area);
    }
    std::int64_t waiting = pixelCount(patch);
    Meter::ofThisThread().paint(compressingWeight(format_, compression_) * static_cast<std::uint64_t>(waiting));
    for (const FramePatch& other : patches_) waiting += pixelCount(other);
    if (patches_.size() == patchesPerThread * threadCount() || waiting > maximumWaitingPixels) encodePatches();
    frames_.push_back({patch.area, patch.isBlended});
    patches_.push_back(std::move(patch));
}

void AnimationEncoder::encodePatches() {
    const std::size_t first = frames_.size() - patches_.size();
    // What compressing costs was counted with the patches.
    const MeteringElsewhere elsewhere(MeteringElsewhere::Heeds::timeOnly);
    parallelLoop(patches_.size(), threadCount(), [&](std::size_t index) {
        (void)elsewhere.of([&] { frames_[first + index].bytes = encoded(patches_[index]); });
    });
    for (std::size_t i = first; i < frames_.size(); ++i) {
        bytes_ += frames_[i].bytes.size();
        held_.grow(frames_[i].bytes.size());
    }
    patches_.clear();
    if (bytes_ > maximumBytes)
        throw TavrinError("Render", fmt::format("the animation takes more than {} bytes", maximumBytes));
}

std::string AnimationEncoder::encoded(const FramePatch& patch) const {
    return format_ == AnimationFormat::webp ? webpFrame(patch, compression_) : apngFrame(patch, compression_);
}

std::string AnimationEncoder::finish() {
    if (!last_) throw TavrinError("Render", "an animation needs a frame");
    encodePatches();
    const HeldBytes held = std::exchange(held_, {});  // until the file is made
    return format_ == AnimationFormat::webp ? webpFile(last_->width(), last_->height(), frames_)
                                            : apngFile(last_->width(), last_->height(), frames_);
}

}  // namespace tavrin::paint
