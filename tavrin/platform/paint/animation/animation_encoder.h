// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/paint/animation/animation_format.h"
#include "tavrin/platform/paint/animation/encoded_frame.h"
#include "tavrin/platform/paint/animation/frame_patch.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/paint/png_encoder.h"

namespace tavrin::paint {

/// Writes frames of one size as one file. Of each only what changed since the one before is kept; a frame that is the
/// same prolongs it. Frames are compressed by several threads, a few at once; the file's bytes don't depend on them.
/// One thread at a time.
class AnimationEncoder {
public:
    /// A file is at most so large, in bytes.
    static constexpr std::uint64_t maximumBytes = 0x7FFFFFFF;

    AnimationEncoder(AnimationFormat format, PngCompression compression) : format_(format), compression_(compression) {}

    /// Adds a frame. Throws `TavrinError` of kind "Render" for a picture that the format cannot hold, one of another
    /// size, and a file that grows too large.
    void add(const std::shared_ptr<const PixelBuffer>& picture, std::uint64_t milliseconds);
    /// The file of all frames; there must be one. Nothing may be added afterwards. Throws as `add` does.
    [[nodiscard]] std::string finish();

    /// How many frames the file has so far.
    [[nodiscard]] std::size_t frameCount() const { return frames_.size(); }

private:
    void addPatch(const PixelBuffer& picture);
    void encodePatches();
    [[nodiscard]] std::string encoded(const FramePatch& patch) const;

    AnimationFormat format_;
    PngCompression compression_;
    std::shared_ptr<const PixelBuffer> last_;
    std::vector<EncodedFrame> frames_;  // the last of them not yet compressed: those of `patches_`
    std::vector<FramePatch> patches_;
    std::uint64_t bytes_ = 0;
    HeldBytes held_;  // those of the frames
};

}  // namespace tavrin::paint
