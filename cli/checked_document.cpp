// SPDX-License-Identifier: MIT
#include "cli/checked_document.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <utility>

#include "tavrin/diagnostics/fixes.h"

namespace tavrin::cli {
namespace {

auto errorsIn(const std::vector<Diagnostic>& diagnostics) {
    return std::ranges::count(diagnostics, Severity::error, &Diagnostic::severity);
}

std::size_t beginOf(const TextEdit& edit) { return edit.range.begin.offset; }
std::size_t lengthOf(const TextEdit& edit) { return edit.range.end.offset - beginOf(edit); }

/// Where what lies at `offset` behind edits was before them.
std::size_t offsetBefore(std::size_t offset, const std::vector<TextEdit>& edits) {
    std::size_t added = 0;
    std::size_t removed = 0;
    for (const TextEdit& edit : edits) {
        const std::size_t begin = beginOf(edit) + added - removed;
        if (offset < begin) break;
        if (offset < begin + edit.text.size()) return beginOf(edit);
        added += edit.text.size();
        removed += lengthOf(edit);
    }
    return offset + removed - added;
}

/// The edits that were made in a text, round after round, each in what the one before had left.
class EditHistory {
public:
    /// Notes the edits of a round: those of the fixes that were made, which may share some.
    void add(const std::vector<Diagnostic>& fixes) {
        std::vector<TextEdit> edits;
        for (const Diagnostic& fix : fixes) edits.insert(edits.end(), fix.fix.begin(), fix.fix.end());
        std::ranges::stable_sort(edits, {}, beginOf);
        edits.erase(std::unique(edits.begin(), edits.end()), edits.end());
        rounds_.push_back(std::move(edits));
    }

    /// A diagnostic of the text as it is now, with the places in `original`, the text as it was before all edits. What
    /// lies within a replaced stretch is placed at its beginning.
    [[nodiscard]] Diagnostic inOriginal(Diagnostic diagnostic, std::string_view original) const {
        const auto move = [&](TextRange& range) {
            for (TextPlace* place : {&range.begin, &range.end})
                *place = placeAt(original, originalOffset(place->offset));
        };
        if (rounds_.empty()) return diagnostic;
        if (diagnostic.range) move(*diagnostic.range);
        for (TextEdit& edit : diagnostic.fix) move(edit.range);
        return diagnostic;
    }

private:
    [[nodiscard]] std::size_t originalOffset(std::size_t offset) const {
        for (std::size_t round = rounds_.size(); round-- > 0;) offset = offsetBefore(offset, rounds_[round]);
        return offset;
    }

    std::vector<std::vector<TextEdit>> rounds_;  // each in the order of the text
};

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

CheckedDocument checkedWith(const CheckedLook& look, const Source* model, std::optional<Source> text,
                            const CheckArguments& arguments, const DocumentInput& input) {
    CheckedDocument checked{.document = {displayName(input.path)}, .model = model};
    try {
        checked.document =
            text ? *std::move(text) : Source{checked.document.name, readInput(input.path, arguments.budget)};
        DiagnoseOptions options{input.widget, look.rooms, look.appearances};
        options.failsOnMissingPictures = arguments.failsOnMissing;
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

/// Whether two findings about the document's text are the same.
bool isSame(const Diagnostic& a, const Diagnostic& b) {
    return a.role == TextRole::document && b.role == a.role && a.code == b.code && a.message == b.message &&
           a.path == b.path;
}

/// Drops what was found before.
void dropKnown(CheckedDocument& checked, const std::vector<CheckedDocument>& before) {
    std::erase_if(checked.diagnostics, [&](const Diagnostic& found) {
        return std::ranges::any_of(before, [&](const CheckedDocument& other) {
            return std::ranges::any_of(other.diagnostics, [&](const auto& known) { return isSame(found, known); });
        });
    });
}

}  // namespace

std::vector<CheckedDocument> checkDocument(const CheckArguments& arguments, const ReadModels& models, std::size_t at) {
    std::vector<CheckedDocument> all;
    for (const CheckedLook& look : arguments.looks[at]) {
        // A fix is not written yet, and what one model asks for may be wrong with the next.
        if (!all.empty() && arguments.check.fixes) break;
        std::optional<Source> text;
        if (!all.empty() && !all.front().unread) text = all.front().document;
        CheckedDocument next =
            checkedWith(look, models.find(look.model), std::move(text), arguments, arguments.documents[at]);
        dropKnown(next, all);
        all.push_back(std::move(next));
    }
    return all;
}

}  // namespace tavrin::cli
