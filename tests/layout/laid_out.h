// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <iomanip>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/ui/primitive_views.h"

// What the tests of this folder share: laying out in the medium widget, and frames as lists.

namespace tavrin {

inline void PrintTo(const Rect& rect, std::ostream* out) {
    *out << std::setprecision(10) << '[' << rect.origin.x << ", " << rect.origin.y << ", " << rect.size.width << ", "
         << rect.size.height << ']';
}

}  // namespace tavrin

namespace tavrin::layout {

inline constexpr Size mediumWidget{338, 158};
inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr double nan = std::numeric_limits<double>::quiet_NaN();
/// A dimension that is not proposed or not given.
inline constexpr std::nullopt_t absent = std::nullopt;

inline LayoutTree laidOut(const AnyView& root, Size widget = mediumWidget, const EnvironmentValues& environment = {}) {
    return layOut(root, widget, environment, text::TextEngine::ofThisThread());
}

/// A frame as a table writes it; `none` is no view.
struct Frame {
    double x, y, width, height;
    bool isNone = false;
};
inline constexpr Frame none{0, 0, 0, 0, true};

inline bool agree(double a, double b) { return a == b || std::abs(a - b) <= 1e-9; }

/// Compares the frames of all nodes, in pre-order.
inline void expectFrames(const LayoutTree& tree, const std::vector<Frame>& expected) {
    ASSERT_EQ(tree.nodes().size(), expected.size());
    for (std::size_t at = 0; at < expected.size(); ++at) {
        SCOPED_TRACE("node " + std::to_string(at));
        const LayoutNode& node = tree.nodes()[at];
        const Frame& frame = expected[at];
        EXPECT_EQ(node.absent, frame.isNone);
        if (node.absent || frame.isNone) continue;
        EXPECT_TRUE(agree(node.frame.origin.x, frame.x)) << node.frame.origin.x;
        EXPECT_TRUE(agree(node.frame.origin.y, frame.y)) << node.frame.origin.y;
        EXPECT_TRUE(agree(node.frame.size.width, frame.width)) << node.frame.size.width;
        EXPECT_TRUE(agree(node.frame.size.height, frame.height)) << node.frame.size.height;
    }
}

struct FrameRow {
    const char* why;
    AnyView view;
    std::vector<Frame> frames;
};

inline void expectFrames(const std::vector<FrameRow>& rows, Size widget = mediumWidget) {
    for (const FrameRow& row : rows) {
        SCOPED_TRACE(row.why);
        expectFrames(laidOut(row.view, widget), row.frames);
    }
}

inline AnyView framed(std::optional<double> width, std::optional<double> height, AnyView content = Rectangle{}) {
    return FixedFrame{.width = width, .height = height, .content = std::move(content)};
}

}  // namespace tavrin::layout
