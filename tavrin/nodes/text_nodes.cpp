// SPDX-License-Identifier: MIT
#include "tavrin/nodes/text_nodes.h"

#include "tavrin/dsl/render_state.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {
namespace {

/// Size and digits decide together: a size counts with tabular digits and where nothing is said about digits, not where
/// they are declined.
std::optional<Font> fontOf(const TimerNode& timer) {
    constexpr float defaultSize = 20;
    const std::optional<float> size = timer.fontSize.wrappedValue();
    const std::optional<bool> monospace = timer.monospace.wrappedValue();
    if (monospace == true) {
        const Font::Weight weight = fontWeight(timer.fontWeight.wrappedValue());
        return Font::monospacedDigitSystem(double{size.value_or(defaultSize)}, weight);
    }
    if (size && !monospace) return Font::system(double{*size});
    return std::nullopt;
}

}  // namespace

AnyView TextNode::render(Context& context) const {
    Text text{.content = content.wrappedValue()};
    if (const std::optional<float> size = fontSize.wrappedValue()) text.font = Font::system(double{*size});
    text.fontWeight = textWeight(fontWeight.wrappedValue());
    return applyModifiers(*this, std::move(text), context);
}

AnyView TimerNode::render(Context& context) const {
    const std::optional<float> seconds = timestamp.wrappedValue();
    const Date date = seconds ? Date{double{*seconds}} : RenderState::of(context).now(context);
    Text text{.content = date, .font = fontOf(*this), .fontWeight = textWeight(fontWeight.wrappedValue())};
    return applyModifiers(*this, std::move(text), context);
}

}  // namespace tavrin
