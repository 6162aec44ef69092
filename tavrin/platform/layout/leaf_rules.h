// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/layout/proposal.h"
#include "tavrin/platform/ui/views.h"

// What views without content answer; texts aside, which need a text engine.

namespace tavrin::layout {

/// Along which axes a spacer takes room: its nearest stack's, or both when there is none.
enum class SpacerAxes : unsigned char { horizontal, vertical, both };

/// Colours, gradients and most shapes: the proposal, 10 for an absent dimension.
Size fillingAnswer(const Proposal& proposal);
/// Circles: the square of the shorter side.
Size squareAnswer(const Proposal& proposal);
Size shapeAnswer(const Shape& shape, const Proposal& proposal);
/// The proposal; the picture's own size for an absent dimension, 0 where there is no picture.
Size imageAnswer(const Image& image, const Proposal& proposal);
Size spacerAnswer(const Spacer& spacer, SpacerAxes axes, const Proposal& proposal);

}  // namespace tavrin::layout
