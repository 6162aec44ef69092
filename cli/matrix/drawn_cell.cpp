// SPDX-License-Identifier: MIT
#include "cli/matrix/drawn_cell.h"

#include "cli/failure_text.h"
#include "cli/matrix/sha256.h"

namespace tavrin::cli {

void DrawnCell::draw(Widget& widget, const MatrixArguments& arguments) {
    const PixelBuffer pixels = widget.pixels();
    png = widget.png(pixels, arguments.widget.compression);
    picture.width = pixels.width();
    picture.height = pixels.height();
    if (arguments.hashes) picture.sha256 = sha256(png);
}

void DrawnCell::describe() {
    picture.warnings = outcome.notes;
    picture.error = outcome.failure ? failureText(*outcome.failure, false) : "";
    while (picture.error.ends_with('\n')) picture.error.pop_back();
}

}  // namespace tavrin::cli
