// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/timed_layout.h"

#include <algorithm>
#include <string>
#include <utility>

#include "tavrin/platform/layout/effects.h"
#include "tavrin/platform/layout/layout_steps.h"
#include "tavrin/platform/layout/tree_builder.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin::layout {
namespace {

/// Whether any body may be another at another moment. What waits for something outside is waited for once, and so has
/// one body.
bool anyBodyMayReadDate(const LayoutTree& tree) {
    return std::any_of(tree.nodes().begin(), tree.nodes().end(), [](const LayoutNode& node) {
        return node.kind == ViewKind::composed && node.view->box().mayReadDate() && !node.view->box().loading();
    });
}

}  // namespace

TimedLayout::TimedLayout(AnyView root, Size widget, EnvironmentValues environment, text::TextEngine& texts,
                         Diagnostics diagnostics)
    : root_(std::move(root)),
      widget_(widget),
      environment_(std::move(environment)),
      texts_(texts),
      diagnostics_(std::move(diagnostics)) {}

bool TimedLayout::moveTo(Date moment) {
    const Date before = std::exchange(environment_.date, moment);
    if (isCurrent_ && before == moment) return false;
    const bool isKept = std::exchange(isCurrent_, false) && !bodiesMayReadDate_;  // not current if anything throws
    TimerChange change = TimerChange::size;
    if (isKept) {
        tree_.environment_.date = moment;
        change = renewTimers();
    }
    if (change == TimerChange::size) layOutNow();
    isCurrent_ = true;
    return change != TimerChange::none || handsMove(before, moment);
}

void TimedLayout::layOutNow() {
    if (loaded_)
        loaded_->repeat();
    else
        loaded_ = LoadedBodies::under(root_);
    measurer_.reset();
    tree_ = LayoutTree(widget_, environment_);
    measurer_.emplace(tree_, texts_);
    unrollAndPlace(tree_, root_, *loaded_, *measurer_, texts_, std::exchange(diagnostics_, {}));
    bodiesMayReadDate_ = anyBodyMayReadDate(tree_);
    ++layoutCount_;
}

TimedLayout::TimerChange TimedLayout::renewTimers() {
    TimerChange change = TimerChange::none;
    for (auto& [text, shown, proposal] : tree_.timers_) {
        const Text& timer = *tree_.node(text).view->as<Text>();
        std::string next = timerText(std::get<Date>(timer.content), tree_.environment_.date);
        if (next == shown) continue;
        shown = std::move(next);
        LayoutTree::TextItem& item = tree_.texts_[tree_.node(text).detail];
        item.shaped = texts_.shape(shown, effectiveFont(timer, tree_.environment_));
        item.bytes = shown.size();
        if (!measurer_->renewTimer(text)) return TimerChange::size;
        if (proposal) item.block = measurer_->textBlock(text, *proposal);
        change = TimerChange::text;
    }
    return change;
}

bool TimedLayout::handsMove(Date before, Date now) const {
    return std::any_of(tree_.clockHands_.begin(), tree_.clockHands_.end(), [&](LayoutTree::Index index) {
        const auto& hand = *tree_.node(index).view->as<ClockHandRotationEffect>();
        return clockHandAngle(hand.period, hand.timeZone, before) != clockHandAngle(hand.period, hand.timeZone, now);
    });
}

}  // namespace tavrin::layout
