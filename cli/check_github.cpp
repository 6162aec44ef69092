// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>

#include "cli/check_writer.h"
#include "cli/github_command.h"
#include "cli/output.h"

namespace tavrin::cli {
namespace {

/// A line for each finding that GitHub shows beside the text: "::warning file=a.json,line=3,col=5::…".
class GitHubWriter final : public CheckWriter {
public:
    void write(const CheckedDocument& checked) override {
        std::string lines;
        for (const Diagnostic& fixed : checked.fixed)
            lines += lineOf(fixed, checked.original, "notice", "fixed: " + std::string(fixed.code));
        for (const CheckedDiagnostic& found : checked.diagnostics)
            lines +=
                lineOf(namingModels(found, checked), sourceOf(found, checked), command(found.severity), found.code);
        for (const Failure& failure : checked.failures) lines += lineOf(checked.document.name, failure);
        writeStandardOutput(lines);
    }

    void fail(const Failure& failure) override { writeStandardOutput(lineOf(failure.file, failure)); }

private:
    static std::string_view command(Severity severity) {
        return severity == Severity::note ? "notice" : name(severity);
    }

    static std::string lineOf(const std::string& file, const Failure& failure) {
        std::string properties = "file=" + githubProperty(failure.file.empty() ? file : failure.file);
        if (failure.place) properties += ",line=" + std::to_string(failure.place->line);
        if (failure.place) properties += ",col=" + std::to_string(failure.place->column);
        return githubCommand("error", properties, failure.message);
    }

    static std::string lineOf(const Diagnostic& found, const Source& source, std::string_view command,
                              std::string_view title) {
        std::string properties = "file=" + githubProperty(source.name);
        if (found.range) {
            properties += ",line=" + std::to_string(found.range->begin.line);
            properties += ",endLine=" + std::to_string(found.range->end.line);
            properties += ",col=" + std::to_string(found.range->begin.column);
            properties += ",endColumn=" + std::to_string(found.range->end.column);
        }
        return githubCommand(command, properties + ",title=" + githubProperty(title), found.message);
    }
};

}  // namespace

std::unique_ptr<CheckWriter> githubCheckWriter() { return std::make_unique<GitHubWriter>(); }

}  // namespace tavrin::cli
