// SPDX-License-Identifier: MIT
#include "cli/input.h"
#include "cli/output.h"
#include "cli/production.h"
#include "cli/verbs.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

std::string textOf(const PrintArguments& arguments, const Production& work) {
    if (arguments.verb == Verb::tree) return work.document.treeText();
    Widget widget = work.document.widget(work.options);
    return arguments.verb == Verb::layout ? widget.layoutText() : widget.targetsText();
}

}  // namespace

int printAll(const DocumentArguments& arguments, const Reporter& reporter,
             const std::function<std::string(const Production&)>& textOf) {
    int status = 0;
    const auto make = [&](const Production& work) {
        work.outcome.bytes = textOf(work);
        if (!work.outcome.bytes.ends_with('\n')) work.outcome.bytes += '\n';
    };
    produceAll(arguments, make, [&](const std::string& document, const Outcome& outcome) {
        reporter.note(displayName(document), outcome.notes);
        if (outcome.failure) {
            reporter.report(*outcome.failure);
            status = 1;
        } else {
            writeStandardOutput(outcome.bytes);
        }
    });
    return status;
}

int run(const PrintArguments& arguments, const Reporter& reporter) {
    return printAll(arguments, reporter, [&](const Production& work) { return textOf(arguments, work); });
}

}  // namespace tavrin::cli
