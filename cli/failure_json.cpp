// SPDX-License-Identifier: MIT
#include <cstdint>
#include <variant>

#include "cli/failure_text.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {
namespace {

void write(JSONWriter& writer, const CodingPath& path) {
    writer.key("codingPath").beginArray();
    for (const CodingKey& step : path) {
        if (const auto* key = std::get_if<std::string>(&step))
            writer.value(*key);
        else
            writer.value(std::uint64_t{std::get<std::size_t>(step)});
    }
    writer.endArray();
}

/// Whether a failure names its file even where there is but one document and no place in it is known.
bool alwaysNamesFile(const Failure& failure) {
    return failure.type == "IOError" || failure.type == "SnapshotDifference" || failure.type == "Diagnostic";
}

void writePlace(JSONWriter& writer, const Failure& failure, bool withFile) {
    if (failure.file.empty() || !(failure.place || withFile || alwaysNamesFile(failure))) return;
    writer.key("file").value(failure.file);
    if (!failure.place) return;
    writer.key("line").value(std::uint64_t{failure.place->line});
    writer.key("column").value(std::uint64_t{failure.place->column});
}

}  // namespace

std::string toJSONLine(const Failure& failure, bool withFile) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("error").beginObject();
    writer.key("type").value(failure.type);
    if (!failure.kind.empty()) writer.key("kind").value(failure.kind);
    if (failure.type == "ConversionError")
        writer.key("domain").value(ConversionError::domain).key("code").value(ConversionError::code);
    if (failure.codingPath) write(writer, *failure.codingPath);
    if (failure.key) writer.key("key").value(*failure.key);
    writer.key("message").value(failure.message);
    writePlace(writer, failure, withFile);
    writer.endObject().endObject();
    return std::move(writer).text() + "\n";
}

}  // namespace tavrin::cli
