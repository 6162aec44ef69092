#include "tavrin/dsl/render_state.h"

#include <algorithm>
#include <limits>

namespace tavrin {

Context::Context(std::shared_ptr<Logger> logger)
    : logger_(std::move(logger)), state_(std::make_unique<RenderState>()) {}

Context::~Context() = default;

const std::optional<URL>& Context::widgetURL() const { return state_->widgetURL; }

void RenderState::cacheImage(std::string_view url) {
    if (std::optional<URL> parsed = URL::parse(url)) webImageURLs.push_back(*std::move(parsed));
}

void RenderState::beginRender(const Context& context) {
    now = context.date ? *context.date : Date::now();
    nodesDrawn = 0;
    modifiersApplied = 0;
}

void RenderState::countModifier(const Context& context) {
    // A node has a few modifiers, not thousands: references multiply them as they multiply nodes.
    constexpr std::size_t modifiersPerNode = 8;
    const std::size_t most = std::numeric_limits<std::size_t>::max() / modifiersPerNode;
    const std::size_t bound = std::min(context.maximumNodes, most) * modifiersPerNode;
    if (++modifiersApplied > bound)
        throw TavrinError("Engine", "more than " + std::to_string(bound) + " modifiers are applied");
}

RenderState::NodeScope::NodeScope(RenderState& state, const Context& context) : state_(state) {
    if (state.nesting == 0) state.beginRender(context);
    if (state.nodesDrawn >= context.maximumNodes)
        throw TavrinError("Engine", "more than " + std::to_string(context.maximumNodes) + " nodes are drawn");
    if (state.nesting >= context.maximumNesting)
        throw TavrinError("Engine", "nodes are nested deeper than " + std::to_string(context.maximumNesting));
    ++state.nodesDrawn;
    ++state.nesting;
}

RenderState::ReferenceScope::ReferenceScope(RenderState& state, std::string_view name) : state_(state) {
    std::vector<std::string_view>& open = state.openReferences;
    const auto first = std::find(open.begin(), open.end(), name);
    if (first != open.end()) {
        std::string cycle;
        for (auto step = first; step != open.end(); ++step) cycle.append(*step).append(" -> ");
        throw TavrinError("RefNode", "reference cycle: " + cycle.append(name));
    }
    open.push_back(name);
}

}  // namespace tavrin
