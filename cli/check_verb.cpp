#include <algorithm>
#include <exception>
#include <optional>
#include <thread>

#include "cli/check_writer.h"
#include "cli/io_error.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/verbs.h"

namespace tavrin::cli {
namespace {

bool isFailing(const Diagnostic& found, const CheckOptions& options) {
    return found.severity == Severity::error || (options.isStrict && found.severity == Severity::warning);
}

/// Takes the checked documents in their order.
class Check {
public:
    Check(const Arguments& arguments, const Reporter& reporter, const Source* model)
        : options_(arguments.check),
          reporter_(reporter),
          model_(model),
          writer_(checkWriter(options_.format, reporter, model)),
          progress_(arguments.documents.size()) {}

    void take(const std::string& path, CheckedDocument checked) {
        writeFixed(path, checked);
        if (!checked.diagnostics.empty() || !checked.fixed.empty() || checked.unread) progress_.hide();
        for (const Diagnostic& fixed : checked.fixed) reporter_.note(fixed, checked.original, "fixed");
        writer_->write(checked);
        report(checked);
        progress_.advance(path);
    }

    int finish() {
        progress_.hide();
        writer_->finish();
        return status_;
    }

private:
    /// Puts a document whose text was changed in the place of its file.
    static void writeFixed(const std::string& path, CheckedDocument& checked) {
        if (checked.fixed.empty()) return;
        try {
            writeFile(path, checked.document.text);
        } catch (const IOError&) {
            checked.unread = describe(std::current_exception());
            checked.fixed.clear();
        }
    }

    void report(const CheckedDocument& checked) {
        if (checked.unread) reporter_.report(*checked.unread);
        for (const Diagnostic& found : checked.diagnostics) {
            if (found.cause) reporter_.report(describe(found.cause, checked.document, model_));
            if (isFailing(found, options_)) status_ = 1;
        }
        if (checked.unread) status_ = 1;
    }

    const CheckOptions& options_;
    const Reporter& reporter_;
    const Source* model_;
    std::unique_ptr<CheckWriter> writer_;
    Progress progress_;
    int status_ = 0;
};

}  // namespace

int check(const Arguments& arguments, const Reporter& reporter) {
    std::optional<Source> model;
    if (arguments.model) model = Source{displayName(*arguments.model), readInput(*arguments.model)};
    const Source* const modelSource = model ? &*model : nullptr;
    Check check(arguments, reporter, modelSource);
    const std::vector<std::string>& documents = arguments.documents;
    const std::size_t threads = std::min<std::size_t>(documents.size(), std::thread::hardware_concurrency());
    inOrder<CheckedDocument>(
        documents.size(), threads,
        [&](std::size_t index) { return checkDocument(arguments, modelSource, documents[index]); },
        [&](std::size_t index, CheckedDocument checked) { check.take(documents[index], std::move(checked)); });
    return check.finish();
}

}  // namespace tavrin::cli
