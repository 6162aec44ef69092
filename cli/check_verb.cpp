// SPDX-License-Identifier: MIT
#include <array>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>

#include "cli/check_writer.h"
#include "cli/io_error.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/reporter.h"
#include "cli/verbs.h"

namespace tavrin::cli {
namespace {

bool isFailing(const Diagnostic& found, const CheckOptions& options) {
    return found.severity == Severity::error || (options.isStrict && found.severity == Severity::warning);
}

/// Null for text, which `Reporter` writes.
std::unique_ptr<CheckWriter> writerOf(CheckFormat format) {
    switch (format) {
        case CheckFormat::json: return jsonCheckWriter();
        case CheckFormat::sarif: return sarifCheckWriter();
        case CheckFormat::github: return githubCheckWriter();
        case CheckFormat::text: break;
    }
    return nullptr;
}

/// Takes the checked documents in their order.
class Check {
public:
    Check(const CheckArguments& arguments, const Reporter& reporter)
        : options_(arguments.check),
          reporter_(reporter),
          writer_(writerOf(options_.format)),
          progress_(arguments.documents.size()),
          documents_(arguments.documents.size()) {}

    void take(const std::string& path, CheckedDocument checked) {
        writeFixed(path, checked);
        if (!checked.diagnostics.empty() || !checked.fixed.empty() || !checked.failures.empty()) progress_.hide();
        if (writer_) writer_->write(checked);
        report(checked);
    }

    void advance(const std::string& path) { progress_.advance(path); }

    /// Ends the run before any document is checked.
    int giveUp(const Failure& failure) {
        if (writer_) writer_->fail(failure);
        reporter_.report(failure);
        status_ = 1;
        return finish();
    }

    int finish() {
        progress_.hide();
        if (writer_)
            writer_->finish();
        else if (const std::string counts = summary(); !counts.empty())
            reporter_.hint(counts);
        return status_;
    }

private:
    /// Puts a document whose text was changed in the place of its file.
    static void writeFixed(const std::string& path, CheckedDocument& checked) {
        if (checked.fixed.empty()) return;
        try {
            writeFile(path, checked.document.text);
        } catch (const IOError&) {
            checked.failures.push_back(describe(std::current_exception()));
            checked.fixed.clear();
            checked.document = std::move(checked.original);
            checked.diagnostics = std::move(checked.originalDiagnostics);
        }
    }

    /// Says what makes the run fail and, unless a writer does, what else there is.
    void report(const CheckedDocument& checked) {
        if (!writer_)
            for (const Diagnostic& fixed : checked.fixed) reporter_.note(fixed, checked.original, "fixed");
        fixed_ += checked.fixed.size();
        for (const CheckedDiagnostic& found : checked.diagnostics) {
            const bool fails = isFailing(found, options_);
            ++counts_[indexOf(found.severity)];
            if (fails) {
                status_ = 1;
                reporter_.report(namingModels(found, checked), checked.document, modelOf(found));
            } else if (!writer_) {
                reporter_.note(namingModels(found, checked), sourceOf(found, checked));
            }
        }
        for (const Failure& failure : checked.failures) {
            ++counts_[indexOf(Severity::error)];
            reporter_.report(failure);
            status_ = 1;
        }
    }

    /// "1 fixed, 2 errors, 1 warning in 3 documents"; empty where nothing was found.
    [[nodiscard]] std::string summary() const {
        std::string text = fixed_ > 0 ? std::to_string(fixed_) + " fixed" : "";
        for (const Severity severity : enumerators<Severity>) {
            const std::size_t count = counts_[indexOf(severity)];
            if (count == 0) continue;
            text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + std::string(name(severity)) +
                    (count == 1 ? "" : "s");
        }
        if (text.empty()) return {};
        return text + " in " + std::to_string(documents_) + (documents_ == 1 ? " document" : " documents");
    }

    const CheckOptions& options_;
    const Reporter& reporter_;
    std::unique_ptr<CheckWriter> writer_;  // null where people read what is found
    Progress progress_;
    std::size_t documents_;
    std::size_t fixed_ = 0;
    std::array<std::size_t, enumeratorCount<Severity>> counts_{};
    int status_ = 0;
};

}  // namespace

int run(const CheckArguments& arguments, const Reporter& reporter) {
    Check check(arguments, reporter);
    ReadModels models(arguments);
    try {
        for (const std::vector<CheckedLook>& looks : arguments.looks)
            for (const CheckedLook& look : looks) models.add(look.model);
    } catch (const std::exception&) {
        return check.giveUp(describe(std::current_exception()));
    }
    const std::vector<DocumentInput>& documents = arguments.documents;
    inOrder<CheckedDocument>(
        documents.size(), [&](std::size_t index) { return checkDocument(arguments, models, index); },
        [&](std::size_t index, CheckedDocument checked) {
            check.take(documents[index].path, std::move(checked));
            check.advance(documents[index].path);
        });
    return check.finish();
}

}  // namespace tavrin::cli
