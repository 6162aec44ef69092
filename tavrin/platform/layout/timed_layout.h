// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/loaded_bodies.h"
#include "tavrin/platform/layout/measurer.h"

namespace tavrin::layout {

/// One view, laid out at one moment after another. What the moment can change is known: the texts of timers, the turn
/// of clock hands, the bodies of composed views. Sizes and places are worked out again only where a timer's new text
/// takes another size, or where a composed view is not known to leave the moment alone. What views wait for is waited
/// for once.
///
/// Not thread-safe; the text engine must outlive it.
class TimedLayout {
public:
    TimedLayout(AnyView root, Size widget, EnvironmentValues environment, text::TextEngine& texts,
                Diagnostics diagnostics = {});
    TimedLayout(const TimedLayout&) = delete;
    TimedLayout& operator=(const TimedLayout&) = delete;

    /// Brings the tree to a moment; says whether anything that is drawn may differ from the moment before. Throws what
    /// `layOut` does.
    bool moveTo(Date moment);

    /// The tree at the last moment; empty before the first.
    [[nodiscard]] const LayoutTree& tree() const { return tree_; }

    /// How many times sizes and places were worked out.
    [[nodiscard]] std::size_t layoutCount() const { return layoutCount_; }

private:
    enum class TimerChange : unsigned char { none, text, size };

    void layOutNow();
    TimerChange renewTimers();
    [[nodiscard]] bool handsMove(Date before, Date now) const;

    AnyView root_;
    Size widget_;
    EnvironmentValues environment_;
    text::TextEngine& texts_;
    Diagnostics diagnostics_;
    std::optional<LoadedBodies> loaded_;
    LayoutTree tree_;
    std::optional<Measurer> measurer_;  // of `tree_`
    std::size_t layoutCount_ = 0;
    bool isCurrent_ = false;
    bool bodiesMayReadDate_ = false;
};

}  // namespace tavrin::layout
