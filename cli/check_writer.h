#pragma once

#include <memory>

#include "cli/checked_document.h"
#include "cli/reporter.h"

namespace tavrin::cli {

/// Writes what was found in documents, one after the other. May throw `IOError` and `ClosedOutput`.
class CheckWriter {
public:
    virtual ~CheckWriter() = default;

    virtual void write(const CheckedDocument& checked) = 0;
    /// After the last document.
    virtual void finish() {}
};

/// A writer of one of the formats. `model` may be null; both must live as long.
[[nodiscard]] std::unique_ptr<CheckWriter> checkWriter(CheckFormat format, const Reporter& reporter,
                                                       const Source* model);

[[nodiscard]] std::unique_ptr<CheckWriter> textCheckWriter(const Reporter& reporter, const Source* model);
[[nodiscard]] std::unique_ptr<CheckWriter> jsonCheckWriter();
[[nodiscard]] std::unique_ptr<CheckWriter> sarifCheckWriter(const Source* model);
[[nodiscard]] std::unique_ptr<CheckWriter> githubCheckWriter(const Source* model);

/// The text that a diagnostic is about.
[[nodiscard]] inline const Source& sourceOf(const Diagnostic& found, const Source& document, const Source* model) {
    return found.role == TextRole::model && model ? *model : document;
}

}  // namespace tavrin::cli
