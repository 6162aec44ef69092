// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/input.h"

namespace tavrin::cli {

/// What `tavrin check` found in one document.
struct CheckedDocument {
    Source document;
    std::vector<Diagnostic> diagnostics = {};
    /// Where the document could not even be read.
    std::optional<Failure> unread = std::nullopt;
    /// What was fixed, with places in the text as it was; `document` is the text now, where there is any of these.
    std::vector<Diagnostic> fixed = {};
    /// The text, and what was found in it, before anything was fixed.
    Source original = {};
    std::vector<Diagnostic> originalDiagnostics = {};
};

/// Reads and checks a document, and makes its fixes where that is asked for; they are not written yet. `model` may be
/// null. Several threads may call it at once.
[[nodiscard]] CheckedDocument checkDocument(const CheckArguments& arguments, const Source* model,
                                            const std::string& path);

}  // namespace tavrin::cli
