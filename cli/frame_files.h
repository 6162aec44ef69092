// SPDX-License-Identifier: MIT
#pragma once

#include "cli/frames.h"
#include "cli/production.h"

namespace tavrin::cli {

/// Draws the frames of a document, as an animation or as pictures, and shows on a terminal how far that is.
void drawFrames(const Frames& frames, const Production& work);

/// Finds out before anything is drawn that numbered frames have no folder. Throws `IOError`.
void checkFrameFolder(const Frames& frames);

/// Writes what `drawFrames` made: all of it, or an `IOError` and nothing.
void writeFrames(const Frames& frames, const Outcome& outcome);

}  // namespace tavrin::cli
