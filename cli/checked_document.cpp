// SPDX-License-Identifier: MIT
#include "cli/checked_document.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <utility>

#include "cli/edit_history.h"
#include "tavrin/diagnostics/fixes.h"

namespace tavrin::cli {
namespace {

auto errorsIn(const std::vector<Diagnostic>& diagnostics) {
    return std::ranges::count(diagnostics, Severity::error, &Diagnostic::severity);
}

/// Makes the fixes of a checked document, as long as there are any that do no harm.
class Fixer {
public:
    Fixer(CheckedDocument& checked, std::optional<std::string_view> model, const DiagnoseOptions& options)
        : checked_(checked), model_(model), options_(options) {}

    void run() {
        constexpr int mostRounds = 10;  // one mended error may uncover the next
        checked_.original = checked_.document;
        checked_.originalDiagnostics = checked_.diagnostics;
        for (int round = 0; round < mostRounds && (tryFixes(checked_.diagnostics) || tryEach()); ++round) {
        }
    }

private:
    /// Makes all these fixes that fit together, unless that makes anything worse.
    bool tryFixes(const std::vector<Diagnostic>& fixes) {
        FixedText made = applyFixes(checked_.document.text, fixes);
        if (made.fixed.empty()) return false;
        std::vector<Diagnostic> after = diagnose(made.text, model_, options_);
        // What was refused before may be refused for the next reason now.
        if (errorsIn(after) > errorsIn(checked_.diagnostics)) return false;
        std::vector<Diagnostic> fixed;
        for (const std::size_t index : made.fixed) {
            fixed.push_back(fixes[index]);
            checked_.fixed.push_back(history_.inOriginal(fixes[index], checked_.original.text));
        }
        history_.add(fixed);
        checked_.document.text = std::move(made.text);
        checked_.diagnostics = std::move(after);
        return true;
    }

    /// Makes the first fix that does no harm.
    bool tryEach() {
        constexpr std::size_t mostTries = 50;
        std::size_t tries = 0;
        for (const Diagnostic& fix : std::vector<Diagnostic>(checked_.diagnostics)) {
            if (fix.fix.empty() || fix.role != TextRole::document) continue;
            if (tryFixes({fix})) return true;
            if (++tries == mostTries) return false;
        }
        return false;
    }

    CheckedDocument& checked_;
    std::optional<std::string_view> model_;
    const DiagnoseOptions& options_;
    EditHistory history_;
};

}  // namespace

CheckedDocument checkDocument(const CheckArguments& arguments, const Source* model, const std::string& path) {
    CheckedDocument checked{.document = {displayName(path)}};
    try {
        checked.document.text = readInput(path);
        const DiagnoseOptions options{arguments.widget, arguments.check.rooms, arguments.check.appearances};
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        checked.diagnostics = diagnose(checked.document.text, modelText, options);
        if (arguments.check.fixes) Fixer(checked, modelText, options).run();
    } catch (...) {
        checked.unread = describe(std::current_exception(), checked.document, model);
    }
    const auto isNote = [](const Diagnostic& found) { return found.severity == Severity::note; };
    if (!arguments.check.showsNotes)
        for (auto* diagnostics : {&checked.diagnostics, &checked.originalDiagnostics})
            std::erase_if(*diagnostics, isNote);
    return checked;
}

}  // namespace tavrin::cli
