// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/input.h"
#include "cli/read_models.h"

namespace tavrin::cli {

/// Something that was found in a document.
struct CheckedDiagnostic : Diagnostic {
    /// The models with which it was; empty where the document has none.
    std::vector<const Source*> models = {};
};

/// What `tavrin check` found in one document with all of its models.
struct CheckedDocument {
    Source document;
    std::vector<const Source*> models = {};  ///< those that it was looked at with
    /// Each once, with however many models it was found.
    std::vector<CheckedDiagnostic> diagnostics = {};
    /// What kept it from being checked, or from being checked with some model.
    std::vector<Failure> failures = {};
    /// What was fixed, with places in the text as it was; `document` is the text now, where there is any of these.
    std::vector<Diagnostic> fixed = {};
    /// The text, and what was found in it, before anything was fixed.
    Source original = {};
    std::vector<CheckedDiagnostic> originalDiagnostics = {};
};

/// Reads and checks the document at a place with all of its models, and makes its fixes where that is asked for; they
/// are not written yet. Several threads may call it at once.
[[nodiscard]] CheckedDocument checkDocument(const CheckArguments& arguments, const ReadModels& models, std::size_t at);

/// The model whose text a diagnostic may be about; null where it has none.
[[nodiscard]] inline const Source* modelOf(const CheckedDiagnostic& found) {
    return found.models.empty() ? nullptr : found.models.front();
}

/// The text that a diagnostic of a checked document is about.
[[nodiscard]] inline const Source& sourceOf(const CheckedDiagnostic& found, const CheckedDocument& checked) {
    return sourceOf(found, checked.document, modelOf(found));
}

/// Whether something about a document is found with some of its models only.
[[nodiscard]] inline bool isOfSomeModels(const CheckedDiagnostic& found, const CheckedDocument& checked) {
    return found.models.size() < checked.models.size();
}

/// The diagnostic as it is told where nothing else names the models: "… (with models/a.json)".
[[nodiscard]] CheckedDiagnostic namingModels(const CheckedDiagnostic& found, const CheckedDocument& checked);

}  // namespace tavrin::cli
