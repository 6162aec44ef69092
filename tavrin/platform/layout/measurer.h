// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/kept_answers.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/proposal.h"
#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin::layout {

/// Answers proposals for the nodes of one tree. Nodes that ask their content more than once remember their answers, so
/// that nesting them does not multiply the work.
class Measurer {
public:
    using Index = LayoutTree::Index;

    /// What one child of a stack was proposed along the stack's axis, and its answer.
    struct Share {
        std::optional<double> proposed;
        Size size;
        double least = 0;        ///< its answer to 0, where it was asked; an infinite one counts as 0
        double flexibility = 0;  ///< by how much it can be longer; known where its group has turns
        bool hasTurn = false;    ///< whether the children of its group were dealt shares by flexibility
        double remainder = 0;    ///< what was divided by the number of children left in its group
    };

    Measurer(LayoutTree& tree, text::TextEngine& texts);

    /// Prepares for the nodes that have come to the tree; to be called before anything is asked.
    void takeIn();
    /// Takes over what nodes answered that are the same as in an earlier tree.
    void takeOver(const EarlierLayout& earlier);
    /// Hands over all answers; nothing can be asked any more.
    void giveAway(KeptAnswers& kept);

    /// The node that was asked last.
    [[nodiscard]] Index lastAsked() const { return lastAsked_; }

    /// The size a present node takes when it is proposed that. Never NaN, never negative.
    Size answer(Index index, const Proposal& proposal);

    /// The lines of a text in the room it is proposed.
    text::TextBlock textBlock(Index text, const Proposal& proposal);

    /// What an aspect ratio makes of a proposal to itself.
    Proposal proposalInside(Index aspectRatio, const Proposal& proposal);

    /// Shares out a vertical or horizontal stack's room among its children. The shares, in document order, are
    /// `share(first + k)` with the returned `first` until `release(first)`; sharings are released last first.
    std::size_t shareOut(Index stack, const Proposal& proposal);
    [[nodiscard]] const Share& share(std::size_t at) const { return shares_[at]; }
    /// Which child, counted in document order, was dealt a share after so many others: for `first + turn`. Those that
    /// yield come last.
    [[nodiscard]] std::uint32_t childInTurn(std::size_t at) const { return order_[at]; }
    void release(std::size_t first);

private:
    Size textAnswer(Index text, const Proposal& proposal);
    Size freshAnswer(Index index, const Proposal& proposal);
    Size stackAnswer(Index stack, const Proposal& proposal);
    [[nodiscard]] bool isMissingPicture(Index index) const;
    Size layeredAnswer(Index zstack, const Proposal& proposal);
    [[nodiscard]] bool isTimer(Index text) const;
    bool fitsUnbroken(Index text, const Proposal& proposal);
    const text::TextBlock& ideal(Index text);
    text::TextBlock broken(Index text, const Proposal& proposal);
    double extentAlong(Axis axis, Index index, const Proposal& proposal);
    std::size_t putYieldingLast(std::size_t first, Index stack);
    double leastAlong(Axis axis, Index index, const Proposal& proposal);
    /// Children that share out some room among them: `order_[begin]` up to `order_[end]`, of the shares from `first`.
    struct Group {
        std::size_t first;
        std::size_t begin;
        std::size_t end;
    };
    void sortByFlexibility(const Group& group, Index stack, const Proposal& proposal);
    double dealOut(const Group& group, Index stack, const Proposal& proposal, double remainder);

    LayoutTree& tree_;
    Index lastAsked_ = 0;
    text::TextEngine& engine_;
    pool::Vector<AnswerMemory<Size>> containers_;
    pool::Vector<TextAnswers> texts_;
    pool::Vector<Share> shares_;         // of the sharings under way, innermost last
    pool::Vector<std::uint32_t> order_;  // the same, in the order in which shares are dealt
};

}  // namespace tavrin::layout
