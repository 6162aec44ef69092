// SPDX-License-Identifier: MIT
#include "cli/checked_document.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

#include "cli/io_error.h"
#include "tavrin/diagnostics/fixes.h"

namespace tavrin::cli {
namespace {

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

/// A document's text as it is found with each of its models in turn.
class Looks {
public:
    Looks(const CheckArguments& arguments, std::size_t at) : arguments_(arguments), at_(at) {}

    /// Adds a look with a model, which may be null.
    void add(const CheckedLook& look, const Source* model) {
        DiagnoseOptions options{arguments_.documents[at_].widget, look.rooms, look.appearances};
        options.failsOnMissingPictures = arguments_.failsOnMissing;
        looks_.push_back({model, std::move(options)});
    }

    /// What is found with each of them.
    [[nodiscard]] std::vector<std::vector<Diagnostic>> find(std::string_view text) const {
        std::vector<std::vector<Diagnostic>> found;
        for (const auto& [model, options] : looks_)
            found.push_back(
                diagnose(text, model ? std::optional<std::string_view>(model->text) : std::nullopt, options));
        return found;
    }

    /// The same, each finding once.
    [[nodiscard]] std::vector<CheckedDiagnostic> joint(const std::vector<std::vector<Diagnostic>>& found) const {
        // By its kind, message, path and place; of those about the document's text, which all models share.
        using Key = std::tuple<std::string_view, std::string_view, std::string, std::size_t>;
        std::vector<CheckedDiagnostic> list;
        std::map<Key, std::size_t> known;
        for (std::size_t look = 0; look < found.size(); ++look)
            for (const Diagnostic& each : found[look]) {
                std::size_t at = list.size();
                if (each.role == TextRole::document) {
                    const std::size_t offset = each.range ? each.range->begin.offset : std::string_view::npos;
                    at = known.try_emplace({each.code, each.message, toText(each.path), offset}, at).first->second;
                }
                if (at == list.size()) list.push_back({each, {}});
                std::vector<const Source*>& models = list[at].models;
                const Source* const model = looks_[look].model;
                if (model && (models.empty() || models.back() != model)) models.push_back(model);
            }
        return list;
    }

private:
    struct Look {
        const Source* model;
        DiagnoseOptions options;
    };

    const CheckArguments& arguments_;
    std::size_t at_;
    std::vector<Look> looks_;
};

/// Whether what is found with any model is worse: more errors or, where warnings count too, as many and more of these.
bool isWorse(const std::vector<std::vector<Diagnostic>>& after, const std::vector<std::vector<Diagnostic>>& before,
             bool countsWarnings) {
    const auto badness = [&](const std::vector<Diagnostic>& diagnostics) {
        return std::pair(
            std::ranges::count(diagnostics, Severity::error, &Diagnostic::severity),
            countsWarnings ? std::ranges::count(diagnostics, Severity::warning, &Diagnostic::severity) : 0);
    };
    for (std::size_t look = 0; look < after.size(); ++look)
        if (badness(after[look]) > badness(before[look])) return true;
    return false;
}

/// Makes the fixes of a checked document, as long as there are any that do no harm with any of its models.
class Fixer {
public:
    Fixer(CheckedDocument& checked, const Looks& looks, std::vector<std::vector<Diagnostic>> found)
        : checked_(checked), looks_(looks), found_(std::move(found)) {}

    void run() {
        constexpr int mostRounds = 10;  // one mended error may uncover the next
        checked_.original = checked_.document;
        checked_.originalDiagnostics = checked_.diagnostics;
        for (int round = 0; round < mostRounds && (tryFixes(fixable(Of::all)) || tryEach(Of::all) || tryEach(Of::some));
             ++round) {
        }
    }

private:
    /// With which models something is found. What only some want fixed the others may need as it is.
    enum class Of : bool { all, some };

