// SPDX-License-Identifier: MIT
#include "cli/failure_text.h"

namespace tavrin::cli {
namespace {

/// Whether a failure names its file even where there is but one document and no place in it is known.
bool alwaysNamesFile(const Failure& failure) {
    return failure.type == "IOError" || failure.type == "SnapshotDifference" || failure.type == "Diagnostic";
}

void writePlace(JSONWriter& writer, const Failure& failure, bool withFile) {
    if (failure.file.empty() || !(failure.place || withFile || alwaysNamesFile(failure))) return;
    writer.key("file").value(failure.file);
    if (!failure.place) return;
    writer.key("line").value(failure.place->line).key("column").value(failure.place->column);
}

}  // namespace

std::string toJSONLine(const Failure& failure, bool withFile) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("error").beginObject();
    writeMembers(failure, "codingPath", writer);
    writePlace(writer, failure, withFile);
    if (!failure.seenIn.empty()) {
        writer.key("snapshots").beginArray();
        for (const SeenDifference& seen : failure.seenIn) writer.value(seen.snapshot);
        writer.endArray();
    }
    writer.endObject().endObject();
    return std::move(writer).text() + "\n";
}

}  // namespace tavrin::cli
