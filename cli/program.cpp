// SPDX-License-Identifier: MIT
#include "cli/program.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/arguments.h"
#include "cli/completion.h"
#include "cli/io_error.h"
#include "cli/output.h"
#include "cli/overwriting.h"
#include "cli/reporter.h"
#include "cli/temporary_file.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/schema/document_schema.h"

namespace tavrin::cli {
namespace {

constexpr int failed = 1;
constexpr int wrongCommandLine = 2;

/// Of the verbs that work on no document, what they print; none of the others.
std::optional<std::string> printedWithoutDocument(const Command& command) {
    if (command.verb == Verb::completion) return completionScript(command.operands);
    if (command.verb == Verb::sign) return signedPaths(command);
    if (command.verb != Verb::schema) return std::nullopt;
    if (!command.operands.empty()) throw UsageError("`tavrin schema` takes no document; `tavrin check` checks one");
    return documentSchema();
}

template <class VerbArguments>
int runVerb(const VerbArguments& arguments, Reporter& reporter) {
    refuseToOverwriteInputs(arguments);
    if (arguments.documents.size() > 1) reporter.nameDocuments();
    return run(arguments, reporter);
}

int runCommand(std::span<const std::string> words, Reporter& reporter) {
    const auto parsed = parseCommandLine(words);
    if (const auto* information = std::get_if<Information>(&parsed)) {
        writeStandardOutput(information->text);
        return 0;
    }
    const Command& command = std::get<Command>(parsed);
    if (const std::optional<std::string> text = printedWithoutDocument(command)) {
        writeStandardOutput(*text);
        return 0;
    }
    if (command.verb == Verb::newWidget) {
        makeNew(command);
        return 0;
    }
    if (command.verb == Verb::preview) {
        preview(command);
        return 0;
    }
    if (command.verb == Verb::serve) return serve(command);
    removeTemporaryFilesOnSignals();
    if (command.find("--jsonl")) return run(readStreamArguments(command));
    return std::visit([&](const auto& arguments) { return runVerb(arguments, reporter); }, readArguments(command));
}

/// Where a command line that is wrong is explained.
std::string helpFor(std::span<const std::string> words) {
    const std::vector<std::string_view> names = verbNames();
    auto word = words.begin();
    while (word != words.end() && word->starts_with('-')) word += *word == "--errors" && words.end() - word > 1 ? 2 : 1;
    const bool isVerb =
        word != words.end() && *word != "help" && std::find(names.begin(), names.end(), *word) != names.end();
    if (isVerb) return "`tavrin " + *word + " --help` explains it.";
    return "`tavrin --help` and `tavrin help VERB` explain the command line.";
}

int runReported(std::span<const std::string> words, Reporter& reporter) {
    try {
        return runCommand(words, reporter);
    } catch (const ClosedOutput&) {
        return failed;
    } catch (...) {
        const Failure failure = describe(std::current_exception());
        reporter.report(failure);
        if (failure.type != "UsageError") return failed;
        reporter.hint(helpFor(words));
        return wrongCommandLine;
    }
}

}  // namespace

int runProgram(int argc, char** argv) noexcept {
    try {
        for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);  // writing then fails with an error
        setPreconditionHandler(throwPreconditionError);
        const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
        Reporter reporter(errorFormatOf(words));
        return runReported(words, reporter);
    } catch (...) {
        return failed;  // not even the report could be made
    }
}

}  // namespace tavrin::cli
