// SPDX-License-Identifier: MIT
#include "tavrin/dsl/render_state.h"

#include <algorithm>
#include <limits>

namespace tavrin {

Context::Context(std::shared_ptr<Logger> logger)
    : logger_(std::move(logger)), state_(std::make_unique<RenderState>()) {}

Context::~Context() = default;

const std::optional<URL>& Context::widgetURL() const { return state_->widgetURL; }

const std::shared_ptr<const ViewOrigins>& Context::origins() const { return state_->origins; }

void RenderState::cacheImage(std::string_view url) {
    if (std::optional<URL> parsed = URL::parse(url)) webImageURLs.push_back(*std::move(parsed));
}

Date RenderState::now(const Context& context) const {
    if (nesting > 0) return now_;
    return context.date ? *context.date : Date::now();
}

const TimeZone& RenderState::deviceTimeZone(const Context& context) {
    if (context.timeZone) return *context.timeZone;
    if (!processTimeZone_) processTimeZone_ = TimeZone::current();
    return *processTimeZone_;
}

void RenderState::beginRender(const Context& context) {
    now_ = now(context);
    processTimeZone_.reset();
    nodesDrawn = 0;
    modifiersApplied = 0;
}

void RenderState::failModifiers(const Context& context) {
    const std::size_t most = std::numeric_limits<std::size_t>::max() / modifiersPerNode;
    const std::size_t bound = std::min(context.maximumNodes, most) * modifiersPerNode;
    throw TavrinError("Engine", "more than " + std::to_string(bound) + " modifiers are applied");
}

void RenderState::NodeScope::fail(const Context& context) const {
    if (state_.nodesDrawn >= context.maximumNodes)
        throw TavrinError("Engine", "more than " + std::to_string(context.maximumNodes) + " nodes are drawn");
    throw TavrinError("Engine", "nodes are nested deeper than " + std::to_string(context.maximumNesting));
}

RenderState::ReferenceScope::ReferenceScope(RenderState& state, std::string_view name) : state_(state) {
    std::vector<std::string_view>& open = state.openReferences;
    const auto first = std::ranges::find(open, name);
    if (first != open.end()) {
        std::string cycle;
        for (auto step = first; step != open.end(); ++step) cycle.append(*step).append(" -> ");
        throw TavrinError("RefNode", "reference cycle: " + cycle.append(name));
    }
    open.push_back(name);
}

}  // namespace tavrin
