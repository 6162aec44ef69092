// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/diagnose.h"

#include <algorithm>
#include <cstddef>

#include "tavrin/diagnostics/drawn_rules.h"
#include "tavrin/diagnostics/further_errors.h"
#include "tavrin/diagnostics/load_failure.h"
#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/engine/prepared_document.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/widget/widget.h"

namespace tavrin {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// What one call finds out about its texts.
class Diagnosis {
public:
    Diagnosis(std::string_view document, std::optional<std::string_view> model, const DiagnoseOptions& options)
        : document_(document), model_(model), options_(options), findings_(options.maximumDiagnostics) {}

    std::vector<Diagnostic> run() {
        Cost cost;
        const Metering whole(options_.budget, cost);  // whose seconds are those of everything
        try {
            look([this] {
                readTexts();
                if (written_) applyWrittenRules({*written_, bound(), options_.imageCacheDir.has_value()}, findings_);
            });
            draw();
        } catch (...) {
            fail(std::current_exception());
            goOnAfter(std::current_exception());
        }
        if (findings_.dropped() > 0)
            findings_.all().push_back({.severity = Severity::note,
                                       .code = info(Rule::notLookedAt).code,
                                       .message = std::to_string(findings_.dropped()) + " more were found"});
        return findings_.take(document_, model_.value_or(std::string_view()));
    }

private:
    /// Does on the call's own budget what looks at the texts. A drawing has one of its own, less the bytes that are
    /// held here and the time that has passed.
    template <class Work>
    void look(const Work& work) {
        const Metering metering(options_.budget, cost_);
        work();
    }

    [[nodiscard]] const BoundModel* bound() const { return bound_ ? &*bound_ : nullptr; }

    void readTexts() {
        if (document_.size() > JSONOutline::maximumBytes || (model_ && model_->size() > JSONOutline::maximumBytes)) {
            findings_.add(Rule::notLookedAt, "the text is too large to be looked at, only loaded");
            return;
        }
        try {
            const JSONText valid(document_);
        } catch (const PlacedError&) {  // loading reports it
            return;
        }
        written_.emplace(document_);
        if (model_) bound_ = BoundModel::read(*model_);
    }

    void fail(const std::exception_ptr& failure) {
        addFailure(failure, written_ ? &*written_ : nullptr, bound_ ? &bound_->outline() : nullptr, findings_);
        Diagnostic& error = findings_.all().back();
        if (error.role == TextRole::document && document_.starts_with(byteOrderMark))
            error.fix = {{bytes(0, byteOrderMark.size()), ""}};
    }

    /// Finds what decoding would end at next, and so on.
    void goOnAfter(std::exception_ptr failure) {
        constexpr std::size_t mostErrors = 100;
        constexpr std::size_t mostBytes = std::size_t{64} << 20;  // that are decoded for them
        if (!written_ || findings_.all().back().code == info(Rule::refused).code) return;
        const auto most = std::min(mostErrors, mostBytes / std::max<std::size_t>(document_.size(), 1));
        try {
            look([&] {
                FurtherErrors further(document_);
                for (std::size_t count = 0; failure && count < most && !findings_.isFull(); ++count) {
                    const FurtherErrors::Verdict verdict = takenOut(further, failure);
                    if (verdict == FurtherErrors::Verdict::astray) return;
                    if (verdict == FurtherErrors::Verdict::real && count > 0) {
                        fail(failure);
                        findings_.all().back().isFurther = true;
                    }
                    failure = failureOf(further.text());
                }
            });
        } catch (const TavrinError&) {
            // The budget ends here; what was found until then holds.
        }
    }

    static FurtherErrors::Verdict takenOut(FurtherErrors& further, const std::exception_ptr& failure) {
        try {
            std::rethrow_exception(failure);
        } catch (const DecodingError& error) {
            return further.takeOut(error);
        } catch (const ConversionError& error) {
            return further.takeOut(error);
        } catch (...) {
            return FurtherErrors::Verdict::astray;
        }
    }

    /// What a text cannot be decoded for; null where it can. The budget's end leaves as it is.
    static std::exception_ptr failureOf(const std::string& text) {
        try {
            const PreparedDocument decoded(text);
        } catch (const TavrinError&) {
            throw;
        } catch (const PlacedError&) {
            return std::current_exception();
        }
        return nullptr;
    }

    void draw() {
        const WidgetOptions& given = options_;
        WidgetOptions options = given;
        options.trace = mayRecordOrigins() ? WidgetTrace::origins : WidgetTrace::none;
        // Texts are judged by what lies behind them.
        if (options.background.kind == WidgetBackground::Kind::none) options.background = {};
        options.rounded = false;
        const ThrowingPreconditions instead;
        const BoundDocument bound = Document(document_, options.budget, {.bytes = cost_.bytes}).bind(model_, options);
        if (written_) look([this] { boundEffects_ = boundEffects(*written_); });
        DrawnFindings drawn;
        try {
            for (const WidgetRoom& room : options_.rooms)
                for (const Appearance appearance : options_.appearances) {
                    options.room = room;
                    options.appearance = appearance;
                    draw(bound.widget(options), drawn);
                }
        } catch (...) {
            fail(std::current_exception());
        }
        if (written_) look([&] { drawn.moveTo(findings_, written_->outline()); });
        if (!options_.failsOnMissingPictures) return;
        for (Diagnostic& found : findings_.all())
            if (found.code == info(Rule::missingImage).code) found.severity = Severity::error;
    }

    void draw(Widget widget, DrawnFindings& findings) {
        const WidgetOptions& options = widget.options();
        const layout::LayoutTree& tree = widget.layoutTree();
        Cost cost = widget.cost();  // what the rules have drawn counts anew
        cost.bytes += findings.bytes();
        const Metering metering(options.budget, cost);
        const pool::Vector<DrawnView> views = drawnViews(tree, widget.document().origins().get(), boundEffects_);
        findings.enter(options.room.name, options.appearance == Appearance::dark ? "dark" : "light");
        applyDrawnRules({widget, tree, views, options_.failsOnMissingPictures}, findings);
    }

    /// Each view remembers the way to its node, which takes much memory where nodes are many and nested deeply.
    [[nodiscard]] bool mayRecordOrigins() const {
        if (!written_) return false;
        const std::size_t mostSteps = options_.budget.bytes / (4 * sizeof(CodingKey));
        std::size_t steps = 0;
        const JSONOutline& outline = written_->outline();
        std::vector<std::uint32_t> depths(outline.values().size());
        for (JSONOutline::Index i = 1; i < depths.size(); ++i) depths[i] = depths[outline[i].parent] + 1;
        for (const WrittenRecord& record : written_->records()) steps += depths[record.object];
        return steps <= mostSteps;
    }

    std::string_view document_;
    std::optional<std::string_view> model_;
    const DiagnoseOptions& options_;
    Findings findings_;
    Cost cost_;  // of looking at the texts
    std::optional<WrittenDocument> written_;
    std::optional<BoundModel> bound_;
    BoundEffects boundEffects_;
};

}  // namespace

std::vector<Diagnostic> diagnose(std::string_view document, std::optional<std::string_view> model,
                                 const DiagnoseOptions& options) {
    return Diagnosis(document, model, options).run();
}

}  // namespace tavrin
