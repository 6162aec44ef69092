// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/layout/proposal.h"
#include "tavrin/platform/ui/view_modifiers.h"

// How a modifier changes a proposal on its way in and an answer on its way out.

namespace tavrin::layout {

/// A length that no layout makes negative or NaN.
double atLeastZero(double length);

Proposal proposalInside(const FixedFrame& frame, const Proposal& proposal);
Size answerAround(const FixedFrame& frame, Size content);

Proposal proposalInside(const FlexibleFrame& frame, const Proposal& proposal);
Size answerAround(const FlexibleFrame& frame, const Proposal& proposal, Size content);
/// What the content is proposed when it is placed in a frame of the size `own`, which answered to `proposal`: that
/// size, but nothing in a dimension in which nothing was proposed and no bound decided.
Proposal placedProposalInside(const FlexibleFrame& frame, const Proposal& proposal, Size own);
/// Whether a minimum is larger than its maximum, which then counts as the minimum.
bool isContradictory(const FlexibleFrame& frame);

/// A padding's insets as they hold; one that is not finite insets nothing.
EdgeInsets insetsOf(const Padding& padding);
EdgeInsets insetsOf(const InsetPadding& padding);
Proposal proposalInside(const EdgeInsets& insets, const Proposal& proposal);
Size answerAround(const EdgeInsets& insets, Size content);

/// Which edges of a view a modifier moves, so that they become plain; of any other view none.
Edges movedEdges(const AnyView& modifier);

/// The ratio of a view's own size; 1 where its sides are equal, also when both are 0 or infinite.
double ratioOf(Size size);
/// Whether a ratio can be kept: positive and finite.
bool isRatio(double ratio);
/// The size of a ratio that `proposal` leads to: the largest inside it (fit) or the smallest around it (fill) where
/// both dimensions are given, also infinite ones; else the other dimension follows from the one given.
Proposal withRatio(double ratio, ContentMode mode, const Proposal& proposal);

/// What lies before a view that is aligned in a room; 0 when either is infinite.
double alignedOffset(double room, double length, double fraction);
Point alignedOffset(Size room, Size view, Alignment alignment);

}  // namespace tavrin::layout
