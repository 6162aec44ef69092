// SPDX-License-Identifier: MIT
#include "cli/matrix/drawn_cell.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <string_view>

#include "cli/failure_text.h"
#include "cli/matrix/sha256.h"

namespace tavrin::cli {

namespace {

/// What the calling thread keeps of the last picture in each of the last few looks: that of the next model mostly
/// differs in little.
LastPicture& lastPictureLike(const Cell& cell) {
    struct Look {
        std::array<std::size_t, 4> numbers;
        LastPicture last;
    };
    constexpr std::size_t mostLooks = 32;
    constexpr std::size_t mostBytes = std::size_t{8} << 20;
    thread_local std::deque<Look> looks;
    const std::array numbers{cell.document, cell.room, cell.scale, cell.appearance};
    const auto known = std::ranges::find(looks, numbers, &Look::numbers);
    if (known != looks.end()) return known->last;
    if (looks.size() == mostLooks) looks.pop_front();
    return looks.emplace_back(Look{numbers, LastPicture(mostBytes)}).last;
}

/// A side of a PNG's picture, as its header has it at a place: big-endian.
int sideAt(std::string_view png, std::size_t place) {
    unsigned side = 0;
    for (const char byte : png.substr(place, 4)) side = side << 8 | static_cast<unsigned char>(byte);
    return static_cast<int>(side);
}

}  // namespace

void DrawnCell::draw(Widget& widget, const MatrixArguments& arguments) {
    png = widget.encode(PictureFormat::png, lastPictureLike(picture.cell));
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
