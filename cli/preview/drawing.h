// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin::cli {

/// What the page wants to see: texts as they stand in its editors, and how they are drawn.
struct Drawing {
    std::optional<std::string> path = std::nullopt;  ///< the document's, as the folder names it
    std::string document = {};
    std::optional<std::string> model = std::nullopt;
    /// What checking looks at; none: the options' own room and appearance.
    std::vector<WidgetRoom> rooms = {};
    std::vector<Appearance> appearances = {};
    WidgetOptions options = {.fetchPolicy = FetchPolicy::publicOnly};  // which keeps documents from naming files
};

/// What came of it.
struct Drawn {
    std::string picture = {};                       ///< a PNG
    std::optional<Date> validUntil = std::nullopt;  ///< see `Widget::validUntil`
    std::vector<std::string> notes = {};
    double milliseconds = 0;
    std::optional<Failure> failure = std::nullopt;
};

/// What it is made of.
struct Explained {
    std::string layout = {};  ///< the laid-out tree, as `tavrin layout` prints it
    std::string explanation =
        {};  ///< its views in the same order, with where they come from and why they lie where they do
    std::optional<Failure> failure = std::nullopt;
};

/// Draws on the calling thread, from what it keeps of the picture before (`KeptPictures`); several may draw at once.
[[nodiscard]] Drawn draw(const Drawing& drawing);
[[nodiscard]] Explained explain(const Drawing& drawing);

}  // namespace tavrin::cli
