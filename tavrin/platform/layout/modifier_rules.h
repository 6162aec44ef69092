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
/// Whether a minimum is larger than its maximum, which then counts as the minimum.
bool isContradictory(const FlexibleFrame& frame);

/// A padding's insets as they hold; one that is not finite insets nothing.
EdgeInsets insetsOf(const Padding& padding);
EdgeInsets insetsOf(const InsetPadding& padding);
Proposal proposalInside(const EdgeInsets& insets, const Proposal& proposal);
Size answerAround(const EdgeInsets& insets, Size content);

/// Whether a ratio can be kept: positive and finite.
bool isRatio(double ratio);
/// The size of a ratio that `proposal` leads to: inside it (fit) or around it (fill) when both dimensions are finite,
/// else the other dimension follows from the finite one. Without a finite one the proposal itself.
Proposal withRatio(double ratio, ContentMode mode, const Proposal& proposal);

/// What lies before a view that is aligned in a room; 0 when either is infinite.
double alignedOffset(double room, double length, double fraction);
Point alignedOffset(Size room, Size view, Alignment alignment);

}  // namespace tavrin::layout
