// SPDX-License-Identifier: MIT
#include "tavrin/platform/explain/explanation.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <variant>

#include "tavrin/platform/explain/reasons.h"
#include "tavrin/platform/explain/words.h"
#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {
namespace {

using explain::PlacedTree;
using Index = PlacedTree::Index;

constexpr std::size_t maximumViews = 100'000;
constexpr std::size_t titleCharacters = 24;

/// The views of a tree that are explained, found in the order of the view tree.
class Explainer {
public:
    explicit Explainer(const PlacedTree& placed) : placed_(placed) {}

    Explanation explain() {
        pending_.push_back({0, std::nullopt, false});
        while (!pending_.empty()) {
            const Pending next = pending_.back();
            pending_.pop_back();
            visit(next);
        }
        return std::move(explanation_);
    }

private:
    /// A node to come to.
    struct Pending {
        Index node;
        std::optional<std::size_t> parent;  // among the explanations
        bool isUnfolded;                    // whether a composed view made it
    };

    void visit(const Pending& pending) {
        const layout::LayoutNode& node = placed_.node(pending.node);
        const bool isShown = !pending.isUnfolded || placed_.origin(pending.node) != nullptr;
        if (isShown) add(pending);
        const auto parent = isShown ? std::optional(explanation_.size() - 1) : pending.parent;
        const bool isUnfolded = node.kind == ViewKind::composed || !isShown;
        const auto first = static_cast<std::ptrdiff_t>(pending_.size());
        for (const Index child : placed_.tree().children(pending.node)) pending_.push_back({child, parent, isUnfolded});
        const bool isReader = node.kind == ViewKind::geometryReader;
        if (isReader && placed_.tree().content(pending.node) != 0)
            pending_.push_back({placed_.tree().content(pending.node), parent, isUnfolded});
        std::reverse(pending_.begin() + first, pending_.end());
    }

    void add(const Pending& pending) {
        if (explanation_.size() == maximumViews)
            throw TavrinError("Engine", "more than " + std::to_string(maximumViews) + " views are to be explained");
        constexpr std::uint64_t stepsOfView = 16;
        const CodingPath* const origin = placed_.origin(pending.node);
        Meter::ofThisThread().step(stepsOfView + (origin ? origin->size() : 0));
        held_.grow(sizeof(ViewExplanation));
        ViewExplanation& view = explanation_.emplace_back();
        view.node = pending.node;
        view.parent = pending.parent;
        if (pending.parent) view.depth = explanation_[*pending.parent].depth + 1;
        view.name = view.title = placed_.view(pending.node).box().name();
        if (origin) view.origin = *origin;
        if (const auto* text = placed_.view(pending.node).as<Text>()) {
            const auto* shown = std::get_if<SharedText>(&text->content);
            view.title += shown ? " " + explain::excerpt(shown->view(), titleCharacters) : " (timer)";
        }
        addReasons(view);
        held_.grow(view.title.size() + view.summary.size() + view.whyProposed.size() + view.whyAnswered.size() +
                   view.whyPlaced.size());
    }

    void addReasons(ViewExplanation& view) const {
        if (placed_.node(view.node).absent) {
            view.summary = "no view: takes no room, and nothing is drawn";
            return;
        }
        view.frame = placed_.node(view.node).frame;
        view.proposal = placed_.proposal(view.node);
        if (const layout::StackShare* share = placed_.share(view.node)) view.share = *share;
        const explain::Reason proposed = reasonOfProposal(placed_, view.node);
        const explain::Reason answered = reasonOfAnswer(placed_, view.node);
        const explain::Reason lies = reasonOfPlace(placed_, view.node);
        for (const explain::Reason* reason : {&answered, &proposed, &lies})
            explain::append(view.summary, "; ", reason->brief);
        view.whyProposed = proposed.sentence;
        view.whyAnswered = answered.sentence;
        view.whyPlaced = lies.sentence;
    }

    const PlacedTree& placed_;
    std::vector<Pending> pending_;
    Explanation explanation_;
    HeldBytes held_;  // of the explanations, while they are made
};

/// Whether a path as text leads through another one: `nodes.main.children[0]` through `nodes.main`, not `nodes.ma`.
bool leadsThrough(std::string_view path, std::string_view through) {
    if (!path.starts_with(through)) return false;
    const std::string_view rest = path.substr(through.size());
    return rest.empty() || through.empty() || rest.starts_with('.') || rest.starts_with('[');
}

}  // namespace

Explanation explainLayout(const layout::LayoutTree& tree, const explain::OriginOf& originOf) {
    return Explainer(PlacedTree(tree, originOf)).explain();
}

std::vector<std::size_t> viewsAt(const Explanation& explanation, std::string_view path) {
    // How far away an origin is: downwards first, then upwards; what lies on neither way is not found.
    const auto distance = [path](const CodingPath& origin) {
        const std::string way = toText(origin);
        if (leadsThrough(way, path)) return origin.size();
        return leadsThrough(path, way) ? SIZE_MAX - 1 - origin.size() : SIZE_MAX;
    };
    std::size_t nearest = SIZE_MAX;
    std::vector<std::size_t> found;
    for (std::size_t at = 0; at < explanation.size(); ++at) {
        if (!explanation[at].origin) continue;
        const std::size_t away = distance(*explanation[at].origin);
        if (away < nearest) found.clear();
        nearest = std::min(nearest, away);
        if (away == nearest && away != SIZE_MAX) found.push_back(at);
    }
    return found;
}

}  // namespace tavrin
