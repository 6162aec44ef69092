// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/diagnostics/write_diagnostic.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin {
namespace {

/// The members of a range.
void write(const TextRange& range, JSONWriter& writer) {
    writer.key("line").value(range.begin.line).key("column").value(range.begin.column);
    writer.key("endLine").value(range.end.line).key("endColumn").value(range.end.column);
    writer.key("offset").value(range.begin.offset).key("endOffset").value(range.end.offset);
}

void write(const std::vector<TextEdit>& fix, JSONWriter& writer) {
    writer.key("fix").beginArray();
    for (const TextEdit& edit : fix) {
        writer.beginObject();
        write(edit.range, writer);
        writer.key("text").value(edit.text).endObject();
    }
    writer.endArray();
}

}  // namespace

void write(const CodingPath& path, JSONWriter& writer) {
    writer.beginArray();
    for (const CodingKey& step : path) std::visit([&](const auto& key) { writer.value(key); }, step);
    writer.endArray();
}

void write(const Diagnostic& diagnostic, JSONWriter& writer) {
    writeMembers(diagnostic, writer.beginObject());
    writer.endObject();
}

void writeMembers(const Diagnostic& diagnostic, JSONWriter& writer) {
    writer.key("severity").value(name(diagnostic.severity)).key("code").value(diagnostic.code);
    writer.key("message").value(diagnostic.message);
    writer.key("role").value(diagnostic.role == TextRole::model ? "model" : "document");
    write(diagnostic.path, writer.key("path"));
    if (diagnostic.range) {
        writer.key("range").beginObject();
        write(*diagnostic.range, writer);
        writer.endObject();
    }
    if (!diagnostic.fix.empty()) write(diagnostic.fix, writer);
}

std::string toJSON(const std::vector<Diagnostic>& diagnostics) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginArray();
    for (const Diagnostic& diagnostic : diagnostics) write(diagnostic, writer);
    writer.endArray();
    return std::move(writer).text();
}

}  // namespace tavrin
