// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/measurer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/layout/leaf_rules.h"
#include "tavrin/platform/layout/modifier_rules.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::layout {
namespace {

/// A length that breaks lines; an infinite one does not.
std::optional<double> finite(const std::optional<double>& length) {
    return length && std::isfinite(*length) ? length : std::nullopt;
}

/// Breaking a text takes a step for so many bytes of it.
constexpr std::size_t bytesBroken = 8;

}  // namespace

Measurer::Measurer(LayoutTree& tree, text::TextEngine& texts) : tree_(tree), engine_(texts) {}

void Measurer::takeIn() {
    containers_.resize(tree_.containers_.size());
    texts_.resize(tree_.texts_.size());
}

void Measurer::takeOver(const EarlierLayout& earlier) {
    const auto count = static_cast<Index>(tree_.nodes_.size());
    for (Index index = 0; index < count; ++index) {
        if (!earlier.isSame(index)) continue;
        const LayoutNode& node = tree_.node(index);
        const KeptAnswers& kept = *earlier.tree().answers();
        if (node.remembers) containers_[node.detail] = kept.containers[node.detail];
        if (node.kind == ViewKind::text) texts_[node.detail] = kept.texts[node.detail];
    }
}

void Measurer::giveAway(KeptAnswers& kept) {
    kept.containers = std::move(containers_);
    kept.texts = std::move(texts_);
}

Size Measurer::answer(Index index, const Proposal& proposal) {
    ++tree_.answerCount_;
    lastAsked_ = index;
    Meter::ofThisThread().step();
    const LayoutNode& node = tree_.node(index);
    if (!node.remembers) return freshAnswer(index, proposal);
    AnswerMemory<Size>& memory = containers_[node.detail];
    if (const Size* known = memory.find(proposal)) return *known;
    const Size size = freshAnswer(index, proposal);
    memory.keep(proposal, size);
    return size;
}

Size Measurer::freshAnswer(Index index, const Proposal& proposal) {
    const LayoutNode& node = tree_.node(index);
    switch (node.kind) {
        case ViewKind::emptyView: return {};
        case ViewKind::spacer:
            return spacerAnswer(*node.view->as<Spacer>(), static_cast<SpacerAxes>(node.detail), proposal);
        case ViewKind::text: return textAnswer(index, proposal);
        case ViewKind::image: return imageAnswer(*node.view->as<Image>(), proposal);
        case ViewKind::color:
        case ViewKind::linearGradient:
        case ViewKind::rectangle:
        case ViewKind::roundedRectangle:
        case ViewKind::capsule:
        case ViewKind::geometryReader: return fillingAnswer(proposal);
        case ViewKind::trimmedShape: return shapeAnswer(*node.view->as<TrimmedShape>(), proposal);
        case ViewKind::circle: return squareAnswer(proposal);
        case ViewKind::filledShape: return shapeAnswer(node.view->as<FilledShape>()->shape, proposal);
        case ViewKind::strokedShape: return shapeAnswer(node.view->as<StrokedShape>()->shape, proposal);
        case ViewKind::vstack:
        case ViewKind::hstack: return stackAnswer(index, proposal);
        case ViewKind::zstack: return layeredAnswer(index, proposal);
        case ViewKind::aspectRatio: return answer(index + 1, proposalInside(index, proposal));
        case ViewKind::fixedFrame: {
            const auto& frame = *node.view->as<FixedFrame>();
            return answerAround(frame, answer(index + 1, layout::proposalInside(frame, proposal)));
        }
        case ViewKind::flexibleFrame: {
            const auto& frame = *node.view->as<FlexibleFrame>();
            return answerAround(frame, proposal, answer(index + 1, layout::proposalInside(frame, proposal)));
        }
        case ViewKind::padding: {
            const EdgeInsets insets = insetsOf(*node.view->as<Padding>());
            return answerAround(insets, answer(index + 1, layout::proposalInside(insets, proposal)));
        }
        case ViewKind::insetPadding: {
            const EdgeInsets insets = insetsOf(*node.view->as<InsetPadding>());
            return answerAround(insets, answer(index + 1, layout::proposalInside(insets, proposal)));
        }
        case ViewKind::link:
        case ViewKind::offset:
        case ViewKind::scaleEffect:
        case ViewKind::rotationEffect:
        case ViewKind::rotation3DEffect:
        case ViewKind::clockHandRotationEffect:
        case ViewKind::lineLimit:
        case ViewKind::zIndex:
        case ViewKind::foregroundColor:
        case ViewKind::border:
        case ViewKind::clipShape:
        case ViewKind::clipped:
        case ViewKind::cornerRadius:
        case ViewKind::opacity:
        case ViewKind::widgetURL:
        case ViewKind::composed:
        case ViewKind::background:
        case ViewKind::overlay: break;
    }
    return answer(tree_.content(index), proposal);
}

