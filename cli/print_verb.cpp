// SPDX-License-Identifier: MIT
#include "cli/input.h"
#include "cli/output.h"
#include "cli/production.h"
#include "cli/verbs.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

/// A longer text is not kept, but made once more while it is printed.
constexpr std::size_t longestKept = std::size_t{16} << 20;

void writeText(Verb verb, const BoundDocument& document, const WidgetOptions& options, const TextSink& sink) {
    if (verb == Verb::tree) return document.writeTree(sink);
    Widget widget = document.widget(options);
    if (verb == Verb::layout) return widget.writeLayout(sink);
    sink(widget.targetsText());
}

/// The text if it is short; it is whole, whatever its length, when nothing is thrown.
std::optional<std::string> shortText(const PrintArguments& arguments, const Production& work) {
    std::optional<std::string> text("");
    writeText(arguments.verb, work.document, work.options, [&](std::string_view piece) {
        if (text && text->size() + piece.size() > longestKept) text.reset();
        if (text) *text += piece;
    });
    return text;
}

}  // namespace

int printAll(const DocumentArguments& arguments, const Reporter& reporter,
             const std::function<std::string(const Production&)>& textOf) {
    int status = 0;
    const auto make = [&](const Production& work) {
        if (!work.input.model) noteMissingModel(work.source, work.outcome.notes);
        work.outcome.bytes = textOf(work);
        if (!work.outcome.bytes.ends_with('\n')) work.outcome.bytes += '\n';
    };
    produceAll(arguments, make, [&](const DocumentInput& document, const Outcome& outcome) {
        reporter.note(displayName(document.path), outcome.notes);
        if (outcome.failure) {
            reporter.report(*outcome.failure);
            status = 1;
        } else {
            if (outcome.longText) outcome.longText(writeStandardOutput);
            writeStandardOutput(outcome.bytes);
        }
    });
    return status;
}

int run(const PrintArguments& arguments, const Reporter& reporter) {
    return printAll(arguments, reporter, [&](const Production& work) {
        if (std::optional<std::string> text = shortText(arguments, work)) return *std::move(text);
        WidgetOptions options = work.options;
        options.notes = {};              // they have been heard
        options.budget.seconds.reset();  // who reads may be slow
        work.outcome.longText = [verb = arguments.verb, document = work.document, options](const TextSink& sink) {
            writeText(verb, document, options, sink);
        };
        return std::string();
    });
}

}  // namespace tavrin::cli
