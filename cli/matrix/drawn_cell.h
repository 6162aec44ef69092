// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/arguments.h"
#include "cli/matrix/cell_renderer.h"
#include "cli/matrix/matrix_picture.h"

namespace tavrin::cli {

/// A cell's picture before it is written.
struct DrawnCell {
    MatrixPicture picture;
    std::string png = {};
    CellOutcome outcome = {};

    /// Draws the picture; with its digest where the index is to have it.
    void draw(Widget& widget, const MatrixArguments& arguments);
    /// Says what the index tells of a cell that is drawn and written.
    void describe();
};

}  // namespace tavrin::cli
