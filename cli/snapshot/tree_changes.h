// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/platform/foundation/coding_path.h"

namespace tavrin::cli {

/// A view of a laid-out tree that is not what it was.
struct ViewChange {
    /// The way to the view in the tree as it is now; of one that was removed, to the view that held it.
    CodingPath way = {};
    /// Which view it is: "the Text", or "the root" where no view is around.
    std::string view = {};
    /// What has changed first: "font.system was 22 and is 24".
    std::string what = {};
    /// How much else of it has.
    std::size_t more = 0;
    /// Where in the document the view comes from, once that was looked for and found.
    std::optional<CodingPath> origin = std::nullopt;

    /// In words, without a full stop; they name the way in the tree where no origin is known.
    [[nodiscard]] std::string words() const;
};

/// In what two trees differ.
struct TreeChanges {
    static constexpr std::size_t mostViews = 20;

    /// The views that have changed, in the order of the tree, the first of them only.
    std::vector<ViewChange> views = {};
    /// Whether there are more than those, or may be: of very many differences the first ones count.
    bool areMore = false;
    /// Whether no view has changed, but where they lie.
    bool areMoved = false;
    /// Whether the kept tree could not be read.
    bool isUnread = false;

    [[nodiscard]] bool none() const { return views.empty() && !areMoved && !isUnread; }
};

/// Compares a kept tree with the one as it is now, by their values. Places and sizes of views follow from what the
/// views are, and count for themselves only where nothing else differs.
[[nodiscard]] TreeChanges treeChanges(const std::string& kept, const std::string& drawn);

}  // namespace tavrin::cli
