// SPDX-License-Identifier: MIT
#include <optional>
#include <utility>

#include "cli/matrix/matrix_picture.h"
#include "cli/options.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {
namespace {

/// What is empty is written as null.
std::optional<std::string_view> unlessEmpty(std::string_view text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

void write(JSONWriter& writer, const Matrix& matrix, const MatrixPicture& picture) {
    const Cell& cell = picture.cell;
    const WidgetRoom& room = matrix.rooms[cell.room];
    writer.beginObject().key("file").value(unlessEmpty(picture.file));
    writer.key("document").value(matrix.documents[cell.document].path);
    writer.key("model").value(unlessEmpty(picture.model));
    writer.key("family").value(room.name);
    writer.key("appearance").value(name(matrix.appearances[cell.appearance]));
    writer.key("scale").value(matrix.scales[cell.scale]);
    writer.key("date").value(unlessEmpty(matrix.moments[cell.moment].text));
    writer.key("size").beginArray().value(room.size.width).value(room.size.height).endArray();
    writer.key("pixels");
    if (picture.file.empty())
        writer.value(nullptr);
    else
        writer.beginArray().value(picture.width).value(picture.height).endArray();
    writer.key("sha256").value(unlessEmpty(picture.sha256)).key("warnings").beginArray();
    for (const std::string& warning : picture.warnings) writer.value(warning);
    writer.endArray().key("error").value(unlessEmpty(picture.error)).endObject();
}

}  // namespace

IndexWriter::IndexWriter(const Matrix& matrix, TextSink sink)
    : matrix_(matrix), sink_(std::move(sink)), writer_(JSONWriter::Style::pretty, sink_) {
    writer_.beginArray();
}

void IndexWriter::add(const MatrixPicture& picture) { write(writer_, matrix_, picture); }

void IndexWriter::finish() {
    writer_.endArray();
    sink_("\n");
}

std::string indexText(const Matrix& matrix, std::span<const MatrixPicture> pictures) {
    std::string text;
    IndexWriter writer(matrix, [&text](std::string_view piece) { text += piece; });
    for (const MatrixPicture& picture : pictures) writer.add(picture);
    writer.finish();
    return text;
}

}  // namespace tavrin::cli
