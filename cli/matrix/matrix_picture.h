// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/matrix/matrix.h"
#include "tavrin/platform/foundation/geometry.h"

namespace tavrin::cli {

/// What came of one cell, as index and contact sheet tell it.
struct MatrixPicture {
    Cell cell;
    /// The picture's file, relative to the folder of all; empty when it failed.
    std::string file = {};
    int width = 0;   ///< in pixels
    int height = 0;  ///< in pixels
    std::string sha256 = {};
    std::vector<std::string> warnings = {};
    /// What went wrong, as text; empty when nothing did.
    std::string error = {};
};

/// The index of a matrix: a JSON array with an object for each picture.
[[nodiscard]] std::string indexText(const Matrix& matrix, std::span<const MatrixPicture> pictures);

/// A page that shows all pictures, and the errors of those that failed. It needs nothing but the pictures beside it.
[[nodiscard]] std::string contactSheet(const Matrix& matrix, std::span<const MatrixPicture> pictures);

}  // namespace tavrin::cli
