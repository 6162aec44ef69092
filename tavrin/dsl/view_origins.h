// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

#include "tavrin/platform/foundation/coding_path.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

/// Where in its document each view of a tree comes from. Immutable; safe to read from several threads.
class ViewOrigins {
public:
    struct Paths;
    ViewOrigins(AnyView root, std::shared_ptr<const Paths> paths) : root_(std::move(root)), paths_(std::move(paths)) {}

    /// The way to the node or modifier that made a view; of a node behind a reference, to where it is written. Null for
    /// a view that the document did not make itself, such as what a composed view unfolds into.
    [[nodiscard]] const CodingPath* find(const AnyView& view) const;

private:
    AnyView root_;  // keeps the views, and so their addresses
    std::shared_ptr<const Paths> paths_;
};

}  // namespace tavrin
