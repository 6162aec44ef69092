// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/input.h"
#include "cli/read_models.h"

namespace tavrin::cli {

/// What `tavrin check` found in one document with one model.
struct CheckedDocument {
    Source document;
    const Source* model = nullptr;  ///< null where there is none; one of the models that were read
    std::vector<Diagnostic> diagnostics = {};
    /// Where the document could not even be read.
    std::optional<Failure> unread = std::nullopt;
    /// What was fixed, with places in the text as it was; `document` is the text now, where there is any of these.
    std::vector<Diagnostic> fixed = {};
    /// The text, and what was found in it, before anything was fixed.
    Source original = {};
    std::vector<Diagnostic> originalDiagnostics = {};
};

/// Reads and checks the document at a place with each of its models, and makes its fixes where that is asked for; they
/// are not written yet. What was found with one model is not told again with the next. Several threads may call it at
/// once.
[[nodiscard]] std::vector<CheckedDocument> checkDocument(const CheckArguments& arguments, const ReadModels& models,
                                                         std::size_t at);

/// The text that a diagnostic of a checked document is about.
[[nodiscard]] inline const Source& sourceOf(const Diagnostic& found, const CheckedDocument& checked) {
    return sourceOf(found, checked.document, checked.model);
}

}  // namespace tavrin::cli
