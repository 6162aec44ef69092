// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "tavrin/engine/tavrin_engine.h"
#include "tavrin/platform/foundation/net/url.h"

namespace tavrin::cli {

/// A picture that a document names.
struct NamedPicture {
    URL url;
    std::string fileName;  ///< what it is called in a folder of pictures
};

/// What a verb makes of one document.
struct Outcome {
    /// The picture or the text; empty for a failure.
    std::string bytes = {};
    /// Numbered frames instead, each a picture; those that are equal share it.
    std::vector<std::shared_ptr<const std::string>> frames = {};
    /// What was doubtful, a line each.
    std::vector<std::string> notes = {};
    /// For `fetch`: the pictures that the document names.
    std::vector<NamedPicture> pictures = {};
    std::optional<Failure> failure = std::nullopt;
};

/// Tells a context what the arguments say about loading.
void setUp(Context& context, const Arguments& arguments);

/// Makes of every document what the verb asks for and hands the outcomes over in the documents' order; several
/// documents are worked on by several threads. Throws `IOError` for a model that cannot be read, and passes on what
/// `take` throws.
void produceAll(const Arguments& arguments, const std::function<void(const std::string& document, Outcome)>& take);

}  // namespace tavrin::cli
