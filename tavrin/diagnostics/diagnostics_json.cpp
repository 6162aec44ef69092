// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/diagnostics/write_diagnostic.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin {
namespace {

std::uint64_t number(std::size_t value) { return value; }

void write(const CodingPath& path, JSONWriter& writer) {
    writer.key("path").beginArray();
    for (const CodingKey& step : path) {
        if (const auto* key = std::get_if<std::string>(&step))
            writer.value(*key);
        else
            writer.value(number(std::get<std::size_t>(step)));
    }
    writer.endArray();
}

/// The members of a range.
void write(const TextRange& range, JSONWriter& writer) {
    writer.key("line").value(number(range.begin.line)).key("column").value(number(range.begin.column));
    writer.key("endLine").value(number(range.end.line)).key("endColumn").value(number(range.end.column));
    writer.key("offset").value(number(range.begin.offset)).key("endOffset").value(number(range.end.offset));
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

void write(const Diagnostic& diagnostic, JSONWriter& writer) {
    writer.beginObject();
    writer.key("severity").value(name(diagnostic.severity)).key("code").value(diagnostic.code);
    writer.key("message").value(diagnostic.message);
    writer.key("role").value(diagnostic.role == TextRole::model ? "model" : "document");
    write(diagnostic.path, writer);
    if (diagnostic.range) {
        writer.key("range").beginObject();
        write(*diagnostic.range, writer);
        writer.endObject();
    }
    if (!diagnostic.fix.empty()) write(diagnostic.fix, writer);
    writer.endObject();
}

std::string toJSON(const std::vector<Diagnostic>& diagnostics) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginArray();
    for (const Diagnostic& diagnostic : diagnostics) write(diagnostic, writer);
    writer.endArray();
    return std::move(writer).text();
}

}  // namespace tavrin