    /// What is found and can be fixed, each once.
    [[nodiscard]] std::vector<Diagnostic> fixable(Of models) const {
        std::vector<Diagnostic> fixes;
        for (const CheckedDiagnostic& found : checked_.diagnostics)
            if (!found.fix.empty() && found.role == TextRole::document &&
                isOfSomeModels(found, checked_) == (models == Of::some))
                fixes.push_back(static_cast<const Diagnostic&>(found));
        return fixes;
    }

    /// Makes all these fixes that fit together, unless that makes anything worse.
    bool tryFixes(const std::vector<Diagnostic>& fixes, Of models = Of::all) {
        FixedText made = applyFixes(checked_.document.text, fixes);
        if (made.fixed.empty()) return false;
        std::vector<std::vector<Diagnostic>> after = looks_.find(made.text);
        // What was refused before may be refused for the next reason now.
        if (isWorse(after, found_, models == Of::some)) return false;
        std::vector<Diagnostic> fixed;
        for (const std::size_t index : made.fixed) {
            fixed.push_back(fixes[index]);
            checked_.fixed.push_back(history_.inOriginal(fixes[index], checked_.original.text));
        }
        history_.add(fixed);
        checked_.document.text = std::move(made.text);
        found_ = std::move(after);
        checked_.diagnostics = looks_.joint(found_);
        return true;
    }

    /// Makes the first fix that does no harm.
    bool tryEach(Of models) {
        constexpr std::size_t mostTries = 50;
        const std::vector<Diagnostic> fixes = fixable(models);
        for (std::size_t at = 0; at < std::min(fixes.size(), mostTries); ++at)
            if (tryFixes({fixes[at]}, models)) return true;
        return false;
    }

    CheckedDocument& checked_;
    const Looks& looks_;
    std::vector<std::vector<Diagnostic>> found_;  // with each model
    EditHistory history_;
};

void dropNotes(CheckedDocument& checked) {
    for (auto* diagnostics : {&checked.diagnostics, &checked.originalDiagnostics})
        std::erase_if(*diagnostics, [](const Diagnostic& found) { return found.severity == Severity::note; });
}

}  // namespace

CheckedDocument checkDocument(const CheckArguments& arguments, const ReadModels& models, std::size_t at) {
    const DocumentInput& input = arguments.documents[at];
    CheckedDocument checked{.document = {displayName(input.path)}};
    const auto fail = [&] {
        checked.failures.push_back(describe(std::current_exception(), checked.document, nullptr));
    };
    Looks looks(arguments, at);
    try {
        if (input.fault) std::rethrow_exception(input.fault);
        checked.document.text = readInput(input.path, arguments.budget);
        for (const CheckedLook& look : arguments.looks[at]) try {
                const Source* const model = models.find(look.model);
                looks.add(look, model);
                if (model) checked.models.push_back(model);
            } catch (const IOError&) {  // the others may be there
                fail();
            }
        auto found = looks.find(checked.document.text);
        checked.diagnostics = looks.joint(found);
        // What cannot be read may be harmed.
        if (arguments.check.fixes && checked.failures.empty()) Fixer(checked, looks, std::move(found)).run();
    } catch (...) {
        fail();
    }
    if (!arguments.check.showsNotes) dropNotes(checked);
    return checked;
}

CheckedDiagnostic namingModels(const CheckedDiagnostic& found, const CheckedDocument& checked) {
    constexpr std::size_t mostNamed = 3;
    CheckedDiagnostic named = found;
    if (found.role == TextRole::model || !isOfSomeModels(found, checked)) return named;
    for (std::size_t i = 0; i < found.models.size() && i < mostNamed; ++i)
        named.message += (i == 0 ? " (with " : ", ") + found.models[i]->name;
    if (found.models.size() > mostNamed)
        named.message += " and " + std::to_string(found.models.size() - mostNamed) + " more";
    if (!found.models.empty()) named.message += ")";
    return named;
}

}  // namespace tavrin::cli
