// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>

#include "cli/check_writer.h"
#include "cli/output.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"

namespace tavrin::cli {
namespace {

/// Text as a workflow command may hold it.
std::string escaped(std::string_view text, std::string_view special) {
    return percentEncoded(text, [&](char c) { return special.find(c) == std::string_view::npos; });
}

std::string message(std::string_view text) { return escaped(text, "%\r\n"); }
std::string property(std::string_view text) { return escaped(text, "%\r\n:,"); }

/// A line for each finding that GitHub shows beside the text: "::warning file=a.json,line=3,col=5::…".
class GitHubWriter final : public CheckWriter {
public:
    explicit GitHubWriter(const Source* model) : model_(model) {}

    void write(const CheckedDocument& checked) override {
        std::string lines;
        for (const Diagnostic& fixed : checked.fixed)
            lines += lineOf(fixed, checked.original, "notice", "fixed: " + std::string(fixed.code));
        for (const Diagnostic& found : checked.diagnostics)
            lines += lineOf(found, sourceOf(found, checked.document, model_), command(found.severity), found.code);
        if (checked.unread) lines += lineOf(checked.document.name, *checked.unread);
        writeStandardOutput(lines);
    }

    void fail(const Failure& failure) override { writeStandardOutput(lineOf(failure.file, failure)); }

private:
    static std::string_view command(Severity severity) {
        return severity == Severity::note ? "notice" : name(severity);
    }

    static std::string lineOf(const std::string& file, const Failure& failure) {
        return "::error file=" + property(file) + "::" + message(failure.message) + "\n";
    }

    static std::string lineOf(const Diagnostic& found, const Source& source, std::string_view command,
                              std::string_view title) {
        std::string line = "::" + std::string(command) + " file=" + property(source.name);
        if (found.range) {
            line += ",line=" + std::to_string(found.range->begin.line);
            line += ",endLine=" + std::to_string(found.range->end.line);
            line += ",col=" + std::to_string(found.range->begin.column);
            line += ",endColumn=" + std::to_string(found.range->end.column);
        }
        return line + ",title=" + property(title) + "::" + message(found.message) + "\n";
    }

    const Source* model_;
};

}  // namespace

std::unique_ptr<CheckWriter> githubCheckWriter(const Source* model) { return std::make_unique<GitHubWriter>(model); }

}  // namespace tavrin::cli
