// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin {

/// A part of a widget that leads to an address when it is tapped.
struct TapTarget {
    enum class Kind : unsigned char {
        widget,     ///< the widget as a whole
        widgetURL,  ///< a view that is marked with an address for the widget
        link,
    };

    Kind kind = Kind::link;
    URL destination;
    /// Where it is seen, in points from the widget's top leading corner: the upright rectangle around what effects make
    /// of the view's frame, as far as clips and the widget's edges leave it.
    Rect frame;

    friend bool operator==(const TapTarget&, const TapTarget&) = default;
};

}  // namespace tavrin

namespace tavrin::layout {

/// The links and marked views of a tree of which something is seen, in the order in which they are drawn: where they
/// overlap the last one is tapped.
std::vector<TapTarget> tapTargets(const LayoutTree& tree);

}  // namespace tavrin::layout
