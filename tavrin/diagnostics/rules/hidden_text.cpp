// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tavrin/diagnostics/drawn_rules.h"
#include "tavrin/platform/text/block_contents.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/platform/ui/views.h"
#include "tavrin/schema/note_text.h"

namespace tavrin {
namespace {

/// Whether a text would be seen if it lay elsewhere: it has letters, a size and a colour.
bool wouldBeSeen(const DrawnSubject& subject, const DrawnView& text) {
    const Rect place = textBounds(subject, text);
    if (layout::isEmpty(place) || !std::isfinite(place.size.width) || !std::isfinite(place.size.height)) return false;
    const Appearance appearance = subject.tree.environment().appearance;
    if (!(subject.tree.inherited(text.index).foregroundColor.resolved(appearance).opacity > 0)) return false;
    const std::string_view letters = text::contentsOf(subject.tree.textBlock(text.index)).text;
    return letters.find_first_not_of(" \t\n\r") != std::string_view::npos;
}

using Index = layout::LayoutTree::Index;

/// The views around each view of a tree. The root, and what it does not hold by itself, stand in the root.
std::vector<Index> parentsIn(const layout::LayoutTree& tree) {
    std::vector<Index> parents(tree.nodes().size(), 0);
    for (Index at = 0; at < parents.size(); ++at)
        for (const Index child : tree.children(at)) parents[child] = at;
    return parents;
}

/// What left a text no more room: the innermost frame that is smaller than the widget, or the largest neighbour in a
/// stack.
class RoomTaker {
public:
    explicit RoomTaker(const DrawnSubject& subject) : subject_(subject), tree_(subject.tree) {}

    /// In words that follow the message.
    [[nodiscard]] std::string takenFrom(Index text) {
        if (parents_.empty()) parents_ = parentsIn(tree_);
        for (Index at = text; at != 0; at = parents_[at]) {
            const AnyView& around = *tree_.node(parents_[at]).view;
            std::string taken;
            if (const auto* const frame = around.as<FixedFrame>())
                taken = byFrame(*frame);
            else if (around.as<HStack>())
                taken = byNeighbour(parents_[at], at, true);
            else if (around.as<VStack>())
                taken = byNeighbour(parents_[at], at, false);
            if (!taken.empty()) return taken;
        }
        return "; the widget has no more room: fewer words or a smaller font would help";
    }

private:
    static std::string byFrame(const FixedFrame& frame) {
        if (!frame.width && !frame.height) return {};
        const std::string size = frame.width && frame.height
                                     ? numberText(*frame.width) + " × " + numberText(*frame.height)
                                 : frame.width ? "width " + numberText(*frame.width)
                                               : "height " + numberText(*frame.height);
        return "; the frame of " + size +
               " leaves it no more room: a larger one, fewer words or a smaller font would help";
    }

    /// A child of a stack, and how wide or, in a column, high it is.
    struct Extent {
        std::optional<Index> child;
        double points = 1;  // less is not worth a word
    };

    /// The two children that take most; found once for each stack.
    [[nodiscard]] const std::array<Extent, 2>& largest(Index stack, bool isRow) {
        const auto [known, isNew] = largest_.try_emplace(stack);
        if (!isNew) return known->second;
        auto& [first, second] = known->second;
        for (const Index child : tree_.children(stack)) {
            const layout::LayoutNode& node = tree_.node(child);
            const double points = isRow ? node.frame.size.width : node.frame.size.height;
            if (node.absent || !std::isfinite(points) || !(points > second.points)) continue;
            second = {child, points};
            if (points > first.points) std::swap(first, second);
        }
        return known->second;
    }

    [[nodiscard]] std::string byNeighbour(Index stack, Index child, bool isRow) {
        const auto& [first, second] = largest(stack, isRow);
        const Extent& taker = first.child == child ? second : first;
        if (!taker.child) return {};
        return "; " + nameOf(*taker.child) + (isRow ? " beside it" : " in its column") + " takes " +
               numberText(std::round(taker.points)) + " points: less of it, fewer words or a smaller font would help";
    }

    /// What a child of a stack is, whatever changes it.
    [[nodiscard]] std::string nameOf(Index child) const {
        while (traitsOf(tree_.node(child).kind).holds == ViewHolds::content) child = tree_.content(child);
        switch (tree_.node(child).kind) {
            case ViewKind::spacer: return "the spacer";
            case ViewKind::text: return "the text " + excerptOf(subject_, child);
            case ViewKind::hstack:
            case ViewKind::vstack:
            case ViewKind::zstack: return "the stack";
            case ViewKind::composed: return "the view";
            default: return "the shape";
        }
    }

    const DrawnSubject& subject_;
    const layout::LayoutTree& tree_;
    std::vector<Index> parents_;
    std::map<Index, std::array<Extent, 2>> largest_;
};

}  // namespace

void findTruncatedTexts(const DrawnSubject& subject, DrawnFindings& findings) {
    RoomTaker taker(subject);
    for (const DrawnView* const text : seenTexts(subject)) {
        const text::TextBlock& block = subject.tree.textBlock(text->index);
        if (!block.truncated()) continue;
        const auto limit = subject.tree.inherited(text->index).lineLimit;
        const auto lines = static_cast<std::int64_t>(block.lineCount());
        if (limit && lines >= *limit) {
            findings.addNote(Rule::truncatedText, text->origin,
                             excerptOf(subject, text->index) + " does not fit in the lines that it is limited to");
        } else {
            findings.add(
                Rule::truncatedText, text->origin,
                excerptOf(subject, text->index) + " does not fit and is cut off" + taker.takenFrom(text->index));
        }
    }
}

void findClippedTexts(const DrawnSubject& subject, DrawnFindings& findings) {
    constexpr double aPoint = 1;
    // Letters leave a part of a line's height empty.
    constexpr double emptyShare = 0.2;
    for (const DrawnView* const text : seenTexts(subject)) {
        const Rect whole = textBounds(subject, *text);
        const Rect seen = layout::commonRect(whole, text->clip);
        const double lines = static_cast<double>(subject.tree.textBlock(text->index).lineCount());
        const double lineHeight = lines > 0 ? whole.size.height / lines : 0;
        const bool isCutAcross = whole.size.width - seen.size.width > aPoint;
        const bool isCutAlong = whole.size.height - seen.size.height > aPoint + emptyShare * lineHeight;
        if (!isCutAcross && !isCutAlong) continue;
        const double lost = 1 - seen.size.width * seen.size.height / (whole.size.width * whole.size.height);
        findings.add(Rule::clippedText, text->origin,
                     excerptOf(subject, text->index) + " reaches past what is seen of it and is cut off", lost);
    }
}

void findUnseenTexts(const DrawnSubject& subject, DrawnFindings& findings) {
    for (const DrawnView& view : subject.views) {
        if (subject.tree.node(view.index).kind != ViewKind::text) continue;
        if (view.mayAppear || isInSight(subject, view))
            findings.setSeen(view.origin);
        else if (wouldBeSeen(subject, view))
            findings.addUnlessSeen(Rule::unseenText, view.origin,
                                   excerptOf(subject, view.index) + " lies wholly outside what is seen of the widget");
    }
}

}  // namespace tavrin
