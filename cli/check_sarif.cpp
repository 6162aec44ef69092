// SPDX-License-Identifier: MIT
#include <string>
#include <utility>

#include "cli/check_writer.h"
#include "cli/output.h"
#include "tavrin/diagnostics/rule.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {
namespace {

/// A path as a relative or absolute URI reference.
std::string uriOf(std::string_view path) {
    return (path.starts_with('/') ? "file://" : "") + percentEncoded(path, PlainInURL{"/"});
}

/// One log of version 2.1.0 of the Static Analysis Results Interchange Format, with one run.
class SarifWriter final : public CheckWriter {
public:
    explicit SarifWriter(const Source* model) : model_(model) {
        writer_.beginObject();
        writer_.key("$schema").value(
            "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
            "sarif-schema-2.1.0.json");
        writer_.key("version").value("2.1.0").key("runs").beginArray().beginObject();
        writeTool();
        writer_.key("columnKind").value("unicodeCodePoints").key("results").beginArray();
    }

    void write(const CheckedDocument& checked) override {
        for (const Diagnostic& found : checked.diagnostics)
            writeResult(found, sourceOf(found, checked.document, model_));
        for (const Diagnostic& fixed : checked.fixed) fixed_.emplace_back(checked.original.name, fixed);
        if (checked.unread) unread_.push_back(checked.unread->message);
    }

    void fail(const Failure& failure) override { unread_.push_back(failure.message); }

    void finish() override {
        writer_.endArray();
        writer_.key("invocations").beginArray().beginObject();
        writer_.key("executionSuccessful").value(unread_.empty());
        writer_.key("toolExecutionNotifications").beginArray();
        for (const std::string& message : unread_) {
            writer_.beginObject().key("level").value("error");
            writeMessage("message", message);
            writer_.endObject();
        }
        for (const auto& [file, fixed] : fixed_) writeFixed(file, fixed);
        writer_.endArray().endObject().endArray();
        writer_.endObject().endArray().endObject();
        writeStandardOutput(writer_.text() + "\n");
    }

private:
    void writeTool() {
        writer_.key("tool").beginObject().key("driver").beginObject();
        writer_.key("name").value("tavrin").key("version").value(TAVRIN_VERSION);
        writer_.key("rules").beginArray();
        for (const DiagnosticRule& rule : diagnosticRules()) {
            writer_.beginObject().key("id").value(rule.code);
            writeMessage("shortDescription", rule.summary);
            const std::string details = rule.details.empty() ? "" : " " + std::string(rule.details);
            writeMessage("help", std::string(rule.summary) + details);
            writer_.key("defaultConfiguration").beginObject().key("level").value(name(rule.severity)).endObject();
            writer_.endObject();
        }
        writer_.endArray().endObject().endObject();
    }

    void writeMessage(std::string_view key, std::string_view text) {
        writer_.key(key).beginObject().key("text").value(text).endObject();
    }

    void writeFile(std::string_view file) {
        writer_.key("artifactLocation").beginObject().key("uri").value(uriOf(file)).endObject();
    }

    void writeRegion(std::string_view key, const TextRange& range) {
        writer_.key(key).beginObject();
        writer_.key("startLine").value(range.begin.line).key("startColumn").value(range.begin.column);
        writer_.key("endLine").value(range.end.line).key("endColumn").value(range.end.column).endObject();
    }

    void writePlace(std::string_view file, const Diagnostic& found) {
        writer_.key("physicalLocation").beginObject();
        writeFile(file);
        if (found.range) writeRegion("region", *found.range);
        writer_.endObject();
    }

    /// What was fixed is no result any more, but something that the run did.
    void writeFixed(std::string_view file, const Diagnostic& fixed) {
        writer_.beginObject().key("level").value("note");
        writer_.key("associatedRule").beginObject().key("id").value(fixed.code).endObject();
        writeMessage("message", "fixed: " + fixed.message);
        writer_.key("locations").beginArray().beginObject();
        writePlace(file, fixed);
        writer_.endObject().endArray().endObject();
    }

    void writeResult(const Diagnostic& found, const Source& source) {
        writer_.beginObject().key("ruleId").value(found.code).key("level").value(name(found.severity));
        writeMessage("message", found.message);
        writer_.key("locations").beginArray().beginObject();
        writePlace(source.name, found);
        if (!found.path.empty()) {
            writer_.key("logicalLocations").beginArray().beginObject();
            writer_.key("fullyQualifiedName").value(tavrin::toText(found.path)).endObject().endArray();
        }
        writer_.endObject().endArray();
        if (!found.fix.empty()) writeFix(found, source);
        writer_.endObject();
    }

    void writeFix(const Diagnostic& found, const Source& source) {
        writer_.key("fixes").beginArray().beginObject().key("artifactChanges").beginArray().beginObject();
        writeFile(source.name);
        writer_.key("replacements").beginArray();
        for (const TextEdit& edit : found.fix) {
            writer_.beginObject();
            writeRegion("deletedRegion", edit.range);
            writeMessage("insertedContent", edit.text);
            writer_.endObject();
        }
        writer_.endArray().endObject().endArray().endObject().endArray();
    }

    const Source* model_;
    JSONWriter writer_{JSONWriter::Style::pretty};
    std::vector<std::string> unread_;
    std::vector<std::pair<std::string, Diagnostic>> fixed_;  // with their files
};

}  // namespace

std::unique_ptr<CheckWriter> sarifCheckWriter(const Source* model) { return std::make_unique<SarifWriter>(model); }

}  // namespace tavrin::cli
