// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// What an animation is written as; both without loss and played without end.
enum class AnimationFormat : unsigned char {
    png,   ///< an animated PNG; viewers that know no animation show its first frame
    webp,  ///< an animated WebP: smaller, and slower to write
};

}  // namespace tavrin