Proposal Measurer::proposalInside(Index aspectRatio, const Proposal& proposal) {
    const auto& [givenRatio, mode, content] = *tree_.node(aspectRatio).view->as<AspectRatio>();
    if (!proposal.width && !proposal.height) return proposal;
    if (!givenRatio && isMissingPicture(aspectRatio + 1)) return proposal;
    const double ratio = givenRatio ? *givenRatio : ratioOf(answer(aspectRatio + 1, {}));
    return isRatio(ratio) ? withRatio(ratio, mode, proposal) : proposal;
}

/// A picture that is not there has no ratio of its own, though it answers 0 x 0.
bool Measurer::isMissingPicture(Index index) const {
    while (traitsOf(tree_.node(index).kind).isTransparentToLayout) index = tree_.content(index);
    const auto* image = tree_.node(index).view->as<Image>();
    return image && !image->bitmap;
}

/// Passes its proposal to its children and is as large as those of the highest priority: what yields counts only where
/// there is nothing else.
Size Measurer::layeredAnswer(Index zstack, const Proposal& proposal) {
    const std::span<const Index> children = tree_.presentChildren(zstack);
    const bool allYield =
        std::all_of(children.begin(), children.end(), [&](Index child) { return tree_.node(child).yields; });
    Size size;
    for (const Index child : children) {
        if (tree_.node(child).yields && !allYield) continue;
        const Size answered = answer(child, proposal);
        size = {std::max(size.width, answered.width), std::max(size.height, answered.height)};
    }
    return size;
}

Size Measurer::textAnswer(Index text, const Proposal& proposal) {
    const text::TextBlock block = textBlock(text, proposal);
    Size size = block.size();
    if (!proposal.width) return size;
    if (isTimer(text) || size.width > *proposal.width) size.width = *proposal.width;
    return size;
}

text::TextBlock Measurer::textBlock(Index text, const Proposal& proposal) {
    if (fitsUnbroken(text, proposal)) return ideal(text);
    AnswerMemory<text::TextBlock>& memory = texts_[tree_.node(text).detail].broken;
    if (const text::TextBlock* known = memory.find(proposal)) return *known;
    text::TextBlock block = broken(text, proposal);
    memory.keep(proposal, block);
    return block;
}

bool Measurer::isTimer(Index text) const {
    return std::holds_alternative<Date>(tree_.node(text).view->as<Text>()->content);
}

bool Measurer::fitsUnbroken(Index text, const Proposal& proposal) {
    const Size size = ideal(text).size();
    return proposal.width.value_or(size.width) >= size.width && proposal.height.value_or(size.height) >= size.height;
}

const text::TextBlock& Measurer::ideal(Index text) {
    TextAnswers& memory = texts_[tree_.node(text).detail];
    if (!memory.idealKnown) {
        memory.ideal = broken(text, {});
        memory.idealKnown = true;
    }
    return memory.ideal;
}

text::TextBlock Measurer::broken(Index text, const Proposal& proposal) {
    const LayoutTree::TextItem& item = tree_.texts_[tree_.node(text).detail];
    Meter::ofThisThread().step(item.bytes / bytesBroken);
    return engine_.fit(item.shaped, {.width = finite(proposal.width),
                                     .height = finite(proposal.height),
                                     .lineLimit = tree_.inherited(text).lineLimit,
                                     .scale = tree_.environment().displayScale});
}

}  // namespace tavrin::layout
