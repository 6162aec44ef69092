// SPDX-License-Identifier: MIT
#include "cli/matrix/drawn_cell.h"

#include <cstddef>
#include <string_view>

#include "cli/failure_text.h"
#include "cli/matrix/sha256.h"
#include "cli/missing_pictures.h"
#include "tavrin/widget/kept_pictures.h"

namespace tavrin::cli {
namespace {

/// A side of a PNG's picture, as its header has it at a place: big-endian.
int sideAt(std::string_view png, std::size_t place) {
    unsigned side = 0;
    for (const char byte : png.substr(place, 4)) side = side << 8 | static_cast<unsigned char>(byte);
    return static_cast<int>(side);
}

}  // namespace

void DrawnCell::draw(Widget& widget, const MatrixArguments& arguments) {
    const std::string& document = arguments.matrix.documents[picture.cell.document].path;
    if (arguments.failsOnMissing) refuseMissingPictures(widget);
    KeptPictures& kept = KeptPictures::ofThisThread();
    png = widget.encode(PictureFormat::png, kept.before(document, widget.options()));
    kept.trim();
    picture.width = sideAt(png, 16);
    picture.height = sideAt(png, 20);
    if (arguments.hashes) picture.sha256 = sha256(png);
}

void DrawnCell::describe() {
    picture.warnings = outcome.notes;
    picture.error = outcome.failure ? failureText(*outcome.failure, false) : "";
    while (picture.error.ends_with('\n')) picture.error.pop_back();
}

}  // namespace tavrin::cli
