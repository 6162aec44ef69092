// SPDX-License-Identifier: MIT
#include "cli/reporter.h"

#include <unistd.h>

#include "cli/failure_text.h"
#include "cli/file_descriptor.h"
#include "cli/terminal.h"

namespace tavrin::cli {

void Reporter::report(const Failure& failure) const {
    const bool isText = format_ == TextFormat::text;
    write(isText ? failureText(failure, standardErrorHasColor()) : toJSONLine(failure, namesDocuments_));
}

void Reporter::report(const Diagnostic& diagnostic, const Source& document, const Source* model) const {
    const Source& source = sourceOf(diagnostic, document, model);
    // Programs get the error that every verb ends at, as it writes it; people what was found out about it besides.
    const bool isText = format_ == TextFormat::text;
    if (!isText && diagnostic.isFurther) return;
    const bool asThrown = diagnostic.cause && !(isText && diagnostic.range);
    const Failure failure = asThrown ? describe(diagnostic.cause, document, model) : describe(diagnostic, source);
    write(isText ? failureText(failure, standardErrorHasColor(), labelOf(diagnostic))
                 : toJSONLine(failure, namesDocuments_));
}

void Reporter::note(const std::string& document, const std::vector<std::string>& lines) const {
    if (format_ == TextFormat::json) return;
    std::string text;
    for (const std::string& line : lines) {
        if (namesDocuments_) text.append(printable(document)).append(": ");
        text.append(printable(line)).append("\n");
    }
    write(text);
}

void Reporter::note(const Diagnostic& diagnostic, const Source& source, std::string_view word) const {
    if (format_ == TextFormat::json) return;
    Label label = labelOf(diagnostic);
    if (!word.empty()) label.word = word;
    write(failureText(describe(diagnostic, source), standardErrorHasColor(), label));
}

void Reporter::hint(std::string_view line) const {
    if (format_ == TextFormat::text) write(std::string(line) + "\n");
}

void Reporter::write(std::string_view text) const {
    // There is no one left to tell when standard error itself is closed.
    static_cast<void>(writeAll(STDERR_FILENO, text));
}

}  // namespace tavrin::cli
