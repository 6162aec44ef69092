// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/matrix/matrix.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {

/// What came of one cell, as index and contact sheet tell it.
struct MatrixPicture {
    Cell cell;
    /// The picture's file, relative to the folder of all; empty when it failed.
    std::string file = {};
    std::string model = {};   ///< which model document; empty where there is none
    int width = 0;            ///< in pixels
    int height = 0;           ///< in pixels
    std::string sha256 = {};  ///< empty unless it is asked for
    std::vector<std::string> warnings = {};
    /// What went wrong, as text; empty when nothing did.
    std::string error = {};
};

/// Writes the index of a matrix, a JSON array with an object for each picture, as these come.
class IndexWriter {
public:
    /// Keeps a reference to the matrix.
    IndexWriter(const Matrix& matrix, TextSink sink);
    void add(const MatrixPicture& picture);
    void finish();

private:
    const Matrix& matrix_;
    TextSink sink_;
    JSONWriter writer_;
};

/// The whole index.
[[nodiscard]] std::string indexText(const Matrix& matrix, std::span<const MatrixPicture> pictures);

/// A page that shows all pictures, and the errors of those that failed. It needs nothing but the pictures beside it.
[[nodiscard]] std::string contactSheet(const Matrix& matrix, std::span<const MatrixPicture> pictures);

}  // namespace tavrin::cli
