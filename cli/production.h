// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/input.h"
#include "tavrin/widget/document.h"

namespace tavrin::cli {

/// What a verb makes of one document.
struct Outcome {
    /// The picture or the text; empty for a failure.
    std::string bytes = {};
    /// Writes what comes before that, where it is too long to be kept.
    std::function<void(const TextSink&)> longText = {};
    /// Numbered frames instead, each a picture; those that are equal share it.
    std::vector<std::shared_ptr<const std::string>> frames = {};
    /// What was doubtful, a line each.
    std::vector<std::string> notes = {};
    /// For `fetch`: the pictures that the document names.
    std::vector<NamedPicture> pictures = {};
    std::optional<Failure> failure = std::nullopt;
};

/// A document that is worked on.
struct Production {
    const DocumentInput& input;
    const Source& source;
    const BoundDocument& document;
    const WidgetOptions& options;  ///< which make lines of the outcome's notes
    Outcome& outcome;
};

/// Lets options make lines of what is doubtful; the lines must live as long as what is made with the options.
[[nodiscard]] WidgetOptions noting(WidgetOptions options, std::vector<std::string>& lines);

/// Notes of a document that has no model that it has expressions, if it has.
void noteMissingModel(const Source& document, std::vector<std::string>& notes);

/// Binds every document and lets `make` work on it, several by several threads; what either throws becomes the
/// document's failure. Hands the outcomes to `take`, in the documents' order. Throws `IOError` for a model that cannot
/// be read where that ends the run, and passes on what `take` throws.
void produceAll(const DocumentArguments& arguments, const std::function<void(const Production&)>& make,
                const std::function<void(const DocumentInput& document, Outcome)>& take);

}  // namespace tavrin::cli
