// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/platform/explain/placed_tree.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin {

/// Why one view of a laid-out tree has its size and place. Lengths are in points.
struct ViewExplanation {
    /// The node in the laid-out tree that is explained.
    layout::LayoutTree::Index node = 0;
    /// The view that holds it, by its place in the list of all explanations; none for the root.
    std::optional<std::size_t> parent = std::nullopt;
    /// How many views hold it.
    std::size_t depth = 0;
    /// Its name in the view tree; with what a text shows: `Text "Hello"`.
    std::string name;
    std::string title;
    /// Where in the document it comes from, if that is known.
    std::optional<CodingPath> origin = std::nullopt;
    /// Where it lies, from the widget's top leading corner and before any effect; absent when it is no view.
    std::optional<Rect> frame = std::nullopt;
    layout::Proposal proposal = {};
    /// How its stack came to the proposal, where one shared out its room.
    std::optional<layout::StackShare> share = std::nullopt;
    /// The deciding reasons in a few words.
    std::string summary;
    /// Why it was proposed that, why it answered so and why it lies there, a sentence or more each. Empty when it is no
    /// view; the summary says so.
    std::string whyProposed;
    std::string whyAnswered;
    std::string whyPlaced;
};

/// The views of a tree that `tavrin layout` shows, in the same order, each after what holds it. Of what a composed view
/// unfolds into only views that have an origin are explained, such as those that a document hands to it.
using Explanation = std::vector<ViewExplanation>;

/// Explains a tree that was laid out with `Recording::placements`; anything else is a violated precondition. Throws
/// `TavrinError` of kind "Engine" for more than 100,000 views, and what the thread's budget says when that ends.
///
///     tavrin::ImageRenderer renderer(view, {.recording = tavrin::layout::Recording::placements});
///     const auto why = tavrin::explainLayout(renderer.layoutTree(), [&](auto& v) { return context.origins()->find(v);
///     });
[[nodiscard]] Explanation explainLayout(const layout::LayoutTree& tree, const explain::OriginOf& originOf = {});

/// The places in the list of the views that a path of the document, as errors print it, leads to: those that come from
/// there; else the nearest that come from below it; else the nearest from above. Empty where there are none.
[[nodiscard]] std::vector<std::size_t> viewsAt(const Explanation& explanation, std::string_view path);

/// Every view in one line, indented by what holds it: its size, place, summary and origin.
[[nodiscard]] std::string outlineText(const Explanation& explanation);
/// Some views in full sentences.
[[nodiscard]] std::string explanationText(const Explanation& explanation, std::span<const std::size_t> chosen);
/// The same as JSON: `{"views": [{"view": …, "origin": …, "frame": [x, y, width, height], …}]}`; lengths that are
/// absent are null, infinite ones "infinity".
[[nodiscard]] std::string explanationJSON(const Explanation& explanation, std::span<const std::size_t> chosen);
/// The same of all views.
[[nodiscard]] std::string explanationJSON(const Explanation& explanation);

}  // namespace tavrin
