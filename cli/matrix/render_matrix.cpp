// SPDX-License-Identifier: MIT
#include <exception>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "cli/failure_text.h"
#include "cli/matrix/cell_renderer.h"
#include "cli/matrix/cell_report.h"
#include "cli/matrix/matrix_picture.h"
#include "cli/matrix/sha256.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/verbs.h"

namespace tavrin::cli {
namespace {

/// A cell's picture before it is written.
struct DrawnCell {
    MatrixPicture picture;
    std::string png;
    CellOutcome outcome;
};

DrawnCell drawnCell(CellRenderer& renderers, const MatrixArguments& arguments, std::size_t index) {
    DrawnCell drawn;
    drawn.picture.cell = cellAt(arguments.matrix, index);
    drawn.outcome = renderers.draw(drawn.picture.cell, [&](Widget& widget) {
        const PixelBuffer pixels = widget.pixels();
        drawn.png = widget.png(pixels, arguments.widget.compression);
        drawn.picture.width = pixels.width();
        drawn.picture.height = pixels.height();
        drawn.picture.sha256 = sha256(drawn.png);
    });
    return drawn;
}

void writePicture(const MatrixArguments& arguments, DrawnCell& drawn, FileTransaction& files) {
    if (drawn.outcome.failure) return;
    drawn.picture.file = nameOf(arguments.matrix, drawn.picture.cell) + ".png";
    const std::filesystem::path path = arguments.folder / drawn.picture.file;
    makeFolder(path.parent_path());
    files.write(path, drawn.png);
}

std::string errorText(const CellOutcome& outcome) {
    std::string text = outcome.failure ? failureText(*outcome.failure, false) : "";
    while (text.ends_with('\n')) text.pop_back();
    return text;
}

}  // namespace

int run(const MatrixArguments& arguments, const Reporter& reporter) {
    const Matrix& matrix = arguments.matrix;
    CellRenderer renderers(arguments, matrix);
    makeFolder(arguments.folder);
    std::vector<MatrixPicture> pictures;
    FileTransaction files;  // an index describes the pictures beside it
    Progress progress(matrix.count());
    CellReport report(reporter, progress);
    inOrder<DrawnCell>(
        matrix.count(), [&](std::size_t index) { return drawnCell(renderers, arguments, index); },
        [&](std::size_t, DrawnCell drawn) {
            writePicture(arguments, drawn, files);
            report.add(matrix, drawn.picture.cell, drawn.outcome);
            drawn.picture.warnings = drawn.outcome.notes;
            drawn.picture.error = errorText(drawn.outcome);
            progress.advance(nameOf(matrix, drawn.picture.cell));
            pictures.push_back(std::move(drawn.picture));
        });
    files.write(arguments.folder / "index.json", indexText(matrix, pictures));
    files.write(arguments.folder / "index.html", contactSheet(matrix, pictures));
    files.commit();
    return report.failed() ? 1 : 0;
}

}  // namespace tavrin::cli
