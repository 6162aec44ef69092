// SPDX-License-Identifier: MIT
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "cli/matrix/cell_report.h"
#include "cli/matrix/drawn_cell.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/verbs.h"

namespace tavrin::cli {
namespace {

DrawnCell drawnCell(CellRenderer& renderers, const MatrixArguments& arguments, std::size_t index) {
    const Matrix& matrix = arguments.matrix;
    DrawnCell drawn{{matrix.cells[index]}};
    drawn.picture.model = matrix.models[drawn.picture.cell.model].path.value_or("");
    drawn.outcome = renderers.draw(drawn.picture.cell, [&](Widget& widget) { drawn.draw(widget, arguments); });
    return drawn;
}

void writePicture(const MatrixArguments& arguments, DrawnCell& drawn, FileTransaction& files) {
    if (drawn.outcome.failure) return;
    drawn.picture.file = nameOf(arguments.matrix, drawn.picture.cell) + ".png";
    const std::filesystem::path path = arguments.folder / drawn.picture.file;
    makeFolder(path.parent_path());
    files.write(path, drawn.png);
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
            drawn.describe();
            progress.advance(nameOf(matrix, drawn.picture.cell));
            pictures.push_back(std::move(drawn.picture));
        });
    files.write(arguments.folder / "index.json", indexText(matrix, pictures));
    files.write(arguments.folder / "index.html", contactSheet(matrix, pictures));
    files.commit();
    return report.failed() ? 1 : 0;
}

}  // namespace tavrin::cli
