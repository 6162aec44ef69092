// SPDX-License-Identifier: MIT
#include <cstdint>
#include <utility>

#include "cli/matrix/matrix_picture.h"
#include "cli/options.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {
namespace {

void writeText(JSONWriter& writer, std::string_view key, const std::string& text) {
    writer.key(key);
    if (text.empty())
        writer.value(nullptr);
    else
        writer.value(text);
}

void write(JSONWriter& writer, const Matrix& matrix, const MatrixPicture& picture) {
    const Cell& cell = picture.cell;
    const WidgetRoom& room = matrix.rooms[cell.room];
    writer.beginObject();
    writeText(writer, "file", picture.file);
    writer.key("document").value(matrix.documents[cell.document].path);
    writeText(writer, "model", matrix.models[cell.model].path.value_or(""));
    writer.key("family").value(room.name);
    writer.key("appearance").value(name(matrix.appearances[cell.appearance]));
    writer.key("scale").value(matrix.scales[cell.scale]);
    writeText(writer, "date", matrix.moments[cell.moment].text);
    writer.key("size").beginArray().value(room.size.width).value(room.size.height).endArray();
    writer.key("pixels");
    if (picture.file.empty())
        writer.value(nullptr);
    else
        writer.beginArray().value(picture.width).value(picture.height).endArray();
    writeText(writer, "sha256", picture.sha256);
    writer.key("warnings").beginArray();
    for (const std::string& warning : picture.warnings) writer.value(warning);
    writer.endArray();
    writeText(writer, "error", picture.error);
    writer.endObject();
}

}  // namespace

std::string indexText(const Matrix& matrix, std::span<const MatrixPicture> pictures) {
    JSONWriter writer(JSONWriter::Style::pretty);
    writer.beginArray();
    for (const MatrixPicture& picture : pictures) write(writer, matrix, picture);
    writer.endArray();
    return std::move(writer).text() + "\n";
}

}  // namespace tavrin::cli
