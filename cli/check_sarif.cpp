// SPDX-License-Identifier: MIT
#include <string>
#include <utility>

#include "cli/check_writer.h"
#include "cli/failure_text.h"
#include "cli/output.h"
#include "tavrin/diagnostics/rule.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/schema/json_building.h"

namespace tavrin::cli {
namespace {

/// A path as a relative or absolute URI reference.
std::string uriOf(std::string_view path) {
    return (path.starts_with('/') ? "file://" : "") + percentEncoded(path, PlainInURL{"/"});
}

JSON text(std::string_view words) { return object({{"text", std::string(words)}}); }

JSON fileAt(std::string_view path) { return object({{"uri", uriOf(path)}}); }

JSON regionOf(const TextRange& range) {
    return object({{"startLine", range.begin.line},
                   {"startColumn", range.begin.column},
                   {"endLine", range.end.line},
                   {"endColumn", range.end.column}});
}

JSON locationsOf(std::string_view file, const Diagnostic& found, bool isLogical) {
    JSONMembers place{{"artifactLocation", fileAt(file)}};
    if (found.range) place.emplace_back("region", regionOf(*found.range));
    JSONMembers location{{"physicalLocation", object(std::move(place))}};
    if (isLogical && !found.path.empty())
        location.emplace_back("logicalLocations", list({object({{"fullyQualifiedName", toText(found.path)}})}));
    return list({object(std::move(location))});
}

JSON tool() {
    JSONArray rules;
    for (const DiagnosticRule& rule : diagnosticRules()) {
        const std::string details = rule.details.empty() ? "" : " " + std::string(rule.details);
        rules.push_back(object({{"id", std::string(rule.code)},
                                {"shortDescription", text(rule.summary)},
                                {"help", text(std::string(rule.summary) + details)},
                                {"defaultConfiguration", object({{"level", std::string(name(rule.severity))}})}}));
    }
    return object({{"driver", object({{"name", "tavrin"}, {"version", TAVRIN_VERSION}, {"rules", JSON(rules)}})}});
}

JSON fixOf(const Diagnostic& found, const Source& source) {
    JSONArray edits;
    for (const TextEdit& edit : found.fix)
        edits.push_back(object({{"deletedRegion", regionOf(edit.range)}, {"insertedContent", text(edit.text)}}));
    const JSON change = object({{"artifactLocation", fileAt(source.name)}, {"replacements", JSON(edits)}});
    return object({{"artifactChanges", list({change})}});
}

JSON resultOf(const Diagnostic& found, const Source& source) {
    JSONMembers result{{"ruleId", std::string(found.code)},
                       {"level", std::string(name(found.severity))},
                       {"message", text(found.message)},
                       {"locations", locationsOf(source.name, found, true)}};
    if (!found.fix.empty()) result.emplace_back("fixes", list({fixOf(found, source)}));
    return object(std::move(result));
}

/// What was fixed is no result any more, but something that the run did.
JSON notificationOf(std::string_view file, const Diagnostic& fixed) {
    return object({{"level", "note"},
                   {"associatedRule", object({{"id", std::string(fixed.code)}})},
                   {"message", text("fixed: " + fixed.message)},
                   {"locations", locationsOf(file, fixed, false)}});
}

/// One log of version 2.1.0 of the Static Analysis Results Interchange Format, with one run.
class SarifWriter final : public CheckWriter {
public:
    void write(const CheckedDocument& checked) override {
        for (const CheckedDiagnostic& found : checked.diagnostics)
            results_.push_back(resultOf(namingModels(found, checked), sourceOf(found, checked)));
        for (const Diagnostic& fixed : checked.fixed) fixed_.push_back(notificationOf(checked.original.name, fixed));
        for (const Failure& failure : checked.failures) fail(failure);
    }

    void fail(const Failure& failure) override {
        failures_.push_back(object({{"level", "error"}, {"message", text(placedMessage(failure))}}));
    }

    void finish() override {
        const bool isSuccess = failures_.empty();
        failures_.insert(failures_.end(), fixed_.begin(), fixed_.end());
        const JSON invocation =
            object({{"executionSuccessful", isSuccess}, {"toolExecutionNotifications", JSON(std::move(failures_))}});
        const JSON run = object({{"tool", tool()},
                                 {"columnKind", "unicodeCodePoints"},
                                 {"results", JSON(std::move(results_))},
                                 {"invocations", list({invocation})}});
        JSONWriter writer(JSONWriter::Style::pretty);
        encode(object({{"$schema",
                        "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json"},
                       {"version", "2.1.0"},
                       {"runs", list({run})}}),
               writer);
        writeStandardOutput(writer.text() + "\n");
    }

private:
    JSONArray results_;
    JSONArray failures_;
    JSONArray fixed_;
};

}  // namespace

std::unique_ptr<CheckWriter> sarifCheckWriter() { return std::make_unique<SarifWriter>(); }

}  // namespace tavrin::cli
