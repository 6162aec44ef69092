// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/answer_memory.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/proposal.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::layout {

/// What a text answers where it need not be broken, and elsewhere; of a timer, to all that it was proposed.
struct TextAnswers {
    text::TextBlock ideal;
    bool idealKnown = false;
    AnswerMemory<text::TextBlock> broken;
};

/// What was asked and answered when a tree was laid out.
struct KeptAnswers {
    pool::Vector<AnswerMemory<Size>> containers;  ///< of the nodes that remember, by their details
    pool::Vector<TextAnswers> texts;              ///< by their details
    pool::Vector<Proposal> proposals;             ///< what each node was placed with

    /// About what memory they take.
    [[nodiscard]] std::size_t byteCount() const;
};

/// What an earlier tree tells of the same views in another one. A view's answers follow from what it is and holds, and
/// the places in it from what it was proposed and where it lies; so where two trees have the same kinds of views in the
/// same order, only those that are not alike need be asked, and those around them.
class EarlierLayout {
public:
    using Index = LayoutTree::Index;

    /// Tells nothing.
    EarlierLayout() = default;
    /// `before` has kept its answers, at the same scale and of the same text engine; `now` is unrolled. What geometry
    /// readers hold is not known yet, and so not compared.
    EarlierLayout(const LayoutTree& before, const LayoutTree& now);

    /// Whether a view of the new tree, with all it holds, answers and places as that of the earlier one.
    [[nodiscard]] bool isSame(Index index) const {
        return index < nextOther_.size() && nextOther_[index] >= before_->node(index).end;
    }
    /// Whether in addition it was placed there.
    [[nodiscard]] bool isSamePlace(Index index, const Proposal& proposal, const Rect& frame) const;
    [[nodiscard]] const LayoutTree& tree() const { return *before_; }

private:
    const LayoutTree* before_ = nullptr;
    pool::Vector<Index> nextOther_;  // from each view on, the first that is not alike
};

}  // namespace tavrin::layout
